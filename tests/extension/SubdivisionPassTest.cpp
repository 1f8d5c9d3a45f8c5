// The subdivision pass on documents of the reference engine: what it stores, where, and what it
// leaves alone.
#include <gtest/gtest.h>

#include "EDTTuplet.h"
#include "SubdivisionHost.h"

namespace subdivisiontest {
namespace {

constexpr FrameAddress kFirstFrame{1, 1, 0};

TEST_F(SubdivisionTest, HalfNoteSplitsIntoTwoQuartersWithoutATuplet) {
  Build(1, 1);
  const uint32_t half = Add(1, 1, Note(2048, 0));

  EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(2)), 1);

  const auto e = Entries(1, 1);
  ASSERT_EQ(e.size(), 2u) << "entries made by a split are not split again";
  EXPECT_EQ(+e[0].entryNumber, half);
  EXPECT_EQ(+e[0].position, 0);
  EXPECT_EQ(+e[1].position, 1024);
  for (const EXENTRY& part : e) {
    EXPECT_EQ(part.duration, 1024);
    EXPECT_EQ(+part.actualDuration, 1024);
    EXPECT_EQ(part.flags & kEntryTupletStart, 0u);
    EXPECT_EQ(NotePitchStep(part.notes[0]), 2);
  }
  EXPECT_NE(+e[1].entryNumber, 0u);
  EXPECT_NE(+e[1].entryNumber, half);
  EXPECT_TRUE(doc().EntryDetails(half).empty());
  EXPECT_EQ(Calls(HostCall::LoadEData), 0) << "an even split never reads the tuplet preferences";
  // Four shown layers are visited; only the one that changed is saved; one rebeam at the end.
  EXPECT_EQ(Calls(HostCall::LoadTGF), 4);
  EXPECT_EQ(Calls(HostCall::FreeTGF), 4);
  EXPECT_EQ(Calls(HostCall::SaveTGF), 1);
  EXPECT_EQ(Calls(HostCall::RebeamRegion), 1);
}

TEST_F(SubdivisionTest, QuarterAtPosition512IntoThreeBecomesATriplet) {
  Build(1, 1);
  std::vector<uint8_t> prefs(30);
  for (size_t i = 0; i < prefs.size(); ++i)
    prefs[i] = uint8_t(0xA0 + i);
  ASSERT_TRUE(doc().PutPreference(kTupletPrefsTag, 0, prefs));
  const uint32_t quarter = Add(1, 1, Note(1024, 512));

  EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(3)), 1);

  const auto e = Entries(1, 1);
  ASSERT_EQ(e.size(), 3u);
  const int32_t positions[] = {512, 853, 1194};
  for (size_t k = 0; k < 3; ++k) {
    EXPECT_EQ(e[k].duration, 512);
    EXPECT_EQ(+e[k].actualDuration, 341);
    EXPECT_EQ(+e[k].position, positions[k]);
    EXPECT_EQ((e[k].flags & kEntryTupletStart) != 0, k == 0) << "only the first starts the tuplet";
  }
  const auto tuplet = doc().Tuplet(quarter);
  ASSERT_TRUE(tuplet.has_value());
  EXPECT_EQ(tuplet->tupletNumber, 3);
  EXPECT_EQ(tuplet->tupletUnit, 512);
  EXPECT_EQ(tuplet->referenceNumber, 2);
  EXPECT_EQ(tuplet->referenceUnit, 512);
  EXPECT_TRUE(std::equal(prefs.begin() + 8, prefs.end(), tuplet->preferences));
  EXPECT_EQ(doc().EntryDetails(quarter).size(), 1u);
  EXPECT_TRUE(doc().EntryDetails(e[1].entryNumber).empty());
  EXPECT_TRUE(doc().EntryDetails(e[2].entryNumber).empty());
}

