// MusicXML import: the example scores and small inline ones, checked entry by entry.
#include <gtest/gtest.h>

#include "MusicXmlImport.h"
#include "ScoreError.h"
#include "ScoreFile.h"
#include "ScoreText.h"

using namespace scribo::musicxml;
using namespace scoretest;

TEST(Import, MelodyWithChordsRestsTiesAndAMeasureRest) {
  ImportedScore imported = ReadScoreFile(Example("melody-with-chords.musicxml"));
  const Score& score = imported.score;
  ASSERT_EQ(score.staves.size(), 1u);
  EXPECT_EQ(score.staves[0].name, "Melody");
  ASSERT_EQ(score.measures.size(), 8u);
  EXPECT_EQ(score.measures[0].keyFifths, 1);
  EXPECT_EQ(score.measures[7].keyFifths, 1); // the key carries on
  EXPECT_EQ(score.measures[0].length, 4096);

  const Frame& m1 = score.At(0, 0, 0);
  EXPECT_EQ(Positions(m1), (std::vector<int32_t>{0, 1024, 2048}));
  const Entry& chord = m1.entries[2];
  ASSERT_EQ(chord.pitches.size(), 3u); // one entry, three note records
  EXPECT_EQ(chord.pitches[0].step, 4); // G4: four steps above middle C
  EXPECT_EQ(chord.pitches[1].step, 6);
  EXPECT_EQ(chord.pitches[2].step, 8);
  EXPECT_EQ(chord.duration, 2048);
  EXPECT_EQ(chord.actualDuration, 2048);
  EXPECT_EQ(imported.source.groups[chord.source].notes.size(), 3u);

  const Frame& m2 = score.At(0, 1, 0);
  ASSERT_EQ(m2.entries.size(), 5u);
  EXPECT_EQ(m2.entries[0].beam, Beam::Start);
  EXPECT_EQ(m2.entries[1].beam, Beam::End);
  EXPECT_FALSE(m2.entries[3].isNote);
  EXPECT_TRUE(m2.entries[3].pitches.empty());

  const Frame& m3 = score.At(0, 2, 0);
  EXPECT_EQ(m3.entries[0].duration, 1536); // dotted quarter
  EXPECT_TRUE(m3.entries[2].pitches[0].tieStart);
  EXPECT_TRUE(m3.entries[2].pitches[1].tieStart);
  EXPECT_TRUE(score.At(0, 3, 0).entries[0].pitches[0].tieEnd);

  // F sharp: step 3 (F4), alteration +1.
  EXPECT_EQ(score.At(0, 6, 0).entries[0].pitches[0].alteration, 1);

  // A whole-measure rest without a type is as long as its measure.
  const Frame& m6 = score.At(0, 5, 0);
  ASSERT_EQ(m6.entries.size(), 1u);
  EXPECT_FALSE(m6.entries[0].isNote);
  EXPECT_EQ(m6.entries[0].duration, 4096);
  EXPECT_TRUE(imported.source.notices.empty());
}

TEST(Import, PianoStavesAndVoicesBecomeStavesAndLayers) {
  ImportedScore imported = ReadScoreFile(Example("piano-two-voices.musicxml"));
  const Score& score = imported.score;
  ASSERT_EQ(score.staves.size(), 2u);
  EXPECT_EQ(score.staves[1].name, "Piano");
  EXPECT_EQ(score.staves[1].staffInPart, 2);
  EXPECT_EQ(score.measures[0].keyFifths, -1);
  EXPECT_EQ(score.measures[0].length, 3072); // 3/4

  // Voice 1 and voice 2 of the upper staff, voice 5 of the lower staff.
  EXPECT_EQ(Positions(score.At(0, 0, 0)), (std::vector<int32_t>{0, 2048}));
  EXPECT_EQ(Positions(score.At(0, 0, 1)), (std::vector<int32_t>{0, 1024, 2048}));
  EXPECT_EQ(Positions(score.At(1, 0, 0)), (std::vector<int32_t>{0}));
  EXPECT_EQ(score.At(1, 0, 0).entries[0].duration, 3072);
  EXPECT_TRUE(score.At(1, 0, 1).entries.empty());
  // Measure 2: the lower staff's chord after a quarter.
  const Frame& bass = score.At(1, 1, 0);
  EXPECT_EQ(Positions(bass), (std::vector<int32_t>{0, 1024}));
  EXPECT_EQ(bass.entries[1].pitches.size(), 2u);
  EXPECT_EQ(bass.entries[0].pitches[0].step, -8); // B flat 2
  EXPECT_EQ(bass.entries[0].pitches[0].alteration, -1);
}

