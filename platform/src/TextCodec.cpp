#include "TextCodec.h"

namespace scribo {
namespace {

// Mac OS Roman, bytes 0x80 to 0xFF; bytes below 0x80 are ASCII.
constexpr char16_t kMacRomanHigh[128] = {
    0x00C4, 0x00C5, 0x00C7, 0x00C9, 0x00D1, 0x00D6, 0x00DC, 0x00E1, // 80
    0x00E0, 0x00E2, 0x00E4, 0x00E3, 0x00E5, 0x00E7, 0x00E9, 0x00E8, // 88
    0x00EA, 0x00EB, 0x00ED, 0x00EC, 0x00EE, 0x00EF, 0x00F1, 0x00F3, // 90
    0x00F2, 0x00F4, 0x00F6, 0x00F5, 0x00FA, 0x00F9, 0x00FB, 0x00FC, // 98
    0x2020, 0x00B0, 0x00A2, 0x00A3, 0x00A7, 0x2022, 0x00B6, 0x00DF, // A0
    0x00AE, 0x00A9, 0x2122, 0x00B4, 0x00A8, 0x2260, 0x00C6, 0x00D8, // A8
    0x221E, 0x00B1, 0x2264, 0x2265, 0x00A5, 0x00B5, 0x2202, 0x2211, // B0
    0x220F, 0x03C0, 0x222B, 0x00AA, 0x00BA, 0x03A9, 0x00E6, 0x00F8, // B8
    0x00BF, 0x00A1, 0x00AC, 0x221A, 0x0192, 0x2248, 0x2206, 0x00AB, // C0
    0x00BB, 0x2026, 0x00A0, 0x00C0, 0x00C3, 0x00D5, 0x0152, 0x0153, // C8
    0x2013, 0x2014, 0x201C, 0x201D, 0x2018, 0x2019, 0x00F7, 0x25CA, // D0
    0x00FF, 0x0178, 0x2044, 0x20AC, 0x2039, 0x203A, 0xFB01, 0xFB02, // D8
    0x2021, 0x00B7, 0x201A, 0x201E, 0x2030, 0x00C2, 0x00CA, 0x00C1, // E0
    0x00CB, 0x00C8, 0x00CD, 0x00CE, 0x00CF, 0x00CC, 0x00D3, 0x00D4, // E8
    0xF8FF, 0x00D2, 0x00DA, 0x00DB, 0x00D9, 0x0131, 0x02C6, 0x02DC, // F0
    0x00AF, 0x02D8, 0x02D9, 0x02DA, 0x00B8, 0x02DD, 0x02DB, 0x02C7, // F8
};

constexpr char32_t kReplacement = 0xFFFD;

bool IsSurrogate(char32_t c) {
  return c >= 0xD800 && c <= 0xDFFF;
}

void AppendUtf8(char32_t codePoint, std::string& out) {
  uint8_t bytes[4];
  size_t n = EncodeUtf8(codePoint, bytes);
  if (n == 0)
    n = EncodeUtf8(kReplacement, bytes);
  out.append(reinterpret_cast<const char*>(bytes), n);
}

} // namespace

char16_t MacRomanToUnicode(uint8_t byte) {
  return byte < 0x80 ? char16_t(byte) : kMacRomanHigh[byte - 0x80];
}

int UnicodeToMacRoman(char32_t codePoint) {
  if (codePoint < 0x80)
    return static_cast<int>(codePoint);
  for (int i = 0; i < 128; ++i)
    if (kMacRomanHigh[i] == codePoint)
      return 0x80 + i;
  return -1;
}

char32_t NextUtf8(std::string_view bytes, size_t& i) {
  const auto byte = [&](size_t k) { return static_cast<uint8_t>(bytes[k]); };
  const uint8_t lead = byte(i);
  const size_t extra = lead < 0x80             ? 0
                       : (lead & 0xE0) == 0xC0 ? 1
                       : (lead & 0xF0) == 0xE0 ? 2
                       : (lead & 0xF8) == 0xF0 ? 3
                                               : 4;
  if (extra == 4 || i + extra >= bytes.size()) {
    ++i;
    return kMalformedUtf8;
  }
  char32_t cp = lead & (0x7F >> extra);
  for (size_t k = 1; k <= extra; ++k) {
    if ((byte(i + k) & 0xC0) != 0x80) {
      ++i;
      return kMalformedUtf8;
    }
    cp = (cp << 6) | (byte(i + k) & 0x3F);
  }
  static constexpr char32_t kShortest[4] = {0, 0x80, 0x800, 0x10000};
  if (cp < kShortest[extra] || cp > 0x10FFFF || IsSurrogate(cp)) {
    ++i;
    return kMalformedUtf8;
  }
  i += extra + 1;
  return cp;
}

size_t EncodeUtf8(char32_t cp, uint8_t out[4]) {
  if (cp < 0x80) {
    out[0] = static_cast<uint8_t>(cp);
    return 1;
  }
  if (cp < 0x800) {
    out[0] = static_cast<uint8_t>(0xC0 | (cp >> 6));
    out[1] = static_cast<uint8_t>(0x80 | (cp & 0x3F));
    return 2;
  }
  if (IsSurrogate(cp) || cp > 0x10FFFF)
    return 0;
  if (cp < 0x10000) {
    out[0] = static_cast<uint8_t>(0xE0 | (cp >> 12));
    out[1] = static_cast<uint8_t>(0x80 | ((cp >> 6) & 0x3F));
    out[2] = static_cast<uint8_t>(0x80 | (cp & 0x3F));
    return 3;
  }
  out[0] = static_cast<uint8_t>(0xF0 | (cp >> 18));
  out[1] = static_cast<uint8_t>(0x80 | ((cp >> 12) & 0x3F));
  out[2] = static_cast<uint8_t>(0x80 | ((cp >> 6) & 0x3F));
  out[3] = static_cast<uint8_t>(0x80 | (cp & 0x3F));
  return 4;
}

char32_t NextUtf16(std::u16string_view units, size_t& i) {
  const char32_t unit = units[i++];
  if (unit >= 0xD800 && unit <= 0xDBFF && i < units.size() && units[i] >= 0xDC00 &&
      units[i] <= 0xDFFF)
    return 0x10000 + ((unit - 0xD800) << 10) + (units[i++] - 0xDC00);
  return unit;
}

void AppendUtf16(char32_t cp, std::u16string& out) {
  if (cp >= 0x10000 && cp <= 0x10FFFF) {
    out.push_back(static_cast<char16_t>(0xD800 + ((cp - 0x10000) >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
  } else {
    out.push_back(static_cast<char16_t>(cp));
  }
}

std::string MacRomanToUtf8(std::string_view text) {
  std::string out;
  for (char c : text)
    AppendUtf8(MacRomanToUnicode(static_cast<uint8_t>(c)), out);
  return out;
}

std::string Utf8ToMacRoman(std::string_view text) {
  std::string out;
  for (size_t i = 0; i < text.size();) {
    const int byte = UnicodeToMacRoman(NextUtf8(text, i));
    out.push_back(byte < 0 ? '?' : static_cast<char>(byte));
  }
  return out;
}

std::u16string Utf8ToUtf16(std::string_view text) {
  std::u16string out;
  for (size_t i = 0; i < text.size();) {
    const char32_t cp = NextUtf8(text, i);
    AppendUtf16(cp == kMalformedUtf8 ? kReplacement : cp, out);
  }
  return out;
}

std::string Utf16ToUtf8(std::u16string_view text) {
  std::string out;
  for (size_t i = 0; i < text.size();)
    AppendUtf8(NextUtf16(text, i), out);
  return out;
}

std::string Utf16ToUtf8(const uint16_t* text) {
  std::u16string units;
  for (; text && *text; ++text)
    units.push_back(static_cast<char16_t>(*text));
  return Utf16ToUtf8(units);
}

bool DecodeUtf8(std::string_view text, std::u16string& out) {
  std::u16string units;
  for (size_t i = 0; i < text.size();) {
    const char32_t cp = NextUtf8(text, i);
    if (cp == kMalformedUtf8)
      return false;
    AppendUtf16(cp, units);
  }
  out += units;
  return true;
}

} // namespace scribo
