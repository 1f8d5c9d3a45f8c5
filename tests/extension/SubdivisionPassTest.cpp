// The subdivision pass on documents of the reference engine: what it stores, where, the tuplets
// of uneven splits, and what it leaves alone.
#include <gtest/gtest.h>

#include <algorithm>

#include "EDTTuplet.h"
#include "SubdivisionHost.h"

namespace subdivisiontest {
namespace {

// One note split by the pass, in either mode: how many parts, their durations, and the tuplet
// (unit 0: none) an uneven split makes from the document's tuplet preferences.
TEST_F(SubdivisionTest, SplitsMakeTheirPartsAndTheTupletOfTheirUnit) {
  struct Case {
    int16_t duration;
    int32_t actual, position;
    tSubdivideParam param;
    size_t parts; // 1: not split
    int16_t notated;
    int32_t partActual;
    int16_t unit, referenceNumber;
  };
  const Case cases[] = {
      {2048, 2048, 0, Divisions(2), 2, 1024, 1024, 0, 0},
      {1024, 1024, 512, Divisions(3), 3, 512, 341, 512, 2},
      {1024, 1024, 0, Divisions(5), 5, 256, 204, 256, 4},
      {1024, 1024, 0, Divisions(6), 6, 256, 170, 256, 4},
      {1024, 1024, 0, Divisions(7), 7, 256, 146, 256, 4},
      {1536, 1536, 0, Divisions(5), 5, 512, 307, 512, 3},
      {2048, 2048, 0, Divisions(3), 3, 1024, 682, 1024, 2},
      {3072, 3072, 0, Divisions(5), 5, 1024, 614, 1024, 3},
      {4096, 4096, 0, Divisions(3), 3, 2048, 1365, 2048, 2},
      {1026, 1026, 0, Divisions(4), 4, 512, 256, 512, 2},       // quotient 256 gets 512
      {32767, 32767, 0, Divisions(2), 2, 8192, 16383, 8192, 3}, // never more than a breve
      {1536, 1536, 256, Target(512), 3, 512, 512, 0, 0},        // dotted quarter into eighths
      {1536, 1536, 256, Target(1024), 1, 0, 0, 0, 0},           // one part only
      {1536, 1536, 256, Target(1536), 1, 0, 0, 0, 0},           // the note itself
      {512, 341, 256, Target(170), 2, 256, 170, 0, 0},          // 340 is within 10 of 341
      {1024, 1024, 256, Target(338), 3, 512, 341, 512, 2},      // 1014: 10 short, a triplet
      {1024, 1024, 256, Target(337), 1, 0, 0, 0, 0},            // 1011: 13 short
      {1024, 1025, 256, Target(338), 1, 0, 0, 0, 0},            // 1014: 11 short
      {1024, 1024, 256, Target(2048), 1, 0, 0, 0, 0},           // longer than the note
      {4096, 4096, 0, Target(4), 1024, 4, 4, 0, 0},             // a whole note into 1024
  };
  std::vector<uint8_t> prefs(30);
  for (size_t i = 0; i < prefs.size(); ++i)
    prefs[i] = uint8_t(0xA0 + i);
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.duration << "/" << c.actual << " mode "
                                    << c.param.byDivisions << " into " << c.parts);
    Restart();
    Build(1, 1);
    ASSERT_TRUE(doc().PutPreference(kTupletPrefsTag, 0, prefs));
    const uint32_t number = Add(1, 1, Note(c.duration, c.position, c.actual));
    const auto before = Entries(1, 1);
    const bool split = c.parts > 1;

    EXPECT_EQ(Run(Measures(1, 1, 1, 1), c.param), split ? 1 : 0);

