// The sx_ UTF-16 functions and the byte-string helpers.
#include "sx_string.h"

#include <CoreFoundation/CoreFoundation.h>

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using U16 = std::basic_string<unsigned short>;

U16 S(std::u16string_view text) {
  return U16(text.begin(), text.end());
}

TEST(SxString, ComparisonsGiveExactlyMinusOneZeroOne) {
  const U16 ab = S(u"ab"), abc = S(u"abc"), empty, high = S(u"\uffff"), a = S(u"A");
  EXPECT_EQ(sx_strcmp(ab.c_str(), abc.c_str()), -1);
  EXPECT_EQ(sx_strcmp(abc.c_str(), ab.c_str()), 1);
  EXPECT_EQ(sx_strcmp(empty.c_str(), empty.c_str()), 0);
  EXPECT_EQ(sx_strcmp(abc.c_str(), abc.c_str()), 0);
  // Units compare unsigned: 0xffff is above 'A', far enough apart to expose a subtraction.
  EXPECT_EQ(sx_strcmp(high.c_str(), a.c_str()), 1);
  EXPECT_EQ(sx_strcmp(a.c_str(), high.c_str()), -1);
  EXPECT_EQ(sx_strncmp(high.c_str(), a.c_str(), 1), 1);
  EXPECT_EQ(sx_strncmp(S(u"abX").c_str(), S(u"abY").c_str(), 2), 0);
  EXPECT_EQ(sx_strncmp(S(u"abX").c_str(), S(u"abY").c_str(), 3), -1);
  EXPECT_EQ(sx_strncmp(S(u"x").c_str(), S(u"y").c_str(), 0), 0);
  EXPECT_EQ(sx_strncmp(ab.c_str(), ab.c_str(), 50), 0); // stops at the common terminator

  EXPECT_EQ(stricmp("abc", "ABD"), -1);
  EXPECT_EQ(stricmp("ABD", "abc"), 1);
  EXPECT_EQ(stricmp("Hello", "hELLO"), 0);
  EXPECT_EQ(stricmp("ab", "abc"), -1);
  EXPECT_EQ(strnicmp("abcX", "ABCY", 3), 0);
  EXPECT_EQ(strnicmp("abcX", "ABCY", 4), -1);
  EXPECT_EQ(strnicmp("a", "b", 0), 0);
  // Bytes above 0x7F reach toupper as negative values, so they sort below ASCII.
  EXPECT_EQ(stricmp("\xE9", "a"), -1);
}

TEST(SxString, SearchesFindTheRightUnit) {
  const U16 s = S(u"abcabc");
  EXPECT_EQ(sx_strlen(s.c_str()), 6u);
  EXPECT_EQ(sx_strlen(S(u"\U0001F3B5").c_str()), 2u); // a pair is two units
  EXPECT_EQ(sx_strchr(s.c_str(), u'c'), s.c_str() + 2);
  EXPECT_EQ(sx_strchr(s.c_str(), 0), s.c_str() + 6);
  EXPECT_EQ(sx_strchr(s.c_str(), u'z'), nullptr);
  EXPECT_EQ(sx_strstr(s.c_str(), S(u"ca").c_str()), s.c_str() + 2);
  EXPECT_EQ(sx_strstr(s.c_str(), S(u"").c_str()), s.c_str());
  EXPECT_EQ(sx_strstr(s.c_str(), S(u"cb").c_str()), nullptr);
  EXPECT_EQ(sx_strstr(s.c_str(), S(u"abcabcd").c_str()), nullptr);
  const U16 overlap = S(u"aaab");
  EXPECT_EQ(sx_strstr(overlap.c_str(), S(u"aab").c_str()), overlap.c_str() + 1);
}

TEST(SxString, CopiesPadAndStayWithinTheirCapacity) {
  const U16 hello = S(u"Hello");
  std::array<unsigned short, 10> d;
  d.fill(0xBEEF);
  sx_strncpy(d.data(), hello.c_str(), 8);
  EXPECT_EQ(U16(d.data(), 10), S(u"Hello") + U16(3, 0) + U16(2, 0xBEEF));
  d.fill(0xBEEF);
  sx_strncpy(d.data(), hello.c_str(), 5);
  EXPECT_EQ(U16(d.data(), 6), S(u"Hello") + U16(1, 0xBEEF)); // no terminator

  d.fill(0xBEEF);
  sx_strcpy(d.data(), hello.c_str());
  EXPECT_EQ(U16(d.data(), 7), S(u"Hello") + U16(1, 0) + U16(1, 0xBEEF));
  d.fill(0xBEEF);
  sx_strcpy(d.data(), 4, hello.c_str());
  EXPECT_EQ(U16(d.data(), 5), S(u"Hel") + U16(1, 0) + U16(1, 0xBEEF));
  d.fill(0xBEEF);
  sx_strcpy(d.data(), 0, hello.c_str());
  EXPECT_EQ(d[0], 0xBEEF);

  d.fill(0xBEEF);
  sx_strcpy(d.data(), 10, S(u"ab").c_str());
  sx_strcat(d.data(), 10, S(u"cd").c_str());
  EXPECT_EQ(U16(d.data()), S(u"abcd"));
  sx_strcat(d.data(), 7, hello.c_str());
  EXPECT_EQ(U16(d.data()), S(u"abcdHe"));
  EXPECT_EQ(d[7], 0xBEEF);
  sx_strcat(d.data(), 7, hello.c_str()); // already full
  EXPECT_EQ(U16(d.data()), S(u"abcdHe"));
  d.fill(0xBEEF); // no terminator within the capacity: nothing is written
  sx_strcat(d.data(), 4, hello.c_str());
  EXPECT_EQ(d[4], 0xBEEF);
  EXPECT_EQ(d[3], 0xBEEF);

  char digits[16];
  EXPECT_EQ(num2str(-2147483647 - 1, digits), 11);
  EXPECT_STREQ(digits, "-2147483648");
}

TEST(SxString, SprintfFormatsAndTruncates) {
  std::array<unsigned short, 64> d;
  d.fill(0xBEEF);
  const U16 format = S(u"%d of %s: %@ %S %C%%");
  const U16 name = S(u"\u00e9t\u00e9");
  CFStringRef object = CFSTR("obj");
  EXPECT_EQ(
      sx_sprintf(d.data(), d.size(), format.c_str(), 3, "Noten", object, name.c_str(), 0x2669), 22);
  EXPECT_EQ(U16(d.data()), S(u"3 of Noten: obj \u00e9t\u00e9 \u2669%"));

  d.fill(0xBEEF);
  EXPECT_EQ(sx_sprintf(d.data(), 4, S(u"%ld-%05.1f").c_str(), 1234567L, 2.25), 3);
  EXPECT_EQ(U16(d.data(), 5), S(u"123") + U16(1, 0) + U16(1, 0xBEEF));
  EXPECT_EQ(sx_sprintf(d.data(), 1, S(u"abc").c_str()), 0);
  EXPECT_EQ(d[0], 0);
  d[0] = 0xBEEF;
  EXPECT_EQ(sx_sprintf(d.data(), 0, S(u"abc").c_str()), 0);
  EXPECT_EQ(d[0], 0xBEEF);
  // A format that cannot be read safely (a skipped position) yields an empty text.
  EXPECT_EQ(sx_sprintf(d.data(), d.size(), S(u"%2$d").c_str(), 1, 2), 0);
  EXPECT_EQ(d[0], 0);
}

} // namespace
