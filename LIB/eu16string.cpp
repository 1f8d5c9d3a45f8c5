#include "eu16string.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstdio>
#include <vector>

namespace {

// Appends the units of a platform string up to its first 0 unit, then releases the string.
void AppendAndRelease(CFStringRef string, eu16string::units_type& text) {
  if (!string)
    return;
  const CFIndex length = CFStringGetLength(string);
  std::vector<UniChar> buffer(static_cast<size_t>(length) + 1);
  CFStringGetCharacters(string, CFRangeMake(0, length), buffer.data());
  buffer[static_cast<size_t>(length)] = 0;
  text.append(buffer.data()); // stops at the first 0 unit
  CFRelease(string);
}

} // namespace

eu16string::eu16string(const char* text) {
  if (text)
    AppendAndRelease(
        CFStringCreateWithCString(kCFAllocatorDefault, text, GetApplicationTextEncoding()), text_);
}

eu16string::eu16string(const unsigned char* text) {
  if (text)
    AppendAndRelease(CFStringCreateWithCString(kCFAllocatorDefault,
                                               reinterpret_cast<const char*>(text),
                                               kCFStringEncodingUTF8),
                     text_);
}

eu16string::eu16string(unsigned int codePoint) {
  if (codePoint >= 0x10000 && codePoint <= 0x10FFFF) {
    text_.push_back(static_cast<unsigned short>(0xD800 + ((codePoint - 0x10000) >> 10)));
    text_.push_back(static_cast<unsigned short>(0xDC00 + (codePoint & 0x3FF)));
  } else if (const auto unit = static_cast<unsigned short>(codePoint & 0xFFFF)) {
    text_.push_back(unit);
  }
}

eu16string::eu16string(char c) {
  const char text[2] = {c, 0};
  *this = eu16string(text);
}

void eu16string::GetStdString(std::string& out) const {
  out.clear();
  CFStringRef string = CFStringCreateWithCharacters(kCFAllocatorDefault, text_.data(),
                                                    static_cast<CFIndex>(text_.size()));
  if (!string)
    return;
  const TextEncoding encoding = GetApplicationTextEncoding();
  const CFIndex length = CFStringGetLength(string);
  const CFIndex maxSize = CFStringGetMaximumSizeForEncoding(length, encoding);
  if (maxSize >= 0) {
    std::vector<char> buffer(static_cast<size_t>(maxSize) + 1);
    CFIndex used = 0;
    CFStringGetBytes(string, CFRangeMake(0, length), encoding, '?', false,
                     reinterpret_cast<UInt8*>(buffer.data()), maxSize, &used);
    buffer[used >= 0 && used <= maxSize ? static_cast<size_t>(used)
                                        : static_cast<size_t>(maxSize)] = 0;
    out.assign(buffer.data()); // up to the first 0 byte
  }
  CFRelease(string);
}

unsigned int eu16string::AnsiPos(const eu16string& sub) const {
  const size_t p = text_.find(sub.text_);
  return p < text_.size() ? static_cast<unsigned int>(p + 1) : 0;
}

eu16string& eu16string::AnsiDelete(unsigned int index, int count) {
  const size_t length = text_.size();
  if (index == 0 || count < 1 || index > length)
    return *this;
  size_t n = static_cast<size_t>(count);
  if (index + n - 1 > length)
    n = length - index + 1;
  text_.erase(index - 1, n);
  return *this;
}

eu16string eu16string::AnsiSubString(int index, int count) const {
  const long length = static_cast<long>(text_.size());
  const long start = index < 1 ? 1 : index;
  if (count < 1 || length == 0 || start > length)
    return eu16string();
  long n = count;
  if (n + start - 1 > length)
    n = length - start + 1;
  return eu16string(text_.substr(static_cast<size_t>(start - 1), static_cast<size_t>(n)));
}

eu16string& eu16string::AnsiSetLength(unsigned int length) {
  if (text_.size() > length)
    text_.erase(length);
  return *this;
}

unsigned short eu16string::AnsiCharAtIndex(int index) const {
  if (index < 1 || static_cast<size_t>(index) > text_.size())
    return 0x20;
  return text_[static_cast<size_t>(index) - 1];
}

unsigned short& eu16string::AnsiCharAtIndex(int index) {
  if (index >= 1 && static_cast<size_t>(index) <= text_.size())
    return text_[static_cast<size_t>(index) - 1];
  if (!text_.empty())
    return text_[0];
  // The terminator of an empty string must stay 0; hand out a unit that no text owns.
  thread_local unsigned short scratch;
  scratch = 0;
  return scratch;
}

int StrToIntDef(eu16string text, int defaultValue) {
  if (text.empty())
    return defaultValue;
  CFStringRef string = CFStringCreateWithCharacters(kCFAllocatorDefault, text.c_str(),
                                                    static_cast<CFIndex>(text.length()));
  if (!string)
    return defaultValue;
  const int value = CFStringGetIntValue(string);
  CFRelease(string);
  return value;
}

eu16string IntToEu16Str(long value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%ld", value);
  return eu16string(buffer);
}
