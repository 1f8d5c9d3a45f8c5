// C-style functions on UTF-16 text: zero-terminated arrays of 16-bit code units, the host's text
// type. Units are compared and copied as unsigned 16-bit values; a surrogate pair is two units.
// Comparisons return exactly -1, 0 or 1. Null pointers are not accepted. Thread: any (no state).
#pragma once

#include <cstddef>

// Units before the first 0.
size_t sx_strlen(const unsigned short* s);
// The first unit equal to `c` (the terminator when `c` is 0), or null.
unsigned short* sx_strchr(const unsigned short* s, unsigned short c);
// Unit-wise comparison; a proper prefix compares lower.
int sx_strcmp(const unsigned short* a, const unsigned short* b);
// As sx_strcmp over at most `n` units; 0 when `n` is 0.
int sx_strncmp(const unsigned short* a, const unsigned short* b, size_t n);
// The first occurrence of `needle` in `hay` (`hay` itself for an empty needle), or null.
unsigned short* sx_strstr(const unsigned short* hay, const unsigned short* needle);
// Copies at most `n` units of `src` with its terminator; zero-fills the rest of the `n` units.
// A source of `n` units or more leaves `dst` unterminated, as strncpy does.
void sx_strncpy(unsigned short* dst, const unsigned short* src, size_t n);
// Copies `src` with its terminator; `dst` must have room for it.
void sx_strcpy(unsigned short* dst, const unsigned short* src);
// Copies at most dstSize - 1 units of `src` and a terminator; writes nothing when dstSize is 0.
void sx_strcpy(unsigned short* dst, size_t dstSize, const unsigned short* src);
// Appends `src` at the terminator of `dst`, keeping the whole text within dstSize units
// (at most dstSize - 1 units and a terminator). Writes nothing when `dst` has no terminator
// within dstSize units.
void sx_strcat(unsigned short* dst, size_t dstSize, const unsigned short* src);
// Formats like CFStringCreateWithFormat (printf conversions, %@ for a CFString, %S for UTF-16
// text) into `dst`: at most dstSize - 1 units and a terminator. Returns the units written;
// 0 with an empty `dst` when the format cannot be used, nothing written when dstSize is 0.
int sx_sprintf(unsigned short* dst, size_t dstSize, const unsigned short* format, ...);

// Byte strings compared after toupper of each character (passed as a signed byte).
int stricmp(const char* a, const char* b);
// As stricmp over at most `n` characters; 0 when `n` is 0.
int strnicmp(const char* a, const char* b, size_t n);
// The decimal text of `value` ("%d"); returns the count of characters written. `dst` needs room
// for 12 bytes.
int num2str(int value, char* dst);
