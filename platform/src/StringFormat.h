// The formatting engine under CFStringCreateWithFormat: printf conversions with flags, widths,
// precisions, length modifiers and positional arguments (%2$d), plus %@ for a CoreFoundation
// object, %C for one UTF-16 unit and %S for a zero-terminated UTF-16 array.
//
// Arguments are pulled by kind through FormatArgSource, so the same engine serves a va_list and
// sources that build their values from other data (the fuzzer's).
#pragma once

#include <cstdint>
#include <string>

namespace cfstandin {

// How an argument is read; integers at their promoted width.
enum class FormatArgKind : uint8_t {
  Int,        // int (also char, short, and %c / %C)
  Long,       // long
  LongLong,   // long long
  Size,       // size_t
  PtrDiff,    // ptrdiff_t
  IntMax,     // intmax_t
  Double,     // double
  LongDouble, // long double
  CString,    // const char*, zero-terminated, application text encoding
  UniChars,   // const UniChar*, zero-terminated
  WideChars,  // const wchar_t*, zero-terminated
  Pointer,    // void* (%p, and %n, which writes nothing here)
  Object,     // CFTypeRef (%@)
};

struct FormatArg {
  long long integer = 0; // all integer kinds, bit pattern of the value read
  long double real = 0;  // Double and LongDouble
  const void* pointer = nullptr;
};

class FormatArgSource {
public:
  virtual ~FormatArgSource() = default;
  // The next argument in order, read as `kind`.
  virtual FormatArg Next(FormatArgKind kind) = 0;
};

// Widths and precisions above this many units make the format fail rather than fill memory.
inline constexpr int kMaxFormatField = 65536;
// Positional arguments above this index make the format fail.
inline constexpr int kMaxFormatArguments = 256;

// Formats `format` into `out`. False (out cleared) when the arguments cannot be read safely:
// a positional index that is skipped, above kMaxFormatArguments or used with two different kinds,
// or a field wider than kMaxFormatField. An unknown or unfinished conversion is copied as text.
bool FormatUnits(const std::u16string& format, FormatArgSource& args, std::u16string& out);

} // namespace cfstandin
