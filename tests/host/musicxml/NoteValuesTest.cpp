// Note values, duration texts and MusicXML's decimal numbers.
#include <gtest/gtest.h>

#include "NoteValues.h"
#include "Rational.h"
#include "ScoreError.h"
#include "XmlNumbers.h"

using namespace scribo::musicxml;

TEST(NoteValues, NotatedDurationsShowAsTypeAndDots) {
  EXPECT_EQ(ShowNotated(1024).type, "quarter");
  ShownValue dotted = ShowNotated(1536);
  EXPECT_EQ(dotted.type, "quarter");
  EXPECT_EQ(dotted.dots, 1);
  EXPECT_TRUE(dotted.exact);
  ShownValue doubleDotted = ShowNotated(1792);
  EXPECT_EQ(doubleDotted.type, "quarter");
  EXPECT_EQ(doubleDotted.dots, 2);
  EXPECT_EQ(ShowNotated(8192).type, "breve");
  EXPECT_EQ(ShowNotated(4).type, "1024th");

  // A third of a quarter (truncated) has no note value: the largest one below it is shown.
  ShownValue third = ShowNotated(341);
  EXPECT_FALSE(third.exact);
  EXPECT_EQ(third.type, "16th");
  EXPECT_EQ(third.dots, 0); // a dotted 16th (384) is already too long
  EXPECT_EQ(third.tdu, 256);
}

TEST(NoteValues, DurationTextsAreNumbersOrNoteNames) {
  auto number = ParseDurationText("768");
  ASSERT_TRUE(number);
  EXPECT_EQ(number->tdu, 768);
  EXPECT_EQ(number->paletteIndex, -1);

  auto quarter = ParseDurationText("quarter");
  ASSERT_TRUE(quarter);
  EXPECT_EQ(quarter->tdu, 1024);
  EXPECT_EQ(quarter->paletteIndex, 3);
  EXPECT_FALSE(quarter->dotted);

  auto dottedEighth = ParseDurationText("dotted-eighth");
  ASSERT_TRUE(dottedEighth);
  EXPECT_EQ(dottedEighth->tdu, 768);
  EXPECT_EQ(dottedEighth->paletteIndex, 4);
  EXPECT_TRUE(dottedEighth->dotted);

  EXPECT_EQ(ParseDurationText("breve")->paletteIndex, 0);
  EXPECT_EQ(ParseDurationText("64th")->paletteIndex, 7);
  EXPECT_EQ(ParseDurationText("8th")->tdu, 512);
  // Outside the palette: still a duration, typed as a number.
  EXPECT_EQ(ParseDurationText("128th")->paletteIndex, -1);
  EXPECT_FALSE(ParseDurationText("banana"));
  EXPECT_FALSE(ParseDurationText("dotted-"));
  EXPECT_FALSE(ParseDurationText("12x"));
  EXPECT_FALSE(ParseDurationText(""));
}

TEST(NoteValues, DecimalsAreExact) {
  EXPECT_EQ(ParseDecimal("1.5"), Rational(3, 2));
  EXPECT_EQ(ParseDecimal(" 12 "), Rational(12));
  EXPECT_EQ(ParseDecimal("0.125"), Rational(1, 8));
  EXPECT_THROW(ParseDecimal("1/2"), ScoreError);
  EXPECT_THROW(ParseDecimal(""), ScoreError);

  EXPECT_EQ(FormatDecimal(Rational(12)), "12");
  EXPECT_EQ(FormatDecimal(Rational(3, 2)), "1.5");
  EXPECT_EQ(FormatDecimal(Rational(1, 40)), "0.025");
  EXPECT_THROW(FormatDecimal(Rational(1, 3)), ScoreError);

  EXPECT_EQ(SumOfNumbers("3+2"), 5);
  EXPECT_EQ(SumOfNumbers("6"), 6);

  // Sums of thirds stay exact where floating point would drift.
  Rational sum = 0;
  for (int i = 0; i < 3; ++i)
    sum += Rational(1, 3);
  EXPECT_EQ(sum, Rational(1));
  EXPECT_EQ(Rational(-1, 3).Floor(), -1);
  EXPECT_EQ(Rational(1024, 3).Floor(), 341);
}