TEST_F(SubdivisionTest, TargetModeSplitsIntoWholePartsWithinTenTDU) {
  struct Case {
    int16_t duration;
    int32_t actual;
    int32_t target;
    size_t parts; // 1: not split
    int16_t partDuration;
    int32_t partActual;
  };
  const Case cases[] = {
      {1536, 1536, 512, 3, 512, 512}, // dotted quarter into eighths
      {1536, 1536, 1024, 1, 0, 0},    // one part only
      {1536, 1536, 1536, 1, 0, 0},    // the target is the note itself
      {512, 341, 170, 2, 256, 170},   // triplet eighth: 340 lies within 10 of 341
      {1024, 1024, 338, 3, 512, 341}, // 1014 is 10 short: an uneven split, so a triplet
      {1024, 1024, 337, 1, 0, 0},     // 1011 is 13 short
      {1024, 1025, 338, 1, 0, 0},     // 1014 is 11 short
      {1024, 1024, 2048, 1, 0, 0},    // the target is longer than the note
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.duration << "/" << c.actual << " target " << c.target);
    Restart();
    Build(1, 1);
    const uint32_t number = Add(1, 1, Note(c.duration, 256, c.actual));
    const auto before = Entries(1, 1);

    EXPECT_EQ(Run(Measures(1, 1, 1, 1), Target(c.target)), c.parts > 1 ? 1 : 0);

    const auto e = Entries(1, 1);
    ASSERT_EQ(e.size(), c.parts);
    if (c.parts == 1) {
      EXPECT_TRUE(SameBytes(e[0], before[0]));
      EXPECT_EQ(Calls(HostCall::SaveTGF), 0);
      EXPECT_EQ(Calls(HostCall::RebeamRegion), 0);
      continue;
    }
    for (size_t k = 0; k < c.parts; ++k) {
      EXPECT_EQ(e[k].duration, c.partDuration);
      EXPECT_EQ(+e[k].actualDuration, c.partActual);
      EXPECT_EQ(+e[k].position, 256 + int32_t(k) * c.partActual);
    }
    EXPECT_EQ(doc().Tuplet(number).has_value(), c.duration % int(c.parts) != 0);
  }
}

TEST_F(SubdivisionTest, WholeNoteWithTargetFourGives1024Entries) {
  Build(1, 1);
  Add(1, 1, Note(4096, 0));

  EXPECT_EQ(Run(Measures(1, 1, 1, 1), Target(4)), 1);

  const auto e = Entries(1, 1);
  ASSERT_EQ(e.size(), 1024u);
  for (size_t k = 0; k < e.size(); ++k) {
    ASSERT_EQ(+e[k].position, int32_t(4 * k)) << k;
    ASSERT_EQ(e[k].duration, 4);
    ASSERT_EQ(+e[k].actualDuration, 4);
  }
}

TEST_F(SubdivisionTest, VoiceTwoMaterialIsNeverChangedAndWarnsOncePerRun) {
  Build(4, 1);
  Add(1, 1, Note(1024, 0, -1, kEntryVoiceTwoLaunch)); // launches the voice-2 entry after it
  Add(1, 1, Note(1024, 0, -1, kEntryVoiceTwo));
  Add(1, 1, Note(1024, 1024));
  Add(2, 1, Note(1024, 0, -1, kEntryVoiceTwo)); // a second frame with voice 2: no second alert
  Add(3, 1, Note(1024, 0, -1, kEntryVoiceTwoLaunch)); // not followed by voice 2: split
  Add(3, 1, Note(1024, 1024));
  // The last of a frame of exactly 16 entries (the host's smallest frame buffer, nothing
  // inserted before it) has no entry after it to look at, and is split.
  for (int32_t p = 0; p < 15 * 1024; p += 1024)
    Add(4, 1, Rest(1024, p));
  Add(4, 1, Note(1024, 15 * 1024, -1, kEntryVoiceTwoLaunch));
  const auto staff1 = Entries(1, 1);
  const auto staff2 = Entries(2, 1);

  EXPECT_EQ(Run(Measures(1, 4, 1, 1), Divisions(2)), 1);

  const auto e1 = Entries(1, 1);
  ASSERT_EQ(e1.size(), 4u);
  EXPECT_TRUE(SameBytes(e1[0], staff1[0]));
  EXPECT_TRUE(SameBytes(e1[1], staff1[1]));
  EXPECT_EQ(e1[2].duration, 512);
  EXPECT_EQ(+e1[3].position, 1536);
  ASSERT_EQ(Entries(2, 1).size(), 1u);
  EXPECT_TRUE(SameBytes(Entries(2, 1)[0], staff2[0]));
  const auto e3 = Entries(3, 1);
  ASSERT_EQ(e3.size(), 4u);
  EXPECT_EQ(+e3[1].position, 512);
  // The launch bit is kept on the split entry itself but not in its copy.
  EXPECT_NE(e3[0].flags & kEntryVoiceTwoLaunch, 0u);
  EXPECT_EQ(e3[1].flags & kEntryVoiceTwoLaunch, 0u);
  const auto e4 = Entries(4, 1);
  ASSERT_EQ(e4.size(), 17u);
  EXPECT_EQ(e4[15].duration, 512);
  EXPECT_EQ(+e4[16].position, 15 * 1024 + 512);
  EXPECT_EQ(VoiceTwoWarnings(), 1u);

  // A new invocation may warn again, once.
  EXPECT_EQ(Run(Measures(1, 4, 1, 1), Divisions(2)), 1);
  EXPECT_EQ(VoiceTwoWarnings(), 2u);
  EXPECT_TRUE(SameBytes(Entries(1, 1)[1], staff1[1]));
}

