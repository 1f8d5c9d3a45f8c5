// Pitch and range texts, and the semitone conversions, without a host.
#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>

#include "SXUtilPitch.h"

namespace {

// What "60" read as before anything changed the formatting state.
short gLoadStateResult = 1;
tDiaPitch gLoadStatePitch{};

struct LoadStateProbe : testing::Environment {
  void SetUp() override {
    char text[] = "60";
    gLoadStateResult = SXUtilParsePitch(text, &gLoadStatePitch);
  }
};
const auto* const gProbe = testing::AddGlobalTestEnvironment(new LoadStateProbe);

struct Parsed {
  short result;
  tDiaPitch pitch;
};
Parsed Parse(const char* text) {
  std::string copy = text;
  Parsed p{0, {-999, -999}};
  p.result = SXUtilParsePitch(copy.data(), &p.pitch);
  return p;
}
std::string Format(tDiaPitch pitch, short size = 32) {
  char out[64];
  std::memset(out, '@', sizeof out);
  SXUtilFormatPitch(pitch, out, size);
  return out;
}

struct Reading {
  const char* text;
  int step, alteration;
};
void ExpectReadings(std::initializer_list<Reading> readings) {
  for (const Reading& r : readings) {
    const Parsed p = Parse(r.text);
    EXPECT_EQ(p.result, 0) << r.text;
    EXPECT_EQ(p.pitch.step, r.step) << r.text;
    EXPECT_EQ(p.pitch.alteration, r.alteration) << r.text;
  }
}
void ExpectRefused(std::initializer_list<const char*> texts, short error) {
  for (const char* text : texts) {
    const Parsed p = Parse(text);
    EXPECT_EQ(p.result, error) << text;
    EXPECT_EQ(p.pitch.step, -999) << "out written on failure: " << text;
  }
}

} // namespace

TEST(PitchText, MidiNumbersAreTheStateAtLoad) {
  EXPECT_EQ(gLoadStateResult, 0);
  EXPECT_EQ(gLoadStatePitch.step, 0);
  EXPECT_EQ(gLoadStatePitch.alteration, 0);
}

TEST(PitchText, MidiNumbers) {
  ASSERT_EQ(SXUtilSetPitchFormatting(kPitchFormatMidi), 0);
  // " 72 and more" is atoi's reading.
  ExpectReadings({{"60", 0, 0}, {"61", 0, 1}, {"70", 6, -1}, {"0", -35, 0}, {"127", 39, 0}});
  ExpectReadings({{" 72 and more", 7, 0}});
  ExpectRefused({"128", "-1", "99999999999999999999", "4294967356"}, kSXUtilBadMidiNote);
  EXPECT_EQ(Format({0, 0}), "60");
  EXPECT_EQ(Format({6, -1}), "70");
  EXPECT_EQ(Format({-40, 0}), "-8"); // no range check on writing
}

TEST(PitchText, NoteNamesWithMiddleCAsC4) {
  ASSERT_EQ(SXUtilSetPitchFormatting(4), 0);
  ExpectReadings({{"C4", 0, 0}, {"c4", 0, 0}, {"Bb3", -1, -1}, {"C#4", 0, 1}, {"C0", -28, 0}});
  ExpectReadings({{"G9", 39, 0}, {"C4xyz", 0, 0}, {"Gb9", 39, -1}, {"C#0", -28, 1}});
  ExpectRefused({"G#9", "Cb0", "A9", "H4", "C", "C#", "X4", "BB3", "", "C-1", "Cx4"},
                kSXUtilBadPitchName);
  EXPECT_EQ(SXUtilParsePitch(nullptr, nullptr), kSXUtilBadPitchName);

  EXPECT_EQ(Format({0, 0}), "C4");
  EXPECT_EQ(Format({-1, -1}), "Bb3");
  EXPECT_EQ(Format({2, 2}), "E##4");
  EXPECT_EQ(Format({-29, 0}), "B-1");
  EXPECT_EQ(Format({42, 0}), "C10");
}

TEST(PitchText, MiddleCAsC5) {
  ASSERT_EQ(SXUtilSetPitchFormatting(5), 0);
  EXPECT_EQ(Format({0, 0}), "C5");
  ExpectReadings({{"C4", -7, 0}});
  EXPECT_EQ(Parse("C0").result, kSXUtilBadPitchName); // step -35 is below the lowest name
}

