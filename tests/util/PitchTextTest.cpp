// Pitch and range texts under each formatting state, and the semitone conversions.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "SXUtilPitch.h"

namespace {

std::string Format(short mode, tDiaPitch pitch, short size = 32) {
  EXPECT_EQ(SXUtilSetPitchFormatting(mode), 0);
  char out[64];
  std::memset(out, '@', sizeof out);
  SXUtilFormatPitch(pitch, out, size);
  EXPECT_EQ(out[size > 0 ? size : 0], '@') << "written past outSize";
  return size > 0 ? out : "";
}

TEST(PitchText, ReadsEachStatesTexts) {
  constexpr short kMidi = kPitchFormatMidi;
  const struct {
    short mode;
    const char* text;
    short step, alteration;
  } kReadings[] = {{kMidi, "60", 0, 0},  {kMidi, "61", 0, 1},   {kMidi, "70", 6, -1},
                   {kMidi, "0", -35, 0}, {kMidi, "127", 39, 0}, {kMidi, " 72 and more", 7, 0},
                   {4, "C4", 0, 0},      {4, "c4", 0, 0},       {4, "Bb3", -1, -1},
                   {4, "C#0", -28, 1},   {4, "Gb9", 39, -1},    {4, "C4xyz", 0, 0},
                   {5, "C4", -7, 0}};
  for (const auto& r : kReadings) {
    ASSERT_EQ(SXUtilSetPitchFormatting(r.mode), 0);
    std::string text = r.text;
    tDiaPitch pitch{-999, -999};
    EXPECT_EQ(SXUtilParsePitch(text.data(), &pitch), 0) << r.text;
    EXPECT_EQ(pitch.step * 10 + pitch.alteration, r.step * 10 + r.alteration) << r.text;
  }
  const struct {
    short mode, result;
    std::initializer_list<const char*> texts;
  } kRefusals[] = {{kMidi, kSXUtilBadMidiNote, {"128", "-1", "4294967356"}},
                   {4, kSXUtilBadPitchName, {"G#9", "Cb0", "H4", "C#", "BB3", "", "C-1", "Cx4"}},
                   {5, kSXUtilBadPitchName, {"C0"}}};
  for (const auto& r : kRefusals)
    for (const char* text : r.texts) {
      ASSERT_EQ(SXUtilSetPitchFormatting(r.mode), 0);
      std::string copy = text;
      tDiaPitch pitch{};
      EXPECT_EQ(SXUtilParsePitch(copy.data(), &pitch), r.result) << text;
    }
  EXPECT_EQ(SXUtilParsePitch(nullptr, nullptr), kSXUtilBadPitchName);
}

TEST(PitchText, WritesEachStatesTextsWithinOutSize) {
  EXPECT_EQ(Format(kPitchFormatMidi, {6, -1}), "70");
  EXPECT_EQ(Format(kPitchFormatMidi, {-40, 0}), "-8") << "no range check on writing";
  EXPECT_EQ(Format(4, {-1, -1}), "Bb3");
  EXPECT_EQ(Format(4, {2, 2}), "E##4");
  EXPECT_EQ(Format(4, {-29, 0}), "B-1");
  EXPECT_EQ(Format(4, {42, 0}), "C10");
  EXPECT_EQ(Format(5, {0, 0}), "C5");
  EXPECT_EQ(Format(4, {2, 2}, 3), "E#");
  EXPECT_EQ(Format(4, {0, 0}, 1), "");
  EXPECT_EQ(Format(4, {0, 0}, 0), "");
  EXPECT_EQ(Format(4, {0, 300}, 10), "C########");
}

TEST(PitchText, Ranges) {
  ASSERT_EQ(SXUtilSetPitchFormatting(4), 0);
  auto parse = [](std::string text, tDiaRange& out) { return SXUtilParseRange(text.data(), &out); };
  tDiaRange r{};
  for (const char* text : {"C4/G5", "G5/C4"}) {
    ASSERT_EQ(parse(text, r), 0) << text;
    EXPECT_EQ(r.low.step * 100 + r.high.step, 11) << "lower pitch first";
  }
  ASSERT_EQ(parse("C#4/Db4", r), 0);
  EXPECT_EQ(r.low.alteration * 10 + r.high.alteration, 9) << "equal pitches keep the text's order";
  const std::string side31 = "C4" + std::string(29, 'x');
  const struct {
    std::string text;
    short result;
  } kResults[] = {{"C4", kSXUtilNoRangeSep},
                  {"", kSXUtilNoRangeSep},
                  {"/", kSXUtilBadPitchName},
                  {"X4/C4", kSXUtilBadPitchName},
                  {side31 + "/" + side31, 0},
                  {side31 + "y/C4", kSXUtilRangeSideTooLong},
                  {"C4/" + side31 + "y", kSXUtilRangeSideTooLong},
                  {"C4/G5/A5", 0}}; // the second "/" is text after the octave digit
  for (const auto& c : kResults)
    EXPECT_EQ(parse(c.text, r), c.result) << c.text;

  char out[16];
  EXPECT_STREQ(SXUtilFormatRange({{0, 0}, {11, 0}}, out, sizeof out), "C4/G5");
  EXPECT_STREQ(SXUtilFormatRange({{0, 0}, {11, 0}}, out, 4), "C4/");
  ASSERT_EQ(SXUtilSetPitchFormatting(kPitchFormatMidi), 0);
  EXPECT_STREQ(SXUtilFormatRange({{0, 0}, {11, 0}}, out, sizeof out), "60/79");
}

// Sharps for the black keys except B-flat; semitones and back give the same value.
TEST(PitchConversion, SemitonesAndWrittenForm) {
  for (int chromatic = -300; chromatic <= 300; ++chromatic) {
    const tDiaPitch p = SXUtilChromToAbsTCD(static_cast<short>(chromatic));
    ASSERT_EQ(SXUtilAbsTCDToChrom(p), chromatic);
    const int pitchClass = (chromatic % 12 + 12) % 12;
    ASSERT_EQ(p.alteration, pitchClass == 10 ? -1
                                             : (pitchClass == 1 || pitchClass == 3 ||
                                                pitchClass == 6 || pitchClass == 8));
  }
  EXPECT_EQ(SXUtilChromToAbsTCD(-2).step, -1) << "B-flat below middle C";
}

} // namespace