    const auto e = Entries(1, 1);
    ASSERT_EQ(e.size(), c.parts) << "entries made by a split are not split again";
    // Four shown layers are visited; only the one that changed is saved; one rebeam at the end.
    EXPECT_EQ(Calls(HostCall::LoadTGF), 4);
    EXPECT_EQ(Calls(HostCall::FreeTGF), 4);
    EXPECT_EQ(Calls(HostCall::SaveTGF), split ? 1 : 0);
    EXPECT_EQ(Calls(HostCall::RebeamRegion), split ? 1 : 0);
    EXPECT_EQ(Calls(HostCall::LoadEData), split && c.duration % int(c.parts) != 0 ? 1 : 0)
        << "only an uneven split reads the tuplet preferences";
    if (!split) {
      EXPECT_TRUE(SameBytes(e[0], before[0]));
      continue;
    }
    EXPECT_EQ(+e[0].entryNumber, number);
    for (size_t k = 0; k < c.parts; ++k) {
      EXPECT_EQ(e[k].duration, c.notated);
      EXPECT_EQ(+e[k].actualDuration, c.partActual);
      EXPECT_EQ(+e[k].position, c.position + int32_t(k) * c.partActual);
      EXPECT_EQ((e[k].flags & kEntryTupletStart) != 0, k == 0 && c.unit != 0);
      if (k > 0) {
        EXPECT_NE(+e[k].entryNumber, 0u);
        EXPECT_NE(+e[k].entryNumber, number);
        EXPECT_TRUE(doc().EntryDetails(+e[k].entryNumber).empty());
      }
    }
    EXPECT_EQ(doc().EntryDetails(number).size(), c.unit != 0 ? 1u : 0u);
    const auto tuplet = doc().Tuplet(number);
    ASSERT_EQ(tuplet.has_value(), c.unit != 0);
    if (!tuplet)
      continue;
    EXPECT_EQ(tuplet->tupletNumber, int16_t(c.parts));
    EXPECT_EQ(tuplet->tupletUnit, c.unit);
    EXPECT_EQ(tuplet->referenceNumber, c.referenceNumber);
    EXPECT_EQ(tuplet->referenceUnit, c.unit);
    EXPECT_TRUE(std::equal(prefs.begin() + 8, prefs.end(), tuplet->hostData));
  }
}

TEST_F(SubdivisionTest, WithoutAPreferenceRecordOrATupletRecordUnevenSplitsTruncate) {
  // 0: no "pfTP" at all; 20 and 40: not the 30 bytes asked for; 30: the record is refused.
  for (size_t size : {0, 20, 40, 30}) {
    SCOPED_TRACE(size);
    Restart();
    Build(1, 1);
    ASSERT_TRUE(doc().RemovePreference(kTupletPrefsTag, 0));
    if (size != 0) {
      ASSERT_TRUE(doc().PutPreference(kTupletPrefsTag, 0, std::vector<uint8_t>(size)));
    }
    const bool refused = size == 30;
    engine().SetFailing(HostCall::CreateEData, refused);
    const uint32_t number = Add(1, 1, Note(1024, 0));

    EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(3)), 1);

    const auto e = Entries(1, 1);
    ASSERT_EQ(e.size(), 3u);
    for (const EXENTRY& part : e) {
      EXPECT_EQ(part.duration, 341);
      EXPECT_EQ(+part.actualDuration, 341);
      EXPECT_EQ(part.flags & kEntryTupletStart, 0u);
    }
    EXPECT_TRUE(doc().EntryDetails(number).empty());
    EXPECT_EQ(Calls(HostCall::CreateEData), refused ? 1 : 0);
  }
}

