// Byte encodings of the CoreFoundation stand-in: decoding into and encoding from UTF-16 units.
#pragma once

#include <CoreFoundation/CFString.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace cfstandin {

// Whether the stand-in knows the encoding.
bool IsKnownEncoding(CFStringEncoding encoding);
// Appends the decoded units of `bytes`; false when they are not valid in the encoding.
bool DecodeBytes(const uint8_t* bytes, size_t count, CFStringEncoding encoding,
                 std::u16string& out);
// Encodes one code point (a surrogate pair already joined). Writes up to 4 bytes into `out` and
// returns their count, or 0 when the encoding cannot represent it.
size_t EncodeCodePoint(char32_t codePoint, CFStringEncoding encoding, uint8_t out[4]);
// Largest number of bytes one UTF-16 unit can take in the encoding.
size_t MaxBytesPerUnit(CFStringEncoding encoding);

} // namespace cfstandin
