// CFStringCreateWithFormat: the formatting engine fed from a va_list.
#include "CFObject.h"
#include "StringFormat.h"

#include <cstdarg>
#include <cstddef>
#include <cstdint>

namespace {

class VaListArgs final : public cfstandin::FormatArgSource {
public:
  explicit VaListArgs(va_list arguments) { va_copy(ap_, arguments); }
  ~VaListArgs() override { va_end(ap_); }
  VaListArgs(const VaListArgs&) = delete;
  VaListArgs& operator=(const VaListArgs&) = delete;

  cfstandin::FormatArg Next(cfstandin::FormatArgKind kind) override {
    using K = cfstandin::FormatArgKind;
    cfstandin::FormatArg a;
    switch (kind) {
    case K::Int:
      a.integer = va_arg(ap_, int);
      break;
    case K::Long:
      a.integer = va_arg(ap_, long);
      break;
    case K::LongLong:
      a.integer = va_arg(ap_, long long);
      break;
    case K::Size:
      a.integer = static_cast<long long>(va_arg(ap_, size_t));
      break;
    case K::PtrDiff:
      a.integer = va_arg(ap_, ptrdiff_t);
      break;
    case K::IntMax:
      a.integer = va_arg(ap_, intmax_t);
      break;
    case K::Double:
      a.real = va_arg(ap_, double);
      break;
    case K::LongDouble:
      a.real = va_arg(ap_, long double);
      break;
    case K::CString:
    case K::UniChars:
    case K::WideChars:
    case K::Pointer:
    case K::Object:
      a.pointer = va_arg(ap_, const void*);
      break;
    }
    return a;
  }

private:
  va_list ap_;
};

} // namespace

CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef, CFDictionaryRef,
                                                 CFStringRef format, va_list arguments) {
  if (!format)
    return nullptr;
  VaListArgs args(arguments);
  std::u16string text;
  if (!cfstandin::FormatUnits(cfstandin::Units(format), args, text))
    return nullptr;
  return cfstandin::MakeString(std::move(text));
}

CFStringRef CFStringCreateWithFormat(CFAllocatorRef alloc, CFDictionaryRef formatOptions,
                                     CFStringRef format, ...) {
  va_list arguments;
  va_start(arguments, format);
  CFStringRef result =
      CFStringCreateWithFormatAndArguments(alloc, formatOptions, format, arguments);
  va_end(arguments);
  return result;
}