TEST_F(SubdivisionTest, VoiceTwoMaterialIsNeverChangedAndWarnsOncePerInvocation) {
  Build(3, 1);
  Add(1, 1, Note(1024, 0, -1, kEntryVoiceTwoLaunch)); // launches the voice-2 entry after it
  Add(1, 1, Note(1024, 0, -1, kEntryVoiceTwo));
  Add(1, 1, Note(1024, 1024));
  Add(2, 1, Note(1024, 0, -1, kEntryVoiceTwo)); // a second frame with voice 2: no second alert
  // The last of a frame of exactly 16 entries (the host's smallest frame buffer, nothing
  // inserted before it) has no entry after it to look at, and is split.
  for (int32_t p = 0; p < 15 * 1024; p += 1024)
    Add(3, 1, Rest(1024, p));
  Add(3, 1, Note(1024, 15 * 1024, -1, kEntryVoiceTwoLaunch));
  const auto staff1 = Entries(1, 1);
  const auto staff2 = Entries(2, 1);

  EXPECT_EQ(Run(Measures(1, 3, 1, 1), Divisions(2)), 1);

  const auto e1 = Entries(1, 1);
  ASSERT_EQ(e1.size(), 4u);
  EXPECT_TRUE(SameBytes(e1[0], staff1[0]));
  EXPECT_TRUE(SameBytes(e1[1], staff1[1]));
  EXPECT_EQ(e1[2].duration, 512);
  EXPECT_EQ(+e1[3].position, 1536);
  const auto e3 = Entries(3, 1);
  ASSERT_EQ(e3.size(), 17u);
  EXPECT_EQ(e3[15].duration, 512);
  EXPECT_EQ(+e3[16].position, 15 * 1024 + 512);
  EXPECT_EQ(VoiceTwoWarnings(), 1u);

  // A new invocation warns again, even though every voice-2 entry lies before its start: the
  // voice tests come before the position tests. Continuing that invocation does not re-warn.
  EXPECT_EQ(Run(Region(1, 1, 2048, 3, 1, kNoUpperBound), Divisions(2)), 1);
  EXPECT_EQ(VoiceTwoWarnings(), 2u);
  EREGION rest = Measures(1, 2, 1, 1);
  const tSubdivideParam param = Divisions(2);
  EXPECT_EQ(Probe().proceed(&rest, &param, 4), 1);
  EXPECT_EQ(VoiceTwoWarnings(), 2u);
  EXPECT_TRUE(SameBytes(Entries(1, 1)[1], staff1[1]));
  ASSERT_EQ(Entries(2, 1).size(), 1u);
  EXPECT_TRUE(SameBytes(Entries(2, 1)[0], staff2[0]));
}

// The start position holds in the first measure only, the end position in the last only; there
// an entry exactly at the end is split, and the first entry past it ends the frame's scan.
TEST_F(SubdivisionTest, PositionRangeAppliesToTheFirstAndLastMeasuresAndEndsTheScan) {
  Build(1, 3);
  for (int16_t m = 1; m <= 2; ++m)
    for (int32_t p = 0; p < 4096; p += 1024)
      Add(1, m, Note(1024, p));
  Add(1, 3, Note(1024, 0));
  Add(1, 3, Note(1024, 1024));
  const uint32_t past = Add(1, 3, Note(1024, 2048));
  const uint32_t after = Add(1, 3, Note(1024, 512)); // in range, but the scan has stopped

  EXPECT_EQ(Run(Region(1, 1, 2048, 1, 3, 1024), Divisions(2)), 1);

  auto splitPositions = [](const std::vector<EXENTRY>& entries) {
    std::vector<int32_t> split;
    for (const EXENTRY& e : entries)
      if (e.duration == 512)
        split.push_back(+e.position);
    return split;
  };
  EXPECT_EQ(splitPositions(Entries(1, 1)), (std::vector<int32_t>{2048, 2560, 3072, 3584}));
  EXPECT_EQ(Entries(1, 2).size(), 8u);
  const auto e = Entries(1, 3);
  EXPECT_EQ(splitPositions(e), (std::vector<int32_t>{0, 512, 1024, 1536}));
  ASSERT_EQ(e.size(), 6u);
  EXPECT_EQ(+e[4].entryNumber, past);
  EXPECT_EQ(+e[5].entryNumber, after);
  EXPECT_EQ(Calls(HostCall::SaveTGF), 3);
  EXPECT_EQ(Calls(HostCall::RebeamRegion), 1);
}

