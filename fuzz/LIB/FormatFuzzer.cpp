// Feeds arbitrary formats to the formatting engine behind CFStringCreateWithFormat and sx_sprintf.
// The input is split at the first 0 byte pair: the format (UTF-16 units) before it, the argument
// values after it. Arguments are made to match what the format asks for, as a correct caller's
// would, so every crash or sanitizer report is the engine's own fault.
#include "StringFormat.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstring>

namespace {

class FuzzArgs final : public cfstandin::FormatArgSource {
public:
  FuzzArgs(const uint8_t* data, size_t size) : data_(data), size_(size) {}

  // Every kind gets the next eight input bytes: as the integer, as a double's bits, or as the
  // choice among valid pointers of the kind (texts in odd encodings and with pairs, or null).
  cfstandin::FormatArg Next(cfstandin::FormatArgKind kind) override {
    using K = cfstandin::FormatArgKind;
    static const char* const kTexts[] = {nullptr, "", "Noten", "Caf\x8E", "\xFF\x80 tail"};
    static const UniChar kUnits[] = {u'V', 0xD834, 0xDD1E, 0};
    static const wchar_t kWide[] = {L'w', 0x1D11E, 0x110000, 0};
    static const CFStringRef kObjects[] = {nullptr, CFSTR("object"), CFSTR("\u00e9l\u00e8ve")};
    uint64_t bits = 0;
    const size_t n = size_ < 8 ? size_ : 8;
    std::memcpy(&bits, data_, n);
    data_ += n;
    size_ -= n;
    cfstandin::FormatArg a;
    double real;
    std::memcpy(&real, &bits, sizeof real);
    a.real = real;
    a.integer = kind == K::Int ? static_cast<int>(bits) : static_cast<long long>(bits);
    a.pointer = kind == K::CString     ? kTexts[bits % 5]
                : kind == K::UniChars  ? (bits % 2 ? kUnits : nullptr)
                : kind == K::WideChars ? (bits % 2 ? kWide : nullptr)
                : kind == K::Object    ? kObjects[bits % 3]
                                    : reinterpret_cast<const void*>(static_cast<uintptr_t>(bits));
    return a;
  }

private:
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