TEST_F(SubdivisionTest, VoiceTwoBeforeTheRangeStillWarnsAndTheWarningIsPerInvocation) {
  Build(1, 2);
  Add(1, 1, Note(1024, 0, -1, kEntryVoiceTwo));
  Add(1, 1, Note(1024, 2048));
  Add(1, 2, Note(1024, 0, -1, kEntryVoiceTwo));

  // The voice tests come before the position tests.
  EXPECT_EQ(Run(Region(1, 1, 2048, 1, 1, 4096), Divisions(2)), 1);
  EXPECT_EQ(VoiceTwoWarnings(), 1u);
  EXPECT_EQ(Entries(1, 1).size(), 3u);

  // Continuing the same invocation over another measure does not warn again.
  EREGION second = Measures(1, 1, 2, 2);
  const tSubdivideParam param = Divisions(2);
  EXPECT_EQ(Probe().proceed(&second, &param, 4), 0);
  EXPECT_EQ(VoiceTwoWarnings(), 1u);
}

TEST_F(SubdivisionTest, RestsAreNeverSplitAndAFrameWithoutChangesIsNotSaved) {
  Build(2, 1);
  Add(1, 1, Rest(2048, 0));
  Add(1, 1, Rest(2048, 2048));
  const auto before = Entries(1, 1);

  EXPECT_EQ(Run(Measures(1, 2, 1, 1), Divisions(2)), 0);

  EXPECT_EQ(Entries(1, 1).size(), 2u);
  EXPECT_TRUE(SameBytes(Entries(1, 1)[0], before[0]));
  EXPECT_EQ(Calls(HostCall::LoadTGF), 8) << "every shown layer of both staves is loaded";
  EXPECT_EQ(Calls(HostCall::FreeTGF), 8);
  EXPECT_EQ(Calls(HostCall::SaveTGF), 0);
  EXPECT_EQ(Calls(HostCall::RebeamRegion), 0);
}

TEST_F(SubdivisionTest, ScanStopsAtTheFirstEntryPastTheEndButSavesWhatChanged) {
  Build(1, 1);
  Add(1, 1, Note(1024, 0));
  Add(1, 1, Note(1024, 1024)); // exactly at the end position: split
  const uint32_t past = Add(1, 1, Note(1024, 2048));
  const uint32_t after = Add(1, 1, Note(1024, 512)); // in range, but the scan has stopped

  EXPECT_EQ(Run(Region(1, 1, 0, 1, 1, 1024), Divisions(2)), 1);

  const auto e = Entries(1, 1);
  ASSERT_EQ(e.size(), 6u);
  EXPECT_EQ(+e[3].position, 1536);
  EXPECT_EQ(+e[4].entryNumber, past);
  EXPECT_EQ(e[4].duration, 1024);
  EXPECT_EQ(+e[5].entryNumber, after);
  EXPECT_EQ(e[5].duration, 1024);
  EXPECT_EQ(Calls(HostCall::SaveTGF), 1);
}

TEST_F(SubdivisionTest, PositionRangeAppliesToTheFirstAndLastMeasuresOnly) {
  Build(1, 3);
  for (int16_t m = 1; m <= 3; ++m)
    for (int32_t p = 0; p < 4096; p += 1024)
      Add(1, m, Note(1024, p));

  EXPECT_EQ(Run(Region(1, 1, 2048, 1, 3, 1024), Divisions(2)), 1);

  auto splitPositions = [](const std::vector<EXENTRY>& entries) {
    std::vector<int32_t> split;
    for (const EXENTRY& e : entries)
      if (e.duration == 512 && e.entryNumber != 0)
        split.push_back(+e.position);
    return split;
  };
  EXPECT_EQ(splitPositions(Entries(1, 1)), (std::vector<int32_t>{2048, 2560, 3072, 3584}));
  EXPECT_EQ(Entries(1, 2).size(), 8u);
  EXPECT_EQ(splitPositions(Entries(1, 3)), (std::vector<int32_t>{0, 512, 1024, 1536}));
  EXPECT_EQ(Calls(HostCall::RebeamRegion), 1);
}

TEST_F(SubdivisionTest, RefusedInsertionLeavesTheEntryAsItWas) {
  Build(1, 1);
  Add(1, 1, Note(2048, 0));
  Add(1, 1, Note(2048, 2048));
  const auto before = Entries(1, 1);
  engine().SetFailing(HostCall::InsertEXENTRY, true);

  EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(3)), 0);

  EXPECT_EQ(Calls(HostCall::InsertEXENTRY), 2) << "the scan moves on after a refusal";
  EXPECT_EQ(Calls(HostCall::LoadEData), 0);
  EXPECT_EQ(Calls(HostCall::SaveTGF), 0);
  EXPECT_EQ(Calls(HostCall::RebeamRegion), 0);
  const auto after = Entries(1, 1);
  ASSERT_EQ(after.size(), 2u);
  EXPECT_TRUE(SameBytes(after[0], before[0]));
  EXPECT_TRUE(SameBytes(after[1], before[1]));
}