TEST_F(SubdivisionTest, RefusedInsertionOrFailedSaveLeavesTheEntriesAsTheyWere) {
  for (HostCall failing : {HostCall::InsertEXENTRY, HostCall::SaveTGF}) {
    SCOPED_TRACE(int(failing));
    Restart();
    Build(1, 1);
    Add(1, 1, Note(2048, 0));
    Add(1, 1, Note(2048, 2048));
    const auto before = Entries(1, 1);
    engine().SetFailing(failing, true);

    EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(3)), 0);

    const bool refused = failing == HostCall::InsertEXENTRY;
    EXPECT_EQ(Calls(HostCall::InsertEXENTRY), 2) << "the scan moves on after a refusal";
    EXPECT_EQ(Calls(HostCall::LoadEData), refused ? 0 : 2);
    EXPECT_EQ(Calls(HostCall::SaveTGF), refused ? 0 : 1) << "a refusal marks nothing changed";
    EXPECT_EQ(Calls(HostCall::RebeamRegion), 0);
    const auto after = Entries(1, 1);
    ASSERT_EQ(after.size(), 2u);
    EXPECT_TRUE(SameBytes(after[0], before[0]));
    EXPECT_TRUE(SameBytes(after[1], before[1]));
  }
}

// Frames are visited for shown layers below the layer count; a frame whose only entry is a rest
// is loaded and freed but not saved.
TEST_F(SubdivisionTest, WalkVisitsShownLayersUpToTheCountAndSavesOnlyChangedFrames) {
  Build(2, 2);
  for (int16_t layer = 0; layer < 4; ++layer)
    Add(1, 1, Note(2048, 0), layer);
  Add(2, 1, Rest(2048, 0));
  const auto rest = Entries(2, 1);

  EXPECT_EQ(Run(Measures(1, 2, 2, 1), Divisions(2)), 0) << "start measure after end measure";
  EXPECT_EQ(Run(Measures(2, 1, 1, 2), Divisions(2)), 0) << "start staff after end staff";
  EXPECT_EQ(Run(Measures(1, 2, 1, 1), Divisions(2), 0), 0) << "no layers";
  EXPECT_EQ(Run(Measures(1, 2, 1, 1), Divisions(2), -1), 0) << "a negative layer count";
  EXPECT_EQ(Calls(HostCall::LoadTGF), 0);
  EXPECT_EQ(Entries(1, 1).size(), 1u);
  EXPECT_EQ(Run(Measures(2, 2, 1, 1), Divisions(2)), 0) << "a rest only";
  EXPECT_EQ(Calls(HostCall::FreeTGF), 4);
  EXPECT_EQ(Calls(HostCall::SaveTGF), 0);
  EXPECT_EQ(Calls(HostCall::RebeamRegion), 0);

  engine().ResetCallCounts();
  engine().SetLayerShown(1, false);
  EXPECT_EQ(Run(Measures(1, 2, 1, 1), Divisions(2), 3), 1);
  EXPECT_EQ(Entries(1, 1, 0).size(), 2u);
  EXPECT_EQ(Entries(1, 1, 1).size(), 1u) << "hidden layer";
  EXPECT_EQ(Entries(1, 1, 2).size(), 2u);
  EXPECT_EQ(Entries(1, 1, 3).size(), 1u) << "beyond the layer count";
  ASSERT_EQ(Entries(2, 1).size(), 1u);
  EXPECT_TRUE(SameBytes(Entries(2, 1)[0], rest[0]));
  EXPECT_EQ(Calls(HostCall::LoadTGF), 4);
  EXPECT_EQ(Calls(HostCall::FreeTGF), 4);
  EXPECT_EQ(Calls(HostCall::SaveTGF), 2);
}

} // namespace
} // namespace subdivisiontest
