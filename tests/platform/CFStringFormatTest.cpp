// CFStringCreateWithFormat: the printf conversions, the CoreFoundation ones, positions and the
// formats it refuses.
#include <CoreFoundation/CoreFoundation.h>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <string>

namespace {

// The formatted text as UTF-16, or "<null>" when no string was made.
template <class... Args> std::u16string Format(const char16_t* format, Args... args) {
  CFStringRef f = CFStringCreateWithCharacters(
      nullptr, reinterpret_cast<const UniChar*>(format),
      static_cast<CFIndex>(std::char_traits<char16_t>::length(format)));
  CFStringRef s = CFStringCreateWithFormat(nullptr, nullptr, f, args...);
  CFRelease(f);
  if (!s)
    return u"<null>";
  std::u16string text(static_cast<size_t>(CFStringGetLength(s)), 0);
  CFStringGetCharacters(s, CFRangeMake(0, CFStringGetLength(s)),
                        reinterpret_cast<UniChar*>(text.data()));
  EXPECT_EQ(CFGetRetainCount(s), 1);
  CFRelease(s);
  return text;
}

TEST(CFStringFormat, IntegersWithFlagsWidthsAndLengths) {
  EXPECT_EQ(Format(u"%d,%d", 20000, -1), u"20000,-1");
  EXPECT_EQ(Format(u"[%5d|%-5d|%05d|%+d|% d]", 42, 42, -42, 7, 7), u"[   42|42   |-0042|+7| 7]");
  EXPECT_EQ(Format(u"%.3d %.0d|%i", 5, 0, -3), u"005 |-3");
  EXPECT_EQ(Format(u"%x %X %#x %o %#o %u", 255, 255, 255, 8, 8, 4294967295u),
            u"ff FF 0xff 10 010 4294967295");
  // Length modifiers cut or widen the value read.
  EXPECT_EQ(Format(u"%hhd %hd %hhu %hu", 300, 70000, 300, 70000), u"44 4464 44 4464");
  EXPECT_EQ(Format(u"%ld %lld %qd %lu", LONG_MIN, LLONG_MAX, -5LL, ULONG_MAX),
            u"-9223372036854775808 9223372036854775807 -5 18446744073709551615");
  EXPECT_EQ(Format(u"%zu %td %jd %D %U %O", size_t{7}, ptrdiff_t{-8}, intmax_t{9}, -10L, 11UL, 8UL),
            u"7 -8 9 -10 11 10");
  // '*' widths and precisions, a negative width meaning left alignment.
  EXPECT_EQ(Format(u"[%*d|%-*d|%*d|%.*d|%.*d]", 4, 1, 3, 2, -3, 3, 3, 4, -1, 5),
            u"[   1|2  |3  |004|5]");
}

TEST(CFStringFormat, RealsAndCharacters) {
  EXPECT_EQ(Format(u"%.2f %8.3f %-8.1f| %e %g %G", 3.14159, -2.5, 1.25, 1234.5, 0.0001, 1e20),
            u"3.14   -2.500 1.2     | 1.234500e+03 0.0001 1E+20");
  EXPECT_EQ(Format(u"%a %Lf %F %f", 1.0, 2.5L, INFINITY, NAN), u"0x1p+0 2.500000 INF nan");
  EXPECT_EQ(Format(u"%c%c %C %lc|%3c|%-3C|", 'A', 0x8E, 0x2669, 0x1F3B5, 'x', 0x41),
            u"A\u00e9 \u2669 \U0001F3B5|  x|A  |");
}

TEST(CFStringFormat, TextsObjectsAndPointers) {
  const UniChar units[] = {u'\u00e9', u't', u'\u00e9', 0};
  const wchar_t wide[] = {L'w', 0x1D11E, 0};
  EXPECT_EQ(Format(u"%s|%.3s|%8s|%-6s|%s", "Noten", "Noten", "Caf\x8E", "ab",
                   static_cast<const char*>(nullptr)),
            u"Noten|Not|    Caf\u00e9|ab    |(null)");
  // A precision bounds the bytes read: this array has no terminator.
  const char unterminated[3] = {'a', 'b', 'c'};
  EXPECT_EQ(Format(u"%.3s", unterminated), u"abc");
  EXPECT_EQ(Format(u"%S|%.1S|%5S|%ls", units, units, units, wide),
            u"\u00e9t\u00e9|\u00e9|  \u00e9t\u00e9|w\U0001D11E");
  EXPECT_EQ(Format(u"%.2ls|%.3ls", wide, wide), u"w|w\U0001D11E"); // never half a pair
  EXPECT_EQ(Format(u"%@ and %@ and %.2@ and %-4@|", CFSTR("one"), static_cast<CFStringRef>(nullptr),
                   CFSTR("three"), CFSTR("x")),
            u"one and (null) and th and x   |");
  EXPECT_EQ(Format(u"%p %p", reinterpret_cast<void*>(0x1234), nullptr), u"0x1234 0x0");
  int written = 99;
  EXPECT_EQ(Format(u"ab%ncd", &written), u"abcd");
  EXPECT_EQ(written, 99) << "%n must not write";
}

TEST(CFStringFormat, PositionalArgumentsAndFormatsThatCannotBeRead) {
  EXPECT_EQ(Format(u"%2$s %1$d", 7, "bars"), u"bars 7");
  EXPECT_EQ(Format(u"%1$d-%1$d %2$@", 5, CFSTR("x")), u"5-5 x");
  EXPECT_EQ(Format(u"%1$*2$d|%3$.*2$f", 7, 4, 1.5), u"   7|1.5000");
  EXPECT_EQ(Format(u"100%% %"), u"100% %");
  EXPECT_EQ(Format(u"%y %k %d", 3), u"%y %k 3"); // unknown conversions stay as text, take nothing
  // Refused: a skipped position, one position read as two kinds, a field too wide to be meant.
  EXPECT_EQ(Format(u"%2$d", 1, 2), u"<null>");
  EXPECT_EQ(Format(u"%1$d %1$s", 1), u"<null>");
  EXPECT_EQ(Format(u"%300$d", 1), u"<null>");
  EXPECT_EQ(Format(u"%99999d", 1), u"<null>");
  EXPECT_EQ(Format(u"%*d", 1 << 20, 1), u"<null>");
  EXPECT_EQ(Format(u"%*d", INT_MIN, 1), u"<null>");
  EXPECT_EQ(Format(u"%.*f", 100000, 1.0), u"<null>");
  EXPECT_EQ(CFStringCreateWithFormat(nullptr, nullptr, nullptr), nullptr);
}

} // namespace
