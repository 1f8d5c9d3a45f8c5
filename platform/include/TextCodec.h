// Text codecs: Mac Roman (the application's 8-bit text encoding), UTF-8 and UTF-16.
//
// One set of conversions for every Linux stand-in: the CoreFoundation strings, the strings-file
// reader, the reference engine at its host-function boundary and the host programs. Plain
// functions without state; nothing throws. Thread: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace scribo {

// What NextUtf8 returns for a byte that does not start a well-formed UTF-8 sequence.
inline constexpr char32_t kMalformedUtf8 = 0xFFFFFFFF;

// The Unicode character of a Mac Roman byte.
char16_t MacRomanToUnicode(uint8_t byte);
// The Mac Roman byte of a code point; -1 when Mac Roman has no such character.
int UnicodeToMacRoman(char32_t codePoint);

// Reads the UTF-8 sequence at bytes[i] and moves i past it. A stray or truncated sequence, an
// overlong form, a surrogate or a value above U+10FFFF reads as kMalformedUtf8 and moves i by
// one byte.
char32_t NextUtf8(std::string_view bytes, size_t& i);
// Writes the UTF-8 form of a code point into `out`; returns its length, 0 for a surrogate or a
// value above U+10FFFF, which have none.
size_t EncodeUtf8(char32_t codePoint, uint8_t out[4]);
// Reads the character at units[i], a surrogate pair joined, and moves i past it. A lone
// surrogate reads as itself.
char32_t NextUtf16(std::u16string_view units, size_t& i);
// Appends U+10000..U+10FFFF as a surrogate pair and any other value as the unit of its low 16
// bits.
void AppendUtf16(char32_t codePoint, std::u16string& out);

// Whole texts. What cannot be decoded becomes U+FFFD; what Mac Roman lacks becomes '?'.
std::string MacRomanToUtf8(std::string_view text);
std::string Utf8ToMacRoman(std::string_view text);
std::u16string Utf8ToUtf16(std::string_view text);
std::string Utf16ToUtf8(std::u16string_view text);
// A zero-terminated UTF-16 text as plug-ins pass it; empty for null.
std::string Utf16ToUtf8(const uint16_t* text);

// Strict decoding for readers that must refuse bad input: appends the units of `text` to `out`
// and returns true, or returns false (`out` unchanged) when `text` is not well-formed UTF-8.
bool DecodeUtf8(std::string_view text, std::u16string& out);

} // namespace scribo
