// CoreFoundation stand-in: immutable strings of UTF-16 code units.
//
// Encodings understood: Mac Roman (the application's text encoding) and UTF-8. Creation from
// bytes that are invalid in the requested encoding returns null, as on macOS. Thread: any.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <stdarg.h>

CF_EXTERN_C_BEGIN

typedef UInt32 CFStringEncoding;
enum { kCFStringEncodingMacRoman = 0, kCFStringEncodingUTF8 = 0x08000100 };

// Comparison options: the stand-in offers the literal comparison (0) only.
typedef CFOptionFlags CFStringCompareFlags;

// A constant string for a literal: created once, never destroyed, never to be released.
CFStringRef __CFStringMakeConstantString(const char* cStr);
#define CFSTR(cStr) __CFStringMakeConstantString("" cStr "")

CFStringRef CFStringCreateWithCString(CFAllocatorRef alloc, const char* cStr,
                                      CFStringEncoding encoding);
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef alloc, const UniChar* chars,
                                         CFIndex numChars);

CFIndex CFStringGetLength(CFStringRef string);
void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer);

// Converts units of `range` into `buffer` (or only counts when `buffer` is null). Characters that
// the encoding cannot hold become `lossByte`, or stop the conversion when it is 0. Returns the
// number of characters converted and stores the bytes used in *usedBufLen. The stand-in's
// encodings have no external representation: that flag changes nothing.
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                         UInt8 lossByte, Boolean isExternalRepresentation, UInt8* buffer,
                         CFIndex maxBufLen, CFIndex* usedBufLen);
// Length-prefixed conversion (at most 255 bytes); false when it does not fit or cannot be encoded.
Boolean CFStringGetPascalString(CFStringRef string, StringPtr buffer, CFIndex bufferSize,
                                CFStringEncoding encoding);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);

// Decimal value of the leading number (after optional blanks and sign); 0 when there is none.
SInt32 CFStringGetIntValue(CFStringRef string);
// Unit-by-unit comparison of unsigned values; a proper prefix sorts first.
CFComparisonResult CFStringCompare(CFStringRef a, CFStringRef b, CFStringCompareFlags options);

// printf-style formatting into a new string: the C conversions with their flags, widths,
// precisions and length modifiers, plus %@ for a CFString argument.
CFStringRef CFStringCreateWithFormat(CFAllocatorRef alloc, CFDictionaryRef formatOptions,
                                     CFStringRef format, ...);
CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef alloc,
                                                 CFDictionaryRef formatOptions, CFStringRef format,
                                                 va_list arguments);

// Carbon: the encoding in which the application's 8-bit texts are written (Mac Roman).
typedef UInt32 TextEncoding;
TextEncoding GetApplicationTextEncoding(void);

CF_EXTERN_C_END