TEST_F(SubdivisionTest, FailedSaveGivesZeroAndNoRebeam) {
  Build(1, 1);
  Add(1, 1, Note(2048, 0));
  const auto before = Entries(1, 1);
  engine().SetFailing(HostCall::SaveTGF, true);

  EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(2)), 0);

  EXPECT_EQ(Calls(HostCall::SaveTGF), 1);
  EXPECT_EQ(Calls(HostCall::RebeamRegion), 0);
  ASSERT_EQ(Entries(1, 1).size(), 1u);
  EXPECT_TRUE(SameBytes(Entries(1, 1)[0], before[0]));
}

TEST_F(SubdivisionTest, EmptyWalksLoadNoFrame) {
  Build(2, 2);
  Add(1, 1, Note(2048, 0));

  EXPECT_EQ(Run(Measures(1, 1, 2, 1), Divisions(2)), 0) << "start measure after end measure";
  EXPECT_EQ(Run(Measures(2, 1, 1, 2), Divisions(2)), 0) << "start staff after end staff";
  EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(2), 0), 0) << "no layers";
  EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(2), -1), 0) << "a negative layer count";
  EXPECT_EQ(Calls(HostCall::LoadTGF), 0);
  EXPECT_EQ(Entries(1, 1).size(), 1u);
}

TEST_F(SubdivisionTest, OnlyShownLayersUpToTheLayerCountAreVisited) {
  Build(1, 1);
  for (int16_t layer = 0; layer < 4; ++layer)
    Add(1, 1, Note(2048, 0), layer);
  engine().SetLayerShown(1, false);

  EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(2), 3), 1);

  EXPECT_EQ(Entries(1, 1, 0).size(), 2u);
  EXPECT_EQ(Entries(1, 1, 1).size(), 1u) << "hidden layer";
  EXPECT_EQ(Entries(1, 1, 2).size(), 2u);
  EXPECT_EQ(Entries(1, 1, 3).size(), 1u) << "beyond the layer count";
  EXPECT_EQ(Calls(HostCall::LoadTGF), 2);
}

TEST_F(SubdivisionTest, CopiesCarryTheMaskedTemplateAndTheSplitEntryKeepsEverythingElse) {
  Build(1, 1);
  EXENTRY chord{};
  chord.duration = 2048;
  chord.actualDuration = 2048;
  chord.position = 1024;
  chord.hostWord6 = 0xBEEF;
  chord.flags = 0xFFFFFFFF & ~(kEntryVoiceTwo | kEntryVoiceTwoLaunch);
  chord.flags2 = 0xFFFF;
  chord.noteCount = 3;
  for (int16_t j = 0; j < 3; ++j) {
    SetNotePitch(chord.notes[j], int16_t(j * 2), int16_t(j - 1));
    chord.notes[j].noteID = int16_t(j + 1);
    chord.notes[j].noteFlags = (0xFFFFFFFF & ~kNoteIDCopyMask) | (uint32_t(j + 1) << 16);
  }
  chord.hostTrailer[0] = 0x12;
  chord.hostTrailer[1] = 0x34;
  const uint32_t number = doc().AddEntry(kFirstFrame, chord);
  ASSERT_NE(number, 0u);
  EXENTRY expectedFirst = Entries(1, 1)[0];

  EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(4)), 1);

  const auto e = Entries(1, 1);
  ASSERT_EQ(e.size(), 4u);
  expectedFirst.duration = 512;
  expectedFirst.actualDuration = 512;
  EXPECT_TRUE(SameBytes(e[0], expectedFirst)) << "only the two durations of the entry change";
  for (size_t k = 1; k < 4; ++k) {
    SCOPED_TRACE(k);
    EXENTRY expected = expectedFirst;
    expected.entryNumber = e[k].entryNumber; // given by the host on save
    expected.hostWord6 = 0;
    expected.flags = chord.flags & 0xC080A15F;
    expected.flags2 = 0x00C0;
    expected.position = 1024 + int32_t(k) * 512;
    for (int j = 0; j < 3; ++j)
      expected.notes[j].noteFlags = (chord.notes[j].noteFlags & 0x8E000000) | uint32_t(j + 1) << 16;
    EXPECT_TRUE(SameBytes(e[k], expected));
    EXPECT_NE(+e[k].entryNumber, 0u);
    EXPECT_NE(+e[k].entryNumber, number);
  }
}

} // namespace
} // namespace subdivisiontest
