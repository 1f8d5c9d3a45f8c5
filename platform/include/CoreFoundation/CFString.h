// CoreFoundation stand-in: immutable strings of UTF-16 code units.
//
// Encodings understood: Mac Roman (the application's text encoding), UTF-8, ASCII,
// ISO Latin 1 and UTF-16 (host byte order). Creation from bytes that are invalid in the
// requested encoding returns null, as on macOS. Thread: any.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <stdarg.h>

CF_EXTERN_C_BEGIN

typedef UInt32 CFStringEncoding;
enum {
  kCFStringEncodingMacRoman = 0,
  kCFStringEncodingWindowsLatin1 = 0x0500,
  kCFStringEncodingISOLatin1 = 0x0201,
  kCFStringEncodingASCII = 0x0600,
  kCFStringEncodingUnicode = 0x0100,
  kCFStringEncodingUTF8 = 0x08000100,
  kCFStringEncodingUTF16 = 0x0100,
  kCFStringEncodingInvalidId = 0xffffffffU
};

typedef CFOptionFlags CFStringCompareFlags;
enum {
  kCFCompareCaseInsensitive = 1,
  kCFCompareBackwards = 4,
  kCFCompareAnchored = 8,
  kCFCompareNonliteral = 16,
  kCFCompareLocalized = 32,
  kCFCompareNumerically = 64
};

// A constant string for a literal: created once, never destroyed, never to be released.
CFStringRef __CFStringMakeConstantString(const char* cStr);
#define CFSTR(cStr) __CFStringMakeConstantString("" cStr "")

CFStringRef CFStringCreateWithCString(CFAllocatorRef alloc, const char* cStr,
                                      CFStringEncoding encoding);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef alloc, const UInt8* bytes, CFIndex numBytes,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef alloc, const UniChar* chars,
                                         CFIndex numChars);
CFStringRef CFStringCreateWithPascalString(CFAllocatorRef alloc, ConstStringPtr pStr,
                                           CFStringEncoding encoding);
CFStringRef CFStringCreateCopy(CFAllocatorRef alloc, CFStringRef string);

CFIndex CFStringGetLength(CFStringRef string);
UniChar CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index);
void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer);
// Direct access to the units; the stand-in always has them.
const UniChar* CFStringGetCharactersPtr(CFStringRef string);

// Converts units of `range` into `buffer` (or only counts when `buffer` is null). Characters that
// the encoding cannot hold become `lossByte`, or stop the conversion when it is 0. Returns the
// number of characters converted and stores the bytes used in *usedBufLen.
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                         UInt8 lossByte, Boolean isExternalRepresentation, UInt8* buffer,
                         CFIndex maxBufLen, CFIndex* usedBufLen);
// Zero-terminated conversion; false when the buffer is too small or a character cannot be encoded.
Boolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex bufferSize,
                           CFStringEncoding encoding);
// Length-prefixed conversion (at most 255 bytes); false when it does not fit or cannot be encoded.
Boolean CFStringGetPascalString(CFStringRef string, StringPtr buffer, CFIndex bufferSize,
                                CFStringEncoding encoding);
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);

// Decimal value of the leading number (after optional blanks and sign); 0 when there is none.
SInt32 CFStringGetIntValue(CFStringRef string);
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
