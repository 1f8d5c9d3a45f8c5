#include "TextEncoding.h"

namespace cfstandin {
namespace {

// Mac OS Roman, bytes 0x80 to 0xFF.
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

bool DecodeUTF8(const uint8_t* b, size_t n, std::u16string& out) {
  size_t i = 0;
  while (i < n) {
    uint8_t c = b[i];
    char32_t cp;
    size_t extra;
    if (c < 0x80) {
      cp = c;
      extra = 0;
    } else if ((c & 0xE0) == 0xC0) {
      cp = c & 0x1F;
      extra = 1;
    } else if ((c & 0xF0) == 0xE0) {
      cp = c & 0x0F;
      extra = 2;
    } else if ((c & 0xF8) == 0xF0) {
      cp = c & 0x07;
      extra = 3;
    } else {
      return false;
    }
    if (i + extra >= n)
      return false; // truncated sequence
    for (size_t k = 1; k <= extra; ++k) {
      if ((b[i + k] & 0xC0) != 0x80)
        return false;
      cp = (cp << 6) | (b[i + k] & 0x3F);
    }
    // Overlong forms, surrogates and values past U+10FFFF are not UTF-8.
    static constexpr char32_t kMin[4] = {0, 0x80, 0x800, 0x10000};
    if (cp < kMin[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
      return false;
    if (cp >= 0x10000) {
      cp -= 0x10000;
      out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(cp));
    }
    i += extra + 1;
  }
  return true;
}

} // namespace

bool IsKnownEncoding(CFStringEncoding e) {
  return e == kCFStringEncodingMacRoman || e == kCFStringEncodingUTF8 ||
         e == kCFStringEncodingASCII || e == kCFStringEncodingISOLatin1 ||
         e == kCFStringEncodingWindowsLatin1 || e == kCFStringEncodingUTF16;
}

bool DecodeBytes(const uint8_t* bytes, size_t count, CFStringEncoding encoding,
                 std::u16string& out) {
  switch (encoding) {
  case kCFStringEncodingMacRoman:
    for (size_t i = 0; i < count; ++i)
      out.push_back(bytes[i] < 0x80 ? char16_t(bytes[i]) : kMacRomanHigh[bytes[i] - 0x80]);
    return true;
  case kCFStringEncodingASCII:
    for (size_t i = 0; i < count; ++i) {
      if (bytes[i] >= 0x80)
        return false;
      out.push_back(bytes[i]);
    }
    return true;
  case kCFStringEncodingISOLatin1:
  case kCFStringEncodingWindowsLatin1:
    for (size_t i = 0; i < count; ++i)
      out.push_back(bytes[i]);
    return true;
  case kCFStringEncodingUTF8:
    return DecodeUTF8(bytes, count, out);
  case kCFStringEncodingUTF16:
    if (count % 2 != 0)
      return false;
    for (size_t i = 0; i + 1 < count; i += 2)
      out.push_back(static_cast<char16_t>(bytes[i] | (bytes[i + 1] << 8)));
    return true;
  default:
    return false;
  }
}

size_t EncodeCodePoint(char32_t cp, CFStringEncoding encoding, uint8_t out[4]) {
  switch (encoding) {
  case kCFStringEncodingMacRoman:
    if (cp < 0x80) {
      out[0] = static_cast<uint8_t>(cp);
      return 1;
    }
    for (int i = 0; i < 128; ++i) {
      if (kMacRomanHigh[i] == cp) {
        out[0] = static_cast<uint8_t>(0x80 + i);
        return 1;
      }
    }
    return 0;
  case kCFStringEncodingASCII:
    if (cp >= 0x80)
      return 0;
    out[0] = static_cast<uint8_t>(cp);
    return 1;
  case kCFStringEncodingISOLatin1:
  case kCFStringEncodingWindowsLatin1:
    if (cp >= 0x100)
      return 0;
    out[0] = static_cast<uint8_t>(cp);
    return 1;
  case kCFStringEncodingUTF8:
    if (cp < 0x80) {
      out[0] = static_cast<uint8_t>(cp);
      return 1;
    }
    if (cp < 0x800) {
      out[0] = static_cast<uint8_t>(0xC0 | (cp >> 6));
      out[1] = static_cast<uint8_t>(0x80 | (cp & 0x3F));
      return 2;
    }
    if (cp < 0x10000) {
      if (cp >= 0xD800 && cp <= 0xDFFF)
        return 0; // a lone surrogate has no UTF-8 form
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
  case kCFStringEncodingUTF16:
    if (cp >= 0x10000) {
      char32_t v = cp - 0x10000;
      char16_t hi = static_cast<char16_t>(0xD800 + (v >> 10)),
               lo = static_cast<char16_t>(0xDC00 + (v & 0x3FF));
      out[0] = hi & 0xFF;
      out[1] = hi >> 8;
      out[2] = lo & 0xFF;
      out[3] = lo >> 8;
      return 4;
    }
    out[0] = cp & 0xFF;
    out[1] = (cp >> 8) & 0xFF;
    return 2;
  default:
    return 0;
  }
}

size_t MaxBytesPerUnit(CFStringEncoding encoding) {
  switch (encoding) {
  case kCFStringEncodingUTF8:
    return 3;
  case kCFStringEncodingUTF16:
    return 2;
  default:
    return 1;
  }
}

} // namespace cfstandin
