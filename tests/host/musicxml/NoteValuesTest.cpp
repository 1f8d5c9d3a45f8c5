// Note values shown for notated durations, duration texts typed by users, and MusicXML's
// decimal numbers.
#include <gtest/gtest.h>

#include "NoteValues.h"
#include "Rational.h"
#include "ScoreError.h"
#include "XmlNumbers.h"

using namespace scribo::musicxml;

TEST(NoteValues, NotatedDurationsShowAsTypeAndDots) {
  const std::pair<int32_t, ShownValue> cases[] = {
      {1024, {"quarter", 0, 1024, true}},
      {1536, {"quarter", 1, 1536, true}},
      {1792, {"quarter", 2, 1792, true}},
      {8192, {"breve", 0, 8192, true}},
      {4, {"1024th", 0, 4, true}},
      {341, {"16th", 0, 256, false}}, // a truncated third of a quarter: the value below it
  };
  for (const auto& [tdu, expected] : cases) {
    ShownValue shown = ShowNotated(tdu);
    EXPECT_EQ(shown.type, expected.type) << tdu;
    EXPECT_EQ(shown.dots, expected.dots) << tdu;
    EXPECT_EQ(shown.tdu, expected.tdu) << tdu;
    EXPECT_EQ(shown.exact, expected.exact) << tdu;
  }
}

TEST(NoteValues, DecimalsAreExact) {
  EXPECT_EQ(ParseDecimal("1.5"), Rational(3, 2));
  EXPECT_EQ(ParseDecimal(" 12 "), Rational(12));
  EXPECT_EQ(ParseDecimal("0.125"), Rational(1, 8));
  EXPECT_THROW(ParseDecimal("1/2"), ScoreError);
  EXPECT_THROW(ParseDecimal(""), ScoreError);
  EXPECT_EQ(FormatDecimal(Rational(3, 2)), "1.5");
  EXPECT_EQ(FormatDecimal(Rational(1, 40)), "0.025");
  EXPECT_THROW(FormatDecimal(Rational(1, 3)), ScoreError);
  EXPECT_EQ(SumOfNumbers("3+2"), 5);
  EXPECT_EQ(Rational(-1, 3).Floor(), -1);
}
