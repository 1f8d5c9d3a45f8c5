// String conversion into byte encodings and to numbers.
#include "CFObject.h"
#include "TextEncoding.h"

#include <climits>
#include <cstring>

namespace {

bool IsHighSurrogate(char16_t u) {
  return u >= 0xD800 && u <= 0xDBFF;
}
bool IsLowSurrogate(char16_t u) {
  return u >= 0xDC00 && u <= 0xDFFF;
}

bool ValidRange(const std::u16string& units, CFRange range) {
  return range.location >= 0 && range.length >= 0 &&
         static_cast<size_t>(range.location) <= units.size() &&
         static_cast<size_t>(range.length) <= units.size() - static_cast<size_t>(range.location);
}

} // namespace

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                         UInt8 lossByte, Boolean isExternalRepresentation, UInt8* buffer,
                         CFIndex maxBufLen, CFIndex* usedBufLen) {
  CFIndex used = 0;
  CFIndex converted = 0;
  const std::u16string& units = cfstandin::Units(string);
  if (string && ValidRange(units, range) && cfstandin::IsKnownEncoding(encoding) &&
      (!buffer || maxBufLen >= 0)) {
    // Without a buffer the call only measures, whatever maxBufLen says.
    auto fits = [&](size_t n) { return !buffer || static_cast<size_t>(maxBufLen - used) >= n; };
    auto put = [&](const uint8_t* bytes, size_t n) {
      if (buffer)
        std::memcpy(buffer + used, bytes, n);
      used += static_cast<CFIndex>(n);
    };
    bool ok = true;
    if (isExternalRepresentation && encoding == kCFStringEncodingUTF16 && range.length > 0) {
      static constexpr uint8_t kByteOrderMark[2] = {0xFF, 0xFE}; // little-endian units follow
      if (fits(2))
        put(kByteOrderMark, 2);
      else
        ok = false;
    }
    const size_t end = static_cast<size_t>(range.location + range.length);
    size_t i = static_cast<size_t>(range.location);
    while (ok && i < end) {
      // A surrogate pair inside the range is one character; a lone surrogate is its own.
      char32_t cp = units[i];
      size_t step = 1;
      if (IsHighSurrogate(units[i]) && i + 1 < end && IsLowSurrogate(units[i + 1])) {
        cp = 0x10000 + ((cp - 0xD800) << 10) + (units[i + 1] - 0xDC00);
        step = 2;
      }
      uint8_t bytes[4];
      size_t n = cfstandin::EncodeCodePoint(cp, encoding, bytes);
      if (n == 0) {
        if (lossByte == 0)
          break;
        bytes[0] = lossByte;
        n = 1;
      }
      if (!fits(n))
        break;
      put(bytes, n);
      i += step;
      converted += static_cast<CFIndex>(step);
    }
  }
  if (usedBufLen)
    *usedBufLen = used;
  return converted;
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  if (length < 0 || !cfstandin::IsKnownEncoding(encoding))
    return kCFNotFound;
  const CFIndex perUnit = static_cast<CFIndex>(cfstandin::MaxBytesPerUnit(encoding));
  if (length > LONG_MAX / perUnit)
    return kCFNotFound;
  return length * perUnit;
}

Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding) {
  if (!buffer || bufferSize < 1)
    return false;
  buffer[0] = 0;
  const CFIndex length = CFStringGetLength(string);
  CFIndex used = 0;
  const CFIndex converted =
      CFStringGetBytes(string, CFRangeMake(0, length), encoding, 0, false,
                       reinterpret_cast<UInt8*>(buffer), bufferSize - 1, &used);
  if (!string || converted != length) {
    buffer[0] = 0; // nothing half-written: a caller that ignores the result sees an empty text
    return false;
  }
  buffer[used] = 0;
  return true;
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
