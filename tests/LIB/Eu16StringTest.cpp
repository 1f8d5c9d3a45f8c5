// eu16string: construction from bytes and code points, the Ansi operations and the integer helpers.
#include "eu16string.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Units = eu16string::units_type;

Units U(std::u16string_view text) {
  return Units(text.begin(), text.end());
}

TEST(Eu16String, BuildsFromBytesAndCodePoints) {
  EXPECT_EQ(eu16string(0x1f600u).str(), (Units{0xd83d, 0xde00}));
  EXPECT_EQ(eu16string(0x10ffffu).str(), (Units{0xdbff, 0xdfff}));
  EXPECT_EQ(eu16string(0x10000u).str(), (Units{0xd800, 0xdc00}));
  EXPECT_EQ(eu16string(0x41).str(), U(u"A"));
  EXPECT_TRUE(eu16string(0u).empty());
  EXPECT_TRUE(eu16string(0x110000u).empty()); // low 16 bits are 0
  EXPECT_EQ(eu16string(0x110041u).str(), U(u"A"));
  // Mac Roman for char text, UTF-8 for unsigned char text.
  EXPECT_EQ(eu16string("Caf\x8E \xA5").str(), U(u"Caf\u00e9 \u2022"));
  EXPECT_EQ(
      eu16string(reinterpret_cast<const unsigned char*>("Caf\xC3\xA9 \xF0\x9F\x8E\xB5")).str(),
      U(u"Caf\u00e9 \U0001F3B5"));
  EXPECT_TRUE(eu16string(reinterpret_cast<const unsigned char*>("bad \xC3")).empty());
  EXPECT_TRUE(eu16string(static_cast<const char*>(nullptr)).empty());
  EXPECT_EQ(eu16string('\xA5').str(), U(u"\u2022"));
  EXPECT_TRUE(eu16string('\0').empty());
}

TEST(Eu16String, AnsiOperationsCountFromOneAndClip) {
  const eu16string hello("Hello");
  EXPECT_EQ(hello.AnsiSubString(0, 2).str(), U(u"He"));
  EXPECT_EQ(hello.AnsiSubString(-5, 1).str(), U(u"H"));
  EXPECT_EQ(hello.AnsiSubString(4, 10).str(), U(u"lo"));
  EXPECT_EQ(hello.AnsiSubString(5, 1).str(), U(u"o"));
  EXPECT_TRUE(hello.AnsiSubString(6, 1).empty());
  EXPECT_TRUE(hello.AnsiSubString(2, 0).empty());
  EXPECT_EQ(hello.AnsiSubString(2, 2147483647).str(), U(u"ello"));
  EXPECT_TRUE(eu16string().AnsiSubString(1, 1).empty());

  EXPECT_EQ(eu16string(hello).AnsiDelete(2, 100).str(), U(u"H"));
  EXPECT_EQ(eu16string(hello).AnsiDelete(2, 2).str(), U(u"Hlo"));
  EXPECT_EQ(eu16string(hello).AnsiDelete(5, 1).str(), U(u"Hell"));
  EXPECT_EQ(eu16string(hello).AnsiDelete(0, 1).str(), U(u"Hello"));
  EXPECT_EQ(eu16string(hello).AnsiDelete(6, 1).str(), U(u"Hello"));
  EXPECT_EQ(eu16string(hello).AnsiDelete(1, 0).str(), U(u"Hello"));
  EXPECT_EQ(eu16string(hello).AnsiSetLength(10).str(), U(u"Hello"));
  EXPECT_EQ(eu16string(hello).AnsiSetLength(2).str(), U(u"He"));
  EXPECT_TRUE(eu16string(hello).AnsiSetLength(0).empty());

  EXPECT_EQ(hello.AnsiPos(eu16string("lo")), 4u);
  EXPECT_EQ(hello.AnsiPos(eu16string("H")), 1u);
  EXPECT_EQ(hello.AnsiPos(eu16string()), 1u);
  EXPECT_EQ(eu16string().AnsiPos(eu16string()), 0u);
  EXPECT_EQ(hello.AnsiPos(eu16string("xyz")), 0u);
  EXPECT_EQ(hello.AnsiPos(eu16string("Hello!")), 0u);

  EXPECT_EQ(hello.AnsiCharAtIndex(1), u'H');
  EXPECT_EQ(hello.AnsiCharAtIndex(5), u'o');
  EXPECT_EQ(hello.AnsiCharAtIndex(0), 0x20);
  EXPECT_EQ(hello.AnsiCharAtIndex(6), 0x20);
}

TEST(Eu16String, WritableCharAtIndexNeverBreaksTheString) {
  eu16string text("Hello");
  text.AnsiCharAtIndex(2) = u'a';
  EXPECT_EQ(text.str(), U(u"Hallo"));
  text.AnsiCharAtIndex(9) = u'J'; // out of range in a non-empty string: the first unit
  EXPECT_EQ(text.str(), U(u"Jallo"));
  eu16string empty;
  empty.AnsiCharAtIndex(1) = u'X'; // no unit to write: the write goes nowhere
  EXPECT_TRUE(empty.empty());
  EXPECT_EQ(empty.c_str()[0], 0);
  EXPECT_EQ(empty.AnsiCharAtIndex(0), 0) << "each out-of-range reference starts as 0";
}

TEST(Eu16String, ConvertsToBytesAndIntegers) {
  std::string out = "stale";
  eu16string(reinterpret_cast<const unsigned char*>("Caf\xC3\xA9 \xE2\x99\xA9 \xF0\x9F\x8E\xB5!"))
      .GetStdString(out);
  EXPECT_EQ(out, "Caf\x8E ? ?!"); // a surrogate pair is one character, so one '?'
  eu16string().GetStdString(out);
  EXPECT_EQ(out, "");
  eu16string(Units{u'a', 0, u'b'}).GetStdString(out);
  EXPECT_EQ(out, "a"); // up to the first 0 byte

  EXPECT_EQ(StrToIntDef(eu16string(), 7), 7);
  EXPECT_EQ(StrToIntDef(eu16string("abc"), 7), 0);
  EXPECT_EQ(StrToIntDef(eu16string("42"), 7), 42);
  EXPECT_EQ(StrToIntDef(eu16string("  -17 bars"), 7), -17);
  EXPECT_EQ(StrToIntDef(eu16string("99999999999"), 7), 2147483647);
  EXPECT_EQ(StrToIntDef(eu16string("-99999999999"), 7), -2147483647 - 1);
  EXPECT_EQ(IntToEu16Str(-9223372036854775807L - 1).str(), U(u"-9223372036854775808"));
  EXPECT_EQ(IntToEu16Str(0).str(), U(u"0"));
}

} // namespace
