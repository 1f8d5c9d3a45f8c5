// CoreFoundation stand-in for platforms without it: base types and reference counting.
//
// Only the subset that the SDK and its plug-ins use is offered, with the names, types and
// semantics of the macOS originals. Objects are reference counted: functions with "Create" or
// "Copy" in their name hand the caller a reference to release with CFRelease; "Get" functions
// do not. Thread: any; each object's count is atomic, the objects themselves are immutable.
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
#define CF_EXTERN_C_BEGIN extern "C" {
#define CF_EXTERN_C_END }
#else
#define CF_EXTERN_C_BEGIN
#define CF_EXTERN_C_END
#endif

CF_EXTERN_C_BEGIN

typedef unsigned char Boolean;
typedef uint8_t UInt8;
typedef int8_t SInt8;
typedef uint16_t UInt16;
typedef int16_t SInt16;
typedef uint32_t UInt32;
typedef int32_t SInt32;
typedef uint64_t UInt64;
typedef int64_t SInt64;
typedef uint16_t UniChar;
typedef unsigned char Str255[256];
typedef unsigned char* StringPtr;

typedef long CFIndex;
typedef unsigned long CFOptionFlags;
typedef unsigned long CFTypeID;
typedef const void* CFTypeRef;

typedef struct {
  CFIndex location;
  CFIndex length;
} CFRange;

static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
  CFRange range = {location, length};
  return range;
}

typedef enum {
  kCFCompareLessThan = -1,
  kCFCompareEqualTo = 0,
  kCFCompareGreaterThan = 1
} CFComparisonResult;

enum { kCFNotFound = -1 };

typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFURL* CFURLRef;
typedef struct __CFBundle* CFBundleRef;
typedef const struct __CFDictionary* CFDictionaryRef;

// The only allocator: the system heap. Null means the same.
#define kCFAllocatorDefault ((CFAllocatorRef)0)

// Adds one reference; returns its argument. Null is returned as null.
CFTypeRef CFRetain(CFTypeRef object);
// Drops one reference and destroys the object at the last one. Null is ignored.
void CFRelease(CFTypeRef object);
// Type identifiers of the stand-in's object kinds.
CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeID CFStringGetTypeID(void);
CFTypeID CFURLGetTypeID(void);
CFTypeID CFBundleGetTypeID(void);

CF_EXTERN_C_END
