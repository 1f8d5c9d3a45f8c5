// The sx_ UTF-16 functions, the byte-string helpers and eu16string, called directly.
#include "eu16string.h"
#include "sx_string.h"

#include <CoreFoundation/CoreFoundation.h>

#include <gtest/gtest.h>

#include <climits>
#include <random>
#include <string>

namespace {

using U16 = std::basic_string<unsigned short>;

U16 S(std::u16string_view text) {
  return U16(text.begin(), text.end());
}

// Random short texts over 'a', 'b' and U+FFFF (far above 'a', to expose a subtraction or a
// signed comparison), checked against the standard string's answers.
TEST(SxString, ComparisonsAndSearchesAgreeWithTheStandardString) {
  std::mt19937 random(42);
  auto text = [&] {
    std::u16string t(random() % 5, u'a');
    for (char16_t& c : t)
      c = u"ab\uFFFF"[random() % 3];
    return t;
  };
  auto sign = [](int v) { return (v > 0) - (v < 0); };
  for (int run = 0; run < 3000; ++run) {
    const std::u16string a = text(), b = text();
    const U16 ua = S(a), ub = S(b);
    const size_t n = random() % 6, at = a.find(b);
    const size_t c = b.empty() ? a.size() : a.find(b[0]); // 0 finds the terminator
    EXPECT_EQ(sx_strlen(ua.c_str()), a.size());
    EXPECT_EQ(sx_strcmp(ua.c_str(), ub.c_str()), sign(a.compare(b)));
    EXPECT_EQ(sx_strncmp(ua.c_str(), ub.c_str(), n), sign(a.substr(0, n).compare(b.substr(0, n))));
    EXPECT_EQ(sx_strstr(ua.c_str(), ub.c_str()), at == a.npos ? nullptr : ua.c_str() + at);
    EXPECT_EQ(sx_strchr(ua.c_str(), ub[0]), c == a.npos ? nullptr : ua.c_str() + c);
  }
  EXPECT_EQ(stricmp("Hello", "hELLO"), 0);
  EXPECT_EQ(stricmp("\xE9", "a"), -1); // bytes above 0x7F reach toupper as negative values
  EXPECT_EQ(strnicmp("abcX", "ABCY", 3), 0);
}

TEST(SxString, CopiesStayWithinTheirCapacity) {
  const U16 hello = S(u"Hello"), fresh(10, 0xBEEF);
  U16 d = fresh;
  sx_strncpy(d.data(), hello.c_str(), 8);
  EXPECT_EQ(d, S(u"Hello") + U16(3, 0) + U16(2, 0xBEEF));
  d = fresh;
  sx_strncpy(d.data(), S(u"abcdef").c_str(), 5);
  EXPECT_EQ(d, S(u"abcde") + U16(5, 0xBEEF)); // no terminator
  d = fresh;
  sx_strcpy(d.data(), 4, hello.c_str());
  sx_strcpy(d.data(), 0, hello.c_str());
  sx_strcat(d.data(), 6, S(u"cd").c_str());
  EXPECT_EQ(d, S(u"Helcd") + U16(1, 0) + U16(4, 0xBEEF));
  sx_strcat(d.data(), 6, hello.c_str()); // already full
  sx_strcat(d.data(), 3, hello.c_str()); // no terminator within the capacity
  EXPECT_EQ(d, S(u"Helcd") + U16(1, 0) + U16(4, 0xBEEF));
  char digits[16];
  EXPECT_EQ(num2str(INT_MIN, digits), 11);
  EXPECT_STREQ(digits, "-2147483648");
}

// Each argument is read at the width its conversion names, by position too; the text stays
// within the buffer, and what cannot be read safely is refused with an empty text.
TEST(SxString, SprintfReadsArgumentsAtTheirWidthAndStaysWithinTheBuffer) {
  U16 d(80, 0xBEEF);
  const U16 name = S(u"\u00e9t\u00e9");
  const wchar_t wide[] = {L'w', 0x1D11E, 0};    // a precision never cuts a pair in half
  const char unterminated[3] = {'a', 'b', 'c'}; // a precision bounds the bytes read
  sx_sprintf(d.data(), 80, S(u"%hhd %hd %ld %qd %zu %jd %D %U|%+*d|%-*d|%.*d").c_str(), 300, -70000,
             LONG_MIN, -5LL, size_t{7}, intmax_t{9}, -10L, 11UL, 4, 1, -3, 2, 3, 4);
  EXPECT_EQ(U16(d.c_str()), S(u"44 -4464 -9223372036854775808 -5 7 9 -10 11|  +1|2  |004"));
  sx_sprintf(d.data(), 80, S(u"%.2f %Lg %c%lc %.2ls %.3s %p %@ %S").c_str(), 3.14159, 2.5L, 0x8E,
             0x1F3B5, wide, unterminated, nullptr, nullptr, name.c_str());
  EXPECT_EQ(U16(d.c_str()), S(u"3.14 2.5 \u00e9\U0001F3B5 w abc 0x0 (null) \u00e9t\u00e9"));
  EXPECT_EQ(sx_sprintf(d.data(), 80, S(u"%2$s %1$d-%1$d %3$.*4$f %y %").c_str(), 7, "bars", 1.5, 2),
            18);
  EXPECT_EQ(U16(d.c_str()), S(u"bars 7-7 1.50 %y %"));
  EXPECT_EQ(sx_sprintf(d.data(), 4, S(u"%d").c_str(), 123456), 3);
  EXPECT_EQ(sx_sprintf(d.data() + 4, 1, S(u"abc").c_str()), 0);
  EXPECT_EQ(sx_sprintf(d.data() + 5, 0, S(u"abc").c_str()), 0);
  EXPECT_EQ(d.substr(0, 7), S(u"123") + U16(2, 0) + S(u"7-"))
      << "size 1 writes the terminator only, size 0 nothing";
  for (std::u16string_view refused :
       {u"%2$d", u"%300$d", u"%1$d %1$s", u"%99999d", u"%.*f", u"%*d"}) {
    EXPECT_EQ(sx_sprintf(d.data(), 80, S(refused).c_str(), 100000, 1.0), 0) << refused.size();
    EXPECT_EQ(d[0], 0);
  }
}

TEST(Eu16String, BuildsFromCodePointsAndBytes) {
  EXPECT_EQ(eu16string(0x1f600u).str(), (U16{0xd83d, 0xde00}));
  EXPECT_EQ(eu16string(0x10ffffu).str(), (U16{0xdbff, 0xdfff}));
  EXPECT_EQ(eu16string(0x110041u).str(), S(u"A")); // the low 16 bits
  EXPECT_TRUE(eu16string(0x110000u).empty());
  // Mac Roman for char text, UTF-8 for unsigned char text; what cannot be decoded is empty.
  EXPECT_EQ(eu16string("Caf\x8E \xA5").str(), S(u"Caf\u00e9 \u2022"));
  EXPECT_EQ(eu16string('\xA5').str(), S(u"\u2022"));
  auto utf8 = [](const char* t) { return eu16string(reinterpret_cast<const unsigned char*>(t)); };
  EXPECT_EQ(utf8("Caf\xC3\xA9 \xF0\x9F\x8E\xB5").str(), S(u"Caf\u00e9 \U0001F3B5"));
  EXPECT_TRUE(utf8("bad \xC3").empty());
}

TEST(Eu16String, AnsiOperationsCountFromOneAndClip) {
  const eu16string hello("Hello");
  auto copy = [&] { return eu16string(hello); };
  const std::pair<eu16string, std::u16string_view> cases[] = {
      {hello.AnsiSubString(0, 2), u"He"},  {hello.AnsiSubString(4, 10), u"lo"},
      {hello.AnsiSubString(6, 1), u""},    {hello.AnsiSubString(2, INT_MAX), u"ello"},
      {copy().AnsiDelete(2, 100), u"H"},   {copy().AnsiDelete(5, 1), u"Hell"},
      {copy().AnsiDelete(0, 1), u"Hello"}, {copy().AnsiDelete(6, 1), u"Hello"},
      {copy().AnsiDelete(1, 0), u"Hello"}, {copy().AnsiSetLength(10), u"Hello"},
      {copy().AnsiSetLength(2), u"He"}};
  int row = 0;
  for (const auto& [result, expected] : cases)
    EXPECT_EQ(result.str(), S(expected)) << "row " << row++;
  EXPECT_EQ(hello.AnsiPos(eu16string("lo")), 4u);
  EXPECT_EQ(hello.AnsiPos(eu16string()), 1u);
  EXPECT_EQ(eu16string().AnsiPos(eu16string()), 0u);
  EXPECT_EQ(hello.AnsiPos(eu16string("Hello!")), 0u);
  EXPECT_EQ(S(u"Ho  "), (U16{hello.AnsiCharAtIndex(1), hello.AnsiCharAtIndex(5),
                             hello.AnsiCharAtIndex(0), hello.AnsiCharAtIndex(6)}));
  eu16string text("Hello"), empty;
  text.AnsiCharAtIndex(2) = u'a';
  text.AnsiCharAtIndex(9) = u'J';  // out of range in a non-empty string: the first unit
  empty.AnsiCharAtIndex(1) = u'X'; // no unit to write: the write goes nowhere
  EXPECT_EQ(text.str(), S(u"Jallo"));
  EXPECT_EQ(empty.c_str()[0], 0);
  EXPECT_EQ(empty.AnsiCharAtIndex(0), 0) << "each out-of-range reference starts as 0";
}

TEST(Eu16String, ConvertsToBytesAndIntegers) {
  std::string out = "stale";
  eu16string(S(u"Caf\u00e9 \u2669 \U0001F3B5!")).GetStdString(out);
  EXPECT_EQ(out, "Caf\x8E ? ?!"); // a surrogate pair is one character, so one '?'
  eu16string(U16{u'a', 0, u'b'}).GetStdString(out);
  EXPECT_EQ(out, "a"); // up to the first 0 byte
  EXPECT_EQ(StrToIntDef(eu16string(), 7), 7);
  EXPECT_EQ(StrToIntDef(eu16string("abc"), 7), 0);
  EXPECT_EQ(StrToIntDef(eu16string("  -17 bars"), 7), -17);
  EXPECT_EQ(StrToIntDef(eu16string("99999999999"), 7), INT_MAX);
  EXPECT_EQ(StrToIntDef(eu16string("-99999999999"), 7), INT_MIN);
  EXPECT_EQ(IntToEu16Str(LONG_MIN).str(), S(u"-9223372036854775808"));
}

} // namespace