TEST(PitchText, WritingStaysWithinOutSize) {
  ASSERT_EQ(SXUtilSetPitchFormatting(4), 0);
  EXPECT_EQ(Format({2, 2}, 3), "E#");
  EXPECT_EQ(Format({0, 0}, 1), "");
  char untouched[4] = "xyz";
  SXUtilFormatPitch({0, 0}, untouched, 0);
  EXPECT_STREQ(untouched, "xyz");
  // 300 sharps: cut to the buffer, terminated, nothing written past it (checked by ASan too).
  char out[20];
  std::memset(out, '@', sizeof out);
  SXUtilFormatPitch({0, 300}, out, 10);
  EXPECT_STREQ(out, "C########");
  EXPECT_EQ(out[10], '@');
}

TEST(PitchText, Ranges) {
  ASSERT_EQ(SXUtilSetPitchFormatting(4), 0);
  auto range = [](const char* text, tDiaRange& out) {
    std::string copy = text;
    return SXUtilParseRange(copy.data(), &out);
  };
  auto isFull = [](const tDiaRange& r) {
    return r.low.step == -28 && r.low.alteration == 0 && r.high.step == 39 &&
           r.high.alteration == 0;
  };
  tDiaRange r{};
  for (const char* text : {"C4/G5", "G5/C4"}) {
    ASSERT_EQ(range(text, r), 0) << text;
    EXPECT_EQ(r.low.step, 0);
    EXPECT_EQ(r.high.step, 11);
  }
  ASSERT_EQ(range("C#4/Db4", r), 0);
  EXPECT_EQ(r.low.alteration, 1) << "equal pitches keep the text's order";
  EXPECT_EQ(r.high.alteration, -1);

  EXPECT_EQ(range("C4", r), kSXUtilNoRangeSep);
  EXPECT_TRUE(isFull(r));
  EXPECT_EQ(range("", r), kSXUtilNoRangeSep);
  EXPECT_EQ(range("/", r), kSXUtilBadPitchName); // separator at 0, empty sides
  EXPECT_EQ(range("X4/C4", r), kSXUtilBadPitchName);
  EXPECT_TRUE(isFull(r));
  const std::string side31 = "C4" + std::string(29, 'x');
  EXPECT_EQ(range((side31 + "/" + side31).c_str(), r), 0);
  EXPECT_EQ(range((side31 + "y/C4").c_str(), r), kSXUtilRangeSideTooLong);
  EXPECT_TRUE(isFull(r));
  EXPECT_EQ(range(("C4/" + side31 + "y").c_str(), r), kSXUtilRangeSideTooLong);
  EXPECT_EQ(range("C4/G5/A5", r), 0); // the second "/" is text after the octave digit

  char out[16];
  EXPECT_STREQ(SXUtilFormatRange({{0, 0}, {11, 0}}, out, sizeof out), "C4/G5");
  EXPECT_STREQ(SXUtilFormatRange({{0, 0}, {11, 0}}, out, 4), "C4/");
  ASSERT_EQ(SXUtilSetPitchFormatting(kPitchFormatMidi), 0);
  EXPECT_STREQ(SXUtilFormatRange({{0, 0}, {11, 0}}, out, sizeof out), "60/79");
  ASSERT_EQ(range("79/60", r), 0);
  EXPECT_EQ(r.low.step, 0);
}

TEST(PitchConversion, SemitonesAndWrittenForm) {
  const tDiaPitch below = SXUtilChromToAbsTCD(-1);
  EXPECT_EQ(below.step, -1);
  EXPECT_EQ(below.alteration, 0);
  const tDiaPitch bFlat = SXUtilChromToAbsTCD(-2);
  EXPECT_EQ(bFlat.step, -1);
  EXPECT_EQ(bFlat.alteration, -1);
  EXPECT_EQ(SXUtilAbsTCDToChrom({-1, -1}), -2);
  for (int chromatic = -300; chromatic <= 300; ++chromatic) {
    const tDiaPitch p = SXUtilChromToAbsTCD(static_cast<short>(chromatic));
    ASSERT_EQ(SXUtilAbsTCDToChrom(p), chromatic);
    ASSERT_TRUE(p.alteration == 0 || p.alteration == 1 ||
                (p.alteration == -1 && (chromatic % 12 + 12) % 12 == 10));
  }
}
