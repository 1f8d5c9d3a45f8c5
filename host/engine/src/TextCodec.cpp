#include "TextCodec.h"

namespace scribo::engine {

namespace {

// Unicode code points of Mac Roman bytes 0x80..0xFF.
constexpr char16_t kMacRomanHigh[128] = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, 0x00E0, 0x00E2, 0x00E4, 0x00E3,
    0x00E5, 0x00E7, 0x00E9, 0x00E8, 0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3,
    0x00F2, 0x00F4, 0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, 0x2020, 0x00B0, 0x00A2, 0x00A3,
    0x00A7, 0x2022, 0x00B6, 0x00DF, 0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8,
    0x221E, 0x00B1, 0x2264, 0x2265, 0x00A5, 0x00B5, 0x2202, 0x2211, 0x220F, 0x03C0, 0x222B, 0x00AA,
    0x00BA, 0x03A9, 0x00E6, 0x00F8, 0x00BF, 0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB,
    0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5, 0x0152, 0x0153, 0x2013, 0x2014, 0x201C, 0x201D,
    0x2018, 0x2019, 0x00F7, 0x25CA, 0x00FF, 0x0178, 0x2044, 0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02,
    0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1, 0x00CB, 0x00C8, 0x00CD, 0x00CE,
    0x00CF, 0x00CC, 0x00D3, 0x00D4, 0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9, 0x0131, 0x02C6, 0x02DC,
    0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7};

void AppendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out += char(cp);
  } else if (cp < 0x800) {
    out += char(0xC0 | (cp >> 6));
    out += char(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += char(0xE0 | (cp >> 12));
    out += char(0x80 | ((cp >> 6) & 0x3F));
    out += char(0x80 | (cp & 0x3F));
  } else {
    out += char(0xF0 | (cp >> 18));
    out += char(0x80 | ((cp >> 12) & 0x3F));
    out += char(0x80 | ((cp >> 6) & 0x3F));
    out += char(0x80 | (cp & 0x3F));
  }
}

// Decodes one code point from UTF-8; malformed bytes read as U+FFFD and advance by one.
char32_t NextCodePoint(std::string_view text, size_t& i) {
  auto byte = [&](size_t k) { return uint8_t(text[k]); };
  uint8_t b = byte(i);
  int extra = b < 0x80             ? 0
              : (b & 0xE0) == 0xC0 ? 1
              : (b & 0xF0) == 0xE0 ? 2
              : (b & 0xF8) == 0xF0 ? 3
                                   : -1;
  if (extra == 0) {
    ++i;
    return b;
  }
  if (extra < 0 || i + size_t(extra) >= text.size()) {
    ++i;
    return 0xFFFD;
  }
  char32_t cp = char32_t(b & (0x3F >> extra));
  for (int k = 1; k <= extra; ++k) {
    if ((byte(i + k) & 0xC0) != 0x80) {
      ++i;
      return 0xFFFD;
    }
    cp = (cp << 6) | (byte(i + k) & 0x3F);
  }
  i += size_t(extra) + 1;
  return cp;
}

} // namespace

std::string MacRomanToUtf8(std::string_view text) {
  std::string out;
  for (char c : text) {
    uint8_t b = uint8_t(c);
    AppendUtf8(out, b < 0x80 ? char32_t(b) : char32_t(kMacRomanHigh[b - 0x80]));
  }
  return out;
}

std::string Utf8ToMacRoman(std::string_view text) {
  std::string out;
  for (size_t i = 0; i < text.size();) {
    char32_t cp = NextCodePoint(text, i);
    if (cp < 0x80) {
      out += char(cp);
      continue;
    }
    char mapped = '?';
    for (int k = 0; k < 128; ++k)
      if (kMacRomanHigh[k] == cp)
        mapped = char(0x80 + k);
    out += mapped;
  }
  return out;
}

std::u16string Utf8ToUtf16(std::string_view text) {
  std::u16string out;
  for (size_t i = 0; i < text.size();) {
    char32_t cp = NextCodePoint(text, i);
    if (cp >= 0x10000) {
      cp -= 0x10000;
      out += char16_t(0xD800 + (cp >> 10));
      out += char16_t(0xDC00 + (cp & 0x3FF));
    } else {
      out += char16_t(cp);
    }
  }
  return out;
}

std::string Utf16ToUtf8(std::u16string_view text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    char32_t cp = text[i];
    if (cp >= 0xD800 && cp < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
        text[i + 1] < 0xE000) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (text[i + 1] - 0xDC00);
      ++i;
    } else if (cp >= 0xD800 && cp < 0xE000) {
      cp = 0xFFFD;
    }
    AppendUtf8(out, cp);
  }
  return out;
}

std::u16string Utf16FromHost(const uint16_t* text) {
  std::u16string out;
  if (text)
    for (; *text; ++text)
      out += char16_t(*text);
  return out;
}

std::string Utf16ToUtf8(const uint16_t* text) {
  return Utf16ToUtf8(Utf16FromHost(text));
}

} // namespace scribo::engine
