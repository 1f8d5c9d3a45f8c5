// Parser of Localizable.strings files (old-style property-list strings grammar).
//
// A file is a sequence of entries `key = value;` or `key;` (the value is then the key). Keys and
// values are quoted strings with escapes or unquoted runs of [A-Za-z0-9_$+/:.-]. Whitespace and
// `/* */` and `//` comments may appear between all tokens. A later entry for the same key wins.
// Anything else makes the whole file malformed: a half-read table would show some texts
// translated and others as bare keys, which is worse than a clean fallback to the keys.
#include "StringsFile.h"

#include "TextCodec.h"

#include <cstdint>

namespace scribo {
namespace {

// Turns the file's bytes into UTF-16 units: UTF-16 when the file starts with a byte-order mark,
// else UTF-8 (with or without its own mark). False when the bytes are not valid in that form.
bool DecodeFile(std::string_view bytes, std::u16string& units) {
  const auto* b = reinterpret_cast<const uint8_t*>(bytes.data());
  size_t n = bytes.size();
  if (n >= 2 && ((b[0] == 0xFF && b[1] == 0xFE) || (b[0] == 0xFE && b[1] == 0xFF))) {
    const bool bigEndian = b[0] == 0xFE;
    if (n % 2 != 0)
      return false; // a dangling half unit
    units.reserve((n - 2) / 2);
    for (size_t i = 2; i < n; i += 2) {
      const unsigned hi = bigEndian ? b[i] : b[i + 1];
      const unsigned lo = bigEndian ? b[i + 1] : b[i];
      units.push_back(static_cast<char16_t>((hi << 8) | lo));
    }
    return true;
  }
  if (n >= 3 && b[0] == 0xEF && b[1] == 0xBB && b[2] == 0xBF) {
    b += 3;
    n -= 3;
  }
  return DecodeUtf8(std::string_view(reinterpret_cast<const char*>(b), n), units);
}

bool IsUnquotedChar(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') ||
         c == u'_' || c == u'$' || c == u'+' || c == u'/' || c == u':' || c == u'.' || c == u'-';
}

int HexValue(char16_t c) {
  if (c >= u'0' && c <= u'9')
    return c - u'0';
  if (c >= u'a' && c <= u'f')
    return c - u'a' + 10;
  if (c >= u'A' && c <= u'F')
    return c - u'A' + 10;
  return -1;
}

class Parser {
public:
  explicit Parser(const std::u16string& text) : s_(text) {}

  bool Parse(std::map<std::u16string, std::u16string>& table) {
    for (;;) {
      if (!SkipBlanks())
        return false;
      if (AtEnd())
        return true;
      std::u16string key;
      if (!ReadString(key) || !SkipBlanks() || AtEnd())
        return false;
      std::u16string value;
      if (s_[i_] == u'=') {
        ++i_;
        if (!SkipBlanks() || AtEnd() || !ReadString(value) || !SkipBlanks() || AtEnd())
          return false;
      } else {
        value = key;
      }
      if (s_[i_] != u';')
        return false;
      ++i_;
      table.insert_or_assign(std::move(key), std::move(value));
    }
  }

private:
  bool AtEnd() const { return i_ >= s_.size(); }
  bool StartsComment() const {
    return s_[i_] == u'/' && i_ + 1 < s_.size() && (s_[i_ + 1] == u'/' || s_[i_ + 1] == u'*');
  }

  // Skips whitespace and comments; false for a comment that never ends.
  bool SkipBlanks() {
    while (!AtEnd()) {
      const char16_t c = s_[i_];
      if (c == u' ' || c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f' || c == u'\v' ||
          c == 0x2028 || c == 0x2029) {
        ++i_;
      } else if (StartsComment() && s_[i_ + 1] == u'/') {
        while (!AtEnd() && s_[i_] != u'\n' && s_[i_] != u'\r')
          ++i_;
      } else if (StartsComment()) {
        const size_t close = s_.find(u"*/", i_ + 2);
        if (close == std::u16string::npos)
          return false;
        i_ = close + 2;
      } else {
        break;
      }
    }
    return true;
  }

  bool ReadString(std::u16string& out) {
    if (s_[i_] == u'"')
      return ReadQuoted(out);
    const size_t start = i_;
    while (!AtEnd() && IsUnquotedChar(s_[i_]) && !StartsComment())
      ++i_;
    out.assign(s_, start, i_ - start);
    return i_ > start;
  }

  bool ReadQuoted(std::u16string& out) {
    ++i_; // opening quote
    while (!AtEnd()) {
      const char16_t c = s_[i_++];
      if (c == u'"')
        return true;
      if (c != u'\\') {
        out.push_back(c);
        continue;
      }
      if (AtEnd())
        return false;
      if (!ReadEscape(out))
        return false;
    }
    return false; // no closing quote
  }

  bool ReadEscape(std::u16string& out) {
    const char16_t e = s_[i_++];
    switch (e) {
    case u'n':
      out.push_back(u'\n');
      return true;
    case u't':
      out.push_back(u'\t');
      return true;
    case u'r':
      out.push_back(u'\r');
      return true;
    case u'a':
      out.push_back(u'\a');
      return true;
    case u'b':
      out.push_back(u'\b');
      return true;
    case u'f':
      out.push_back(u'\f');
      return true;
    case u'v':
      out.push_back(u'\v');
      return true;
    case u'U':
    case u'u': {
      // \Uxxxx: one UTF-16 unit from one to four hex digits; a pair is written as two escapes.
      unsigned value = 0;
      int digits = 0;
      while (digits < 4 && !AtEnd() && HexValue(s_[i_]) >= 0) {
        value = value * 16 + static_cast<unsigned>(HexValue(s_[i_++]));
        ++digits;
      }
      if (digits == 0)
        return false;
      out.push_back(static_cast<char16_t>(value));
      return true;
    }
    default:
      if (e >= u'0' && e <= u'7') {
        // Octal \ooo: up to three digits, one unit of that value (Latin-1 for values above 127).
        unsigned value = e - u'0';
        for (int k = 0; k < 2 && !AtEnd() && s_[i_] >= u'0' && s_[i_] <= u'7'; ++k)
          value = value * 8 + (s_[i_++] - u'0');
        out.push_back(static_cast<char16_t>(value & 0xFF));
        return true;
      }
      // \" \\ \' and any other character stand for themselves.
      out.push_back(e);
      return true;
    }
  }

  const std::u16string& s_;
  size_t i_ = 0;
};

} // namespace

bool ParseStringsFile(std::string_view bytes, std::map<std::u16string, std::u16string>& table) {
  table.clear();
  std::u16string units;
  if (!DecodeFile(bytes, units))
    return false;
  std::map<std::u16string, std::u16string> parsed;
  if (!Parser(units).Parse(parsed))
    return false;
  table.swap(parsed);
  return true;
}

} // namespace scribo