TEST(Import, TupletsAndDivisionsThatChange) {
  ImportedScore imported = ReadScoreFile(Example("existing-tuplets.musicxml"));
  const Score& score = imported.score;
  EXPECT_EQ(score.measures[0].length, 2048); // 2/4

  // Measure 2, divisions 6: a triplet of eighths with a rest in the middle.
  const Frame& m2 = score.At(0, 1, 0);
  ASSERT_EQ(m2.entries.size(), 4u);
  EXPECT_EQ(Positions(m2), (std::vector<int32_t>{0, 341, 682, 1024}));
  EXPECT_EQ(m2.entries[0].duration, 512);
  EXPECT_EQ(m2.entries[0].actualDuration, 341);
  ASSERT_EQ(m2.entries[0].tuplets.size(), 1u);
  EXPECT_EQ(m2.entries[0].tuplets[0], (TupletRatio{3, 512, 2, 512}));
  EXPECT_TRUE(m2.entries[1].tuplets.empty());
  EXPECT_FALSE(m2.entries[1].isNote);

  // Measure 3, divisions 15: five sixteenths in the time of four, then a triplet.
  const Frame& m3 = score.At(0, 2, 0);
  ASSERT_EQ(m3.entries.size(), 8u);
  EXPECT_EQ(m3.entries[0].tuplets.at(0), (TupletRatio{5, 256, 4, 256}));
  EXPECT_EQ(m3.entries[1].position, 204);
  EXPECT_EQ(m3.entries[5].position, 1024);
  EXPECT_EQ(m3.entries[5].tuplets.at(0), (TupletRatio{3, 512, 2, 512}));

  // Measure 4: quarter-note triplet.
  const Frame& m4 = score.At(0, 3, 0);
  EXPECT_EQ(m4.entries[0].tuplets.at(0), (TupletRatio{3, 1024, 2, 1024}));
  EXPECT_EQ(m4.entries[1].position, 682);
  EXPECT_EQ(m4.entries[2].actualDuration, 682);
}

TEST(Import, VoicesBeyondTheFourthAreKeptOutAndReportedOnce) {
  std::string voices;
  for (int v = 1; v <= 6; ++v)
    voices += (v > 1 ? "<backup><duration>4</duration></backup>" : "") +
              Note("C", 4 + (v % 2), 4, "whole", "", std::to_string(v));
  std::string twice = "<measure number=\"1\">" + Attributes(1) + voices + "</measure>" +
                      "<measure number=\"2\">" + voices + "</measure>";
  ImportedScore imported = ImportMusicXml(OnePart(twice), "voices");
  for (int l = 0; l < kLayerCount; ++l)
    EXPECT_EQ(imported.score.At(0, 1, l).entries.size(), 1u) << "layer " << l;
  ASSERT_EQ(imported.source.notices.size(), 1u);
  EXPECT_NE(imported.source.notices[0].find("staff 1 voice 5"), std::string::npos);
  EXPECT_NE(imported.source.notices[0].find("staff 1 voice 6"), std::string::npos);
  EXPECT_EQ(imported.source.groups.size(), 8u); // two measures of four voices
}

TEST(Import, BadInputGivesOneClearMessage) {
  auto message = [](const std::string& xml) {
    try {
      ImportMusicXml(xml, "in.musicxml");
    } catch (const ScoreError& e) {
      return std::string(e.what());
    }
    return std::string("no error");
  };
  EXPECT_NE(message("<score-partwise>\n<part-list>\n<oops></score-partwise>")
                .find("in.musicxml: not well-formed XML at line 3"),
            std::string::npos);
  EXPECT_NE(message("<score-timewise/>").find("score-timewise"), std::string::npos);
  EXPECT_NE(message("<html/>").find("not a MusicXML score"), std::string::npos);
  EXPECT_NE(message(OnePart("")).find("no measures"), std::string::npos);
  std::string noDuration = "<measure number=\"7\">" + Attributes(1) +
                           "<note><pitch><step>C</step><octave>4</octave></pitch></note></measure>";
  EXPECT_NE(message(OnePart(noDuration)).find("measure 7 of part P1: <note> without a duration"),
            std::string::npos);
  std::string backup = "<measure number=\"2\">" + Attributes(1) + Note("C", 4, 1, "quarter") +
                       "<backup><duration>2</duration></backup></measure>";
  EXPECT_NE(message(OnePart(backup)).find("back past the measure's start"), std::string::npos);
  std::string twoParts =
      R"(<score-partwise><part-list><score-part id="A"><part-name>A</part-name></score-part><score-part id="B"><part-name>B</part-name></score-part></part-list><part id="A"><measure number="1"/><measure number="2"/></part><part id="B"><measure number="1"/></part></score-partwise>)";
  EXPECT_NE(message(twoParts).find("part B has 1 measures"), std::string::npos);
}

TEST(Import, GraceNotesAndTheirChordsStayOutOfTheEntries) {
  std::string grace = "<note><grace/><pitch><step>D</step><octave>4</octave></pitch><voice>1</"
                      "voice><type>eighth</type></note>"
                      "<note><grace/><chord/><pitch><step>F</step><octave>4</octave></pitch><voice>"
                      "1</voice><type>eighth</type></note>";
  std::string measure = "<measure number=\"1\">" + Attributes(1) + Note("C", 4, 1, "quarter") +
                        grace + Note("E", 4, 3, "half", "<dot/>") + "</measure>";
  ImportedScore imported = ImportMusicXml(OnePart(measure), "grace");
  const Frame& frame = imported.score.At(0, 0, 0);
  ASSERT_EQ(frame.entries.size(), 2u);
  EXPECT_EQ(frame.entries[1].position, 1024);
  EXPECT_EQ(frame.entries[1].pitches.size(), 1u);
  EXPECT_EQ(frame.entries[1].duration, 3072);
}
