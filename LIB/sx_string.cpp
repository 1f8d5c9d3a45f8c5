#include "sx_string.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cctype>
#include <cstdarg>
#include <cstdio>

size_t sx_strlen(const unsigned short* s) {
  size_t n = 0;
  while (s[n])
    ++n;
  return n;
}

unsigned short* sx_strchr(const unsigned short* s, unsigned short c) {
  for (;; ++s) {
    if (*s == c)
      return const_cast<unsigned short*>(s);
    if (*s == 0)
      return nullptr;
  }
}

int sx_strcmp(const unsigned short* a, const unsigned short* b) {
  for (; *a && *a == *b; ++a, ++b) {
  }
  return *a == *b ? 0 : (*a < *b ? -1 : 1);
}

int sx_strncmp(const unsigned short* a, const unsigned short* b, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (a[i] != b[i])
      return a[i] < b[i] ? -1 : 1;
    if (a[i] == 0)
      return 0;
  }
  return 0;
}

unsigned short* sx_strstr(const unsigned short* hay, const unsigned short* needle) {
  if (*needle == 0)
    return const_cast<unsigned short*>(hay);
  const size_t n = sx_strlen(needle);
  for (const unsigned short* p = sx_strchr(hay, *needle); p; p = sx_strchr(p + 1, *needle)) {
    if (sx_strncmp(p, needle, n) == 0)
      return const_cast<unsigned short*>(p);
  }
  return nullptr;
}

void sx_strncpy(unsigned short* dst, const unsigned short* src, size_t n) {
  size_t i = 0;
  for (; i < n && src[i]; ++i)
    dst[i] = src[i];
  for (; i < n; ++i)
    dst[i] = 0;
}

void sx_strcpy(unsigned short* dst, const unsigned short* src) {
  while ((*dst++ = *src++) != 0) {
  }
}

void sx_strcpy(unsigned short* dst, size_t dstSize, const unsigned short* src) {
  if (dstSize == 0)
    return;
  size_t i = 0;
  for (; i + 1 < dstSize && src[i]; ++i)
    dst[i] = src[i];
  dst[i] = 0;
}

void sx_strcat(unsigned short* dst, size_t dstSize, const unsigned short* src) {
  size_t end = 0;
  while (end < dstSize && dst[end])
    ++end;
  if (end == dstSize)
    return; // no terminator within the capacity: nothing safe to append to
  sx_strcpy(dst + end, dstSize - end, src);
}

int sx_sprintf(unsigned short* dst, size_t dstSize, const unsigned short* format, ...) {
  if (dstSize == 0)
    return 0;
  CFStringRef formatString = CFStringCreateWithCharacters(kCFAllocatorDefault, format,
                                                          static_cast<CFIndex>(sx_strlen(format)));
  CFStringRef result = nullptr;
  if (formatString) {
    va_list arguments;
    va_start(arguments, format);
    result =
        CFStringCreateWithFormatAndArguments(kCFAllocatorDefault, nullptr, formatString, arguments);
    va_end(arguments);
    CFRelease(formatString);
  }
  size_t n = 0;
  if (result) {
    const size_t length = static_cast<size_t>(CFStringGetLength(result));
    n = length < dstSize - 1 ? length : dstSize - 1;
    CFStringGetCharacters(result, CFRangeMake(0, static_cast<CFIndex>(n)), dst);
    CFRelease(result);
  }
  dst[n] = 0;
  return static_cast<int>(n);
}

namespace {

// Characters go to toupper as signed bytes, so bytes above 0x7F are negative and sort below
// ASCII. A negative value has no upper case of its own; it is kept as it is rather than handed
// to a C library that may index a table with it.
int Upper(char c) {
  const int value = static_cast<signed char>(c);
  return value < 0 ? value : std::toupper(value);
}

int CompareUpper(char a, char b) {
  const int x = Upper(a);
  const int y = Upper(b);
  return x == y ? 0 : (x < y ? -1 : 1);
}

} // namespace

int stricmp(const char* a, const char* b) {
  for (;; ++a, ++b) {
    if (int order = CompareUpper(*a, *b))
      return order;
    if (*a == 0)
      return 0;
  }
}

int strnicmp(const char* a, const char* b, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    if (int order = CompareUpper(a[i], b[i]))
      return order;
    if (a[i] == 0)
      return 0;
  }
  return 0;
}

int num2str(int value, char* dst) {
  return std::sprintf(dst, "%d", value);
}
