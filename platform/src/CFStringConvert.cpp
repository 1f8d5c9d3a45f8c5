// String conversion into byte encodings and to numbers.
#include "CFObject.h"
#include "TextCodec.h"

#include <climits>
#include <cstring>

bool cfstandin::DecodeBytes(const uint8_t* bytes, size_t count, CFStringEncoding encoding,
                            std::u16string& out) {
  if (encoding == kCFStringEncodingUTF8)
    return scribo::DecodeUtf8(std::string_view(reinterpret_cast<const char*>(bytes), count), out);
  if (encoding != kCFStringEncodingMacRoman)
    return false;
  for (size_t i = 0; i < count; ++i)
    out.push_back(scribo::MacRomanToUnicode(bytes[i]));
  return true;
}

namespace {

bool IsKnownEncoding(CFStringEncoding encoding) {
  return encoding == kCFStringEncodingMacRoman || encoding == kCFStringEncodingUTF8;
}

// Encodes one character (a surrogate pair already joined) into up to 4 bytes and returns their
// count, or 0 when the encoding cannot represent it.
size_t EncodeCodePoint(char32_t codePoint, CFStringEncoding encoding, uint8_t out[4]) {
  if (encoding == kCFStringEncodingUTF8)
    return scribo::EncodeUtf8(codePoint, out);
  const int byte =
      encoding == kCFStringEncodingMacRoman ? scribo::UnicodeToMacRoman(codePoint) : -1;
  if (byte < 0)
    return 0;
  out[0] = static_cast<uint8_t>(byte);
  return 1;
}

bool ValidRange(const std::u16string& units, CFRange range) {
  return range.location >= 0 && range.length >= 0 &&
         static_cast<size_t>(range.location) <= units.size() &&
         static_cast<size_t>(range.length) <= units.size() - static_cast<size_t>(range.location);
}

} // namespace

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                         UInt8 lossByte, Boolean, UInt8* buffer, CFIndex maxBufLen,
                         CFIndex* usedBufLen) {
  CFIndex used = 0;
  CFIndex converted = 0;
  const std::u16string& units = cfstandin::Units(string);
  if (string && ValidRange(units, range) && IsKnownEncoding(encoding) &&
      (!buffer || maxBufLen >= 0)) {
    // Without a buffer the call only measures, whatever maxBufLen says.
    auto fits = [&](size_t n) { return !buffer || static_cast<size_t>(maxBufLen - used) >= n; };
    auto put = [&](const uint8_t* bytes, size_t n) {
      if (buffer)
        std::memcpy(buffer + used, bytes, n);
      used += static_cast<CFIndex>(n);
    };
    const size_t end = static_cast<size_t>(range.location + range.length);
    const std::u16string_view text(units.data(), end);
    for (size_t i = static_cast<size_t>(range.location); i < end;) {
      // A surrogate pair inside the range is one character; a lone surrogate is its own.
      size_t next = i;
      const char32_t cp = scribo::NextUtf16(text, next);
      uint8_t bytes[4];
      size_t n = EncodeCodePoint(cp, encoding, bytes);
      if (n == 0) {
        if (lossByte == 0)
          break;
        bytes[0] = lossByte;
        n = 1;
      }
      if (!fits(n))
        break;
      put(bytes, n);
      converted += static_cast<CFIndex>(next - i);
      i = next;
    }
  }
  if (usedBufLen)
    *usedBufLen = used;
  return converted;
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  if (length < 0 || !IsKnownEncoding(encoding))
    return kCFNotFound;
  const CFIndex perUnit = encoding == kCFStringEncodingUTF8 ? 3 : 1; // bytes per UTF-16 unit
  if (length > LONG_MAX / perUnit)
    return kCFNotFound;
  return length * perUnit;
}

Boolean CFStringGetPascalString(CFStringRef string, StringPtr buffer, CFIndex bufferSize,
                                CFStringEncoding encoding) {
  if (!buffer || bufferSize < 1)
    return false;
  buffer[0] = 0;
  const CFIndex capacity = bufferSize - 1 < 255 ? bufferSize - 1 : 255;
  const CFIndex length = CFStringGetLength(string);
  CFIndex used = 0;
  const CFIndex converted = CFStringGetBytes(string, CFRangeMake(0, length), encoding, 0, false,
                                             buffer + 1, capacity, &used);
  if (!string || converted != length)
    return false;
  buffer[0] = static_cast<unsigned char>(used);
  return true;
}

SInt32 CFStringGetIntValue(CFStringRef string) {
  const std::u16string& units = cfstandin::Units(string);
  size_t i = 0;
  while (i < units.size() && (units[i] == u' ' || units[i] == u'\t' || units[i] == u'\n' ||
                              units[i] == u'\r' || units[i] == u'\f' || units[i] == u'\v'))
    ++i;
  bool negative = false;
  if (i < units.size() && (units[i] == u'+' || units[i] == u'-'))
    negative = units[i++] == u'-';
  // Accumulate the magnitude and clamp at the ends of the 32-bit range, as the system does.
  long long magnitude = 0;
  for (; i < units.size() && units[i] >= u'0' && units[i] <= u'9'; ++i) {
    magnitude = magnitude * 10 + (units[i] - u'0');
    if (magnitude > static_cast<long long>(INT_MAX) + 1)
      magnitude = static_cast<long long>(INT_MAX) + 1;
  }
  if (negative)
    return static_cast<SInt32>(-magnitude);
  return magnitude > INT_MAX ? INT_MAX : static_cast<SInt32>(magnitude);
}
