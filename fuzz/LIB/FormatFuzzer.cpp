// Feeds arbitrary formats to the formatting engine behind CFStringCreateWithFormat and sx_sprintf.
// The input is split at the first 0 byte pair: the format (UTF-16 units) before it, the argument
// values after it. Arguments are made to match what the format asks for, as a correct caller's
// would, so every crash or sanitizer report is the engine's own fault.
#include "StringFormat.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

class FuzzArgs final : public cfstandin::FormatArgSource {
public:
  FuzzArgs(const uint8_t* data, size_t size) : data_(data), size_(size) {}

  cfstandin::FormatArg Next(cfstandin::FormatArgKind kind) override {
    using K = cfstandin::FormatArgKind;
    static const char* const kTexts[] = {nullptr, "", "Noten", "Caf\x8E", "\xFF\x80 tail"};
    static const UniChar kUnits[] = {u'V', 0xD834, 0xDD1E, 0};
    static const wchar_t kWide[] = {L'w', 0x1D11E, 0x110000, 0};
    cfstandin::FormatArg a;
    const uint64_t bits = Take();
    switch (kind) {
    case K::Double:
    case K::LongDouble: {
      double d;
      std::memcpy(&d, &bits, sizeof d);
      a.real = d;
      break;
    }
    case K::CString:
      a.pointer = kTexts[bits % 5];
      break;
    case K::UniChars:
      a.pointer = bits % 2 ? kUnits : nullptr;
      break;
    case K::WideChars:
      a.pointer = bits % 2 ? kWide : nullptr;
      break;
    case K::Pointer:
      a.pointer = reinterpret_cast<const void*>(static_cast<uintptr_t>(bits));
      break;
    case K::Object:
      a.pointer =
          bits % 3 == 0 ? nullptr : (bits % 3 == 1 ? CFSTR("object") : CFSTR("\u00e9l\u00e8ve"));
      break;
    case K::Int:
      a.integer = static_cast<int>(bits);
      break;
    default:
      a.integer = static_cast<long long>(bits);
      break;
    }
    return a;
  }

private:
  uint64_t Take() {
    uint64_t v = 0;
    const size_t n = size_ < 8 ? size_ : 8;
    std::memcpy(&v, data_, n);
    data_ += n;
    size_ -= n;
    return v;
  }
  const uint8_t* data_;
  size_t size_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::u16string format;
  size_t i = 0;
  for (; i + 1 < size; i += 2) {
    const char16_t unit = static_cast<char16_t>(data[i] | data[i + 1] << 8);
    if (unit == 0) {
      i += 2;
      break;
    }
    format.push_back(unit);
  }
  FuzzArgs args(data + (i < size ? i : size), i < size ? size - i : 0);
  std::u16string out;
  if (!cfstandin::FormatUnits(format, args, out) && !out.empty())
    __builtin_trap();
  return 0;
}
