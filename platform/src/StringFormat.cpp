// The formatting engine: parses the whole format first, so that positional arguments and '*'
// fields can be read in argument order with their kinds known, then renders each piece.
#include "StringFormat.h"

#include "CFObject.h"
#include "TextCodec.h"

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <optional>
#include <vector>

namespace cfstandin {
namespace {

enum class Length : uint8_t {
  None,
  Char,
  Short,
  Long,
  LongLong,
  LongDouble,
  Size,
  PtrDiff,
  IntMax
};

struct Spec {
  size_t begin = 0, end = 0; // the conversion's text in the format, for literal copies
  bool literal = false;      // unknown or unfinished: copy the text
  std::string flags;         // any of "-+ #0'"
  int width = -1;            // -1: none
  int widthArg = -1;         // argument index of a '*' width
  int precision = -1;        // -1: none
  int precisionArg = -1;     // argument index of a '*' precision
  Length length = Length::None;
  char16_t conversion = 0;
  int arg = -1; // argument index of the value; -1 for %%
};

bool IsDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

// Reads a decimal number; -2 when it overflows the field limit.
int ReadNumber(const std::u16string& f, size_t& i) {
  long value = 0;
  while (i < f.size() && IsDigit(f[i])) {
    value = value * 10 + (f[i++] - u'0');
    if (value > kMaxFormatField * 16L)
      value = kMaxFormatField * 16L; // keep counting digits without overflowing
  }
  return value > kMaxFormatField ? -2 : static_cast<int>(value);
}

// "N$" at f[i]: the zero-based positional index, with i moved past it; nullopt (i unchanged)
// when there is none; -2 for an index that is 0 or too large.
std::optional<int> ReadPosition(const std::u16string& f, size_t& i) {
  size_t k = i;
  long value = 0;
  while (k < f.size() && IsDigit(f[k]) && value <= kMaxFormatArguments)
    value = value * 10 + (f[k++] - u'0');
  if (k == i || k >= f.size() || f[k] != u'$')
    return std::nullopt;
  i = k + 1;
  return value < 1 || value > kMaxFormatArguments ? -2 : static_cast<int>(value - 1);
}

FormatArgKind KindOf(const Spec& s) {
  switch (s.conversion) {
  case u'c':
  case u'C':
    return FormatArgKind::Int;
  case u's':
    return s.length == Length::Long ? FormatArgKind::WideChars : FormatArgKind::CString;
  case u'S':
    return FormatArgKind::UniChars;
  case u'p':
  case u'n':
    return FormatArgKind::Pointer;
  case u'@':
    return FormatArgKind::Object;
  case u'e':
  case u'E':
  case u'f':
  case u'F':
  case u'g':
  case u'G':
  case u'a':
  case u'A':
    return s.length == Length::LongDouble ? FormatArgKind::LongDouble : FormatArgKind::Double;
  default:
    break;
  }
  switch (s.length) {
  case Length::Long:
    return FormatArgKind::Long;
  case Length::LongLong:
    return FormatArgKind::LongLong;
  case Length::Size:
    return FormatArgKind::Size;
  case Length::PtrDiff:
    return FormatArgKind::PtrDiff;
  case Length::IntMax:
    return FormatArgKind::IntMax;
  default:
    return FormatArgKind::Int;
  }
}

bool IsKnownConversion(char16_t c) {
  return c != 0 && c < 0x80 && std::strchr("diouxXDOUeEfFgGaAcCsSpn@%", static_cast<char>(c));
}

// Parses the conversion starting at the '%' at f[i]. Argument indices come from `next` (sequential)
// or from N$; `bad` is set when the format cannot be read safely.
Spec ParseSpec(const std::u16string& f, size_t i, int& next, bool& bad) {
  Spec s;
  s.begin = i++;
  const int firstNext = next;
  auto unfinished = [&](size_t at) {
    s.literal = true;
    s.end = at;
    next = firstNext; // an unknown conversion consumes no arguments
    return s;
  };
  std::optional<int> position = ReadPosition(f, i);
  while (i < f.size() && f[i] != 0 && f[i] < 0x80 && std::strchr("-+ #0'", static_cast<char>(f[i])))
    s.flags += static_cast<char>(f[i++]);
  if (i < f.size() && f[i] == u'*') {
    ++i;
    std::optional<int> p = ReadPosition(f, i);
    s.widthArg = p ? *p : next++;
  } else if (i < f.size() && IsDigit(f[i])) {
    s.width = ReadNumber(f, i);
  }
  if (i < f.size() && f[i] == u'.') {
    ++i;
    if (i < f.size() && f[i] == u'*') {
      ++i;
      std::optional<int> p = ReadPosition(f, i);
      s.precisionArg = p ? *p : next++;
    } else {
      s.precision = ReadNumber(f, i);
    }
  }
  auto at = [&](size_t k) { return k < f.size() ? f[k] : char16_t(0); };
  if (at(i) == u'h') {
    s.length = at(i + 1) == u'h' ? Length::Char : Length::Short;
    i += s.length == Length::Char ? 2 : 1;
  } else if (at(i) == u'l') {
    s.length = at(i + 1) == u'l' ? Length::LongLong : Length::Long;
    i += s.length == Length::LongLong ? 2 : 1;
  } else if (at(i) == u'q') {
    s.length = Length::LongLong;
    ++i;
  } else if (at(i) == u'L') {
    s.length = Length::LongDouble;
    ++i;
  } else if (at(i) == u'z') {
    s.length = Length::Size;
    ++i;
  } else if (at(i) == u't') {
    s.length = Length::PtrDiff;
    ++i;
  } else if (at(i) == u'j') {
    s.length = Length::IntMax;
    ++i;
  }
  if (i >= f.size())
    return unfinished(f.size());
  if (!IsKnownConversion(f[i]))
    return unfinished(i + 1);
  s.conversion = f[i];
  s.end = i + 1;
  // %D, %O and %U are the long forms of %d, %o and %u.
  if (s.conversion == u'D' || s.conversion == u'O' || s.conversion == u'U') {
    s.conversion += 0x20;
    s.length = Length::Long;
  }
  if (s.width == -2 || s.precision == -2 || (position && *position == -2) || (s.widthArg == -2) ||
      (s.precisionArg == -2))
    bad = true;
  if (s.conversion != u'%')
    s.arg = position ? *position : next++;
  return s;
}

// Copies `text` into `out` padded to the conversion's width with spaces.
void AppendPadded(const Spec& s, int width, std::u16string_view text, std::u16string& out) {
  const size_t pad =
      width > 0 && static_cast<size_t>(width) > text.size() ? width - text.size() : 0;
  const bool left = s.flags.find('-') != std::string::npos;
  if (!left)
    out.append(pad, u' ');
  out.append(text);
  if (left)
    out.append(pad, u' ');
}

// Numbers go through the C library's printf with the conversion rebuilt around a fixed length
// modifier.
void AppendNumber(const Spec& s, int width, int precision, const FormatArg& a,
                  std::u16string& out) {
  std::string spec = "%" + s.flags;
  if (width > 0)
    spec += std::to_string(width);
  if (precision >= 0)
    spec += "." + std::to_string(precision);
  const char conversion = static_cast<char>(s.conversion);
  std::vector<char> buffer(static_cast<size_t>(width > 0 ? width : 0) +
                           static_cast<size_t>(precision > 0 ? precision : 0) + 5200);
  int n = 0;
  if (std::strchr("eEfFgGaA", conversion)) {
    if (s.length == Length::LongDouble)
      n = std::snprintf(buffer.data(), buffer.size(), (spec + "L" + conversion).c_str(), a.real);
    else
      n = std::snprintf(buffer.data(), buffer.size(), (spec + conversion).c_str(),
                        static_cast<double>(a.real));
  } else if (conversion == 'd' || conversion == 'i') {
    intmax_t v = a.integer;
    switch (s.length) {
    case Length::Char:
      v = static_cast<signed char>(v);
      break;
    case Length::Short:
      v = static_cast<short>(v);
      break;
    case Length::None:
      v = static_cast<int>(v);
      break;
    default:
      break; // 64-bit kinds keep their value
    }
    n = std::snprintf(buffer.data(), buffer.size(), (spec + "j" + conversion).c_str(), v);
  } else {
    uintmax_t v = static_cast<unsigned long long>(a.integer);
    switch (s.length) {
    case Length::Char:
      v = static_cast<unsigned char>(v);
      break;
    case Length::Short:
      v = static_cast<unsigned short>(v);
      break;
    case Length::None:
      v = static_cast<unsigned int>(v);
      break;
    default:
      break;
    }
    n = std::snprintf(buffer.data(), buffer.size(), (spec + "j" + conversion).c_str(), v);
  }
  if (n < 0)
    return;
  const size_t count = std::min(static_cast<size_t>(n), buffer.size() - 1);
  for (size_t k = 0; k < count; ++k)
    out.push_back(static_cast<unsigned char>(buffer[k]));
}

std::u16string Describe(const void* object) {
  if (!object)
    return u"(null)";
  auto cf = static_cast<CFTypeRef>(object);
  const CFTypeID type = CFGetTypeID(cf);
  if (type == CFStringGetTypeID())
    return Units(static_cast<CFStringRef>(cf));
  if (type == CFURLGetTypeID())
    return FromUTF8(static_cast<CFURLRef>(cf)->path);
  if (type == CFBundleGetTypeID())
    return u"CFBundle <" + FromUTF8(static_cast<const __CFBundle*>(cf)->path) + u">";
  return u"<CFType>";
}

// Renders one conversion with its value and its resolved width and precision.
void Render(const Spec& s, int width, int precision, const FormatArg& a, std::u16string& out) {
  std::u16string text;
  switch (s.conversion) {
  case u'%':
    out.push_back(u'%');
    return;
  case u'n':
    return; // writing through an argument is never wanted from localised formats
  case u'c':
    if (s.length == Length::Long) {
      scribo::AppendUtf16(static_cast<char32_t>(a.integer), text); // %lc: a wide character
    } else {
      text.push_back(scribo::MacRomanToUnicode(static_cast<uint8_t>(a.integer)));
    }
    break;
  case u'C':
    if (s.length == Length::Long)
      scribo::AppendUtf16(static_cast<char32_t>(a.integer), text);
    else
      text.push_back(static_cast<char16_t>(a.integer));
    break;
  case u's':
    if (!a.pointer) {
      text = u"(null)";
    } else if (s.length == Length::Long) {
      const auto* w = static_cast<const wchar_t*>(a.pointer);
      // The precision counts units and never splits a surrogate pair.
      for (size_t k = 0; w[k]; ++k) {
        const size_t units =
            static_cast<char32_t>(w[k]) >= 0x10000 && static_cast<char32_t>(w[k]) <= 0x10FFFF ? 2
                                                                                              : 1;
        if (precision >= 0 && text.size() + units > static_cast<size_t>(precision))
          break;
        scribo::AppendUtf16(static_cast<char32_t>(w[k]), text);
      }
    } else {
      // The precision bounds the bytes read: the array need not be terminated within it.
      const auto* bytes = static_cast<const char*>(a.pointer);
      const size_t n =
          precision >= 0 ? strnlen(bytes, static_cast<size_t>(precision)) : std::strlen(bytes);
      DecodeBytes(reinterpret_cast<const uint8_t*>(bytes), n, kCFStringEncodingMacRoman, text);
    }
    break;
  case u'S':
    if (!a.pointer) {
      text = u"(null)";
    } else {
      const auto* units = static_cast<const char16_t*>(a.pointer);
      for (size_t k = 0; units[k] && (precision < 0 || k < static_cast<size_t>(precision)); ++k)
        text.push_back(units[k]);
    }
    break;
  case u'@':
    text = Describe(a.pointer);
    if (precision >= 0 && text.size() > static_cast<size_t>(precision))
      text.resize(static_cast<size_t>(precision));
    break;
  case u'p': {
    char hex[32];
    std::snprintf(hex, sizeof hex, "0x%jx",
                  static_cast<uintmax_t>(reinterpret_cast<uintptr_t>(a.pointer)));
    for (const char* c = hex; *c; ++c)
      text.push_back(static_cast<unsigned char>(*c));
    break;
  }
  default:
    AppendNumber(s, width, precision, a, out);
    return;
  }
  AppendPadded(s, width, text, out);
}

} // namespace

bool FormatUnits(const std::u16string& format, FormatArgSource& args, std::u16string& out) {
  out.clear();
  std::vector<Spec> specs;
  bool bad = false;
  int next = 0;
  for (size_t i = format.find(u'%'); i != std::u16string::npos;
       i = format.find(u'%', specs.back().end))
    specs.push_back(ParseSpec(format, i, next, bad));
  if (bad)
    return false;

  // Every argument index must be used, and with one kind, before anything is read.
  std::vector<std::optional<FormatArgKind>> kinds;
  auto need = [&](int index, FormatArgKind kind) {
    if (index < 0)
      return true;
    if (static_cast<size_t>(index) >= kinds.size())
      kinds.resize(static_cast<size_t>(index) + 1);
    if (kinds[index] && *kinds[index] != kind)
      return false;
    kinds[index] = kind;
    return true;
  };
  for (const Spec& s : specs) {
    if (s.literal)
      continue;
    if (!need(s.widthArg, FormatArgKind::Int) || !need(s.precisionArg, FormatArgKind::Int) ||
        !need(s.arg, KindOf(s)))
      return false;
  }
  std::vector<FormatArg> values;
  values.reserve(kinds.size());
  for (const auto& kind : kinds) {
    if (!kind)
      return false; // a skipped position: its type, and so every later argument, is unknown
    values.push_back(args.Next(*kind));
  }

  size_t copied = 0;
  for (const Spec& s : specs) {
    out.append(format, copied, s.begin - copied);
    copied = s.end;
    if (s.literal) {
      out.append(format, s.begin, s.end - s.begin);
      continue;
    }
    int width = s.widthArg >= 0 ? static_cast<int>(values[s.widthArg].integer) : s.width;
    int precision =
        s.precisionArg >= 0 ? static_cast<int>(values[s.precisionArg].integer) : s.precision;
    Spec effective = s;
    if (width < 0 && s.widthArg >= 0) {
      // A negative '*' width means left alignment in a field of its magnitude.
      effective.flags += '-';
      width = width == INT32_MIN ? kMaxFormatField + 1 : -width;
    }
    if (precision < -1)
      precision = -1; // a negative '*' precision counts as none
    if (width > kMaxFormatField || precision > kMaxFormatField) {
      out.clear();
      return false;
    }
    Render(effective, width, precision, s.arg >= 0 ? values[s.arg] : FormatArg{}, out);
  }
  out.append(format, copied, std::u16string::npos);
  return true;
}

} // namespace cfstandin
