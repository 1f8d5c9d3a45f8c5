// Uneven splits: the tuplet record, the tuplet-start bit and the notated durations, and what
// happens when the document cannot give a tuplet.
#include <gtest/gtest.h>

#include "EDTTuplet.h"
#include "SubdivisionHost.h"

namespace subdivisiontest {
namespace {

TEST_F(SubdivisionTest, UnevenSplitsMakeTheTupletOfTheirUnit) {
  struct Row {
    int16_t duration;
    int16_t parts;
    int16_t unit;
    int16_t referenceNumber;
  };
  const Row rows[] = {
      {1024, 3, 512, 2},   {1024, 5, 256, 4},  {1024, 6, 256, 4},  {1024, 7, 256, 4},
      {1536, 5, 512, 3},   {2048, 3, 1024, 2}, {3072, 5, 1024, 3}, {4096, 3, 2048, 2},
      {1026, 4, 512, 2},   // a quotient that is itself a power of two gets the next one up
      {32767, 2, 8192, 3}, // the unit never exceeds a breve
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(testing::Message() << row.duration << " into " << row.parts);
    Restart();
    Build(1, 1);
    const uint32_t number = Add(1, 1, Note(row.duration, 0));

    EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(row.parts)), 1);

    const auto tuplet = doc().Tuplet(number);
    ASSERT_TRUE(tuplet.has_value());
    EXPECT_EQ(tuplet->tupletNumber, row.parts);
    EXPECT_EQ(tuplet->tupletUnit, row.unit);
    EXPECT_EQ(tuplet->referenceNumber, row.referenceNumber);
    EXPECT_EQ(tuplet->referenceUnit, row.unit);
    const auto e = Entries(1, 1);
    ASSERT_EQ(e.size(), size_t(row.parts));
    for (const EXENTRY& part : e) {
      EXPECT_EQ(part.duration, row.unit) << "unit * parts, divided by the parts";
      EXPECT_EQ(+part.actualDuration, row.duration / row.parts);
    }
    EXPECT_NE(e[0].flags & kEntryTupletStart, 0u);
  }
}

TEST_F(SubdivisionTest, WithoutA30BytePreferenceRecordNotesSplitWithTruncatedDurations) {
  const std::vector<std::vector<uint8_t>> preferences = {
      {},                       // no "pfTP" at all
      std::vector<uint8_t>(20), // too short
      std::vector<uint8_t>(40), // too long for the 30-byte buffer
  };
  for (const auto& prefs : preferences) {
    SCOPED_TRACE(prefs.size());
    Restart();
    Build(1, 1);
    ASSERT_TRUE(doc().RemovePreference(kTupletPrefsTag, 0));
    if (!prefs.empty()) {
      ASSERT_TRUE(doc().PutPreference(kTupletPrefsTag, 0, prefs));
    }
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
    EXPECT_EQ(Calls(HostCall::CreateEData), 0);
  }
}

TEST_F(SubdivisionTest, RefusedTupletRecordLeavesNoTupletStartBit) {
  Build(1, 1);
  const uint32_t number = Add(1, 1, Note(1024, 0));
  engine().SetFailing(HostCall::CreateEData, true);

  EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(3)), 1);

  EXPECT_EQ(Calls(HostCall::CreateEData), 1);
  const auto e = Entries(1, 1);
  ASSERT_EQ(e.size(), 3u);
  EXPECT_EQ(e[0].duration, 341);
  EXPECT_EQ(e[0].flags & kEntryTupletStart, 0u);
  EXPECT_TRUE(doc().EntryDetails(number).empty());
}

TEST_F(SubdivisionTest, EachUnevenSplitReadsThePreferencesAndGetsItsOwnRecord) {
  Build(1, 1);
  const uint32_t first = Add(1, 1, Note(1024, 0));
  const uint32_t second = Add(1, 1, Note(2048, 1024));

  EXPECT_EQ(Run(Measures(1, 1, 1, 1), Divisions(3)), 1);

  EXPECT_EQ(Calls(HostCall::LoadEData), 2) << "read afresh for every uneven split";
  ASSERT_TRUE(doc().Tuplet(first).has_value());
  ASSERT_TRUE(doc().Tuplet(second).has_value());
  EXPECT_EQ(doc().Tuplet(first)->tupletUnit, 512);
  EXPECT_EQ(doc().Tuplet(second)->tupletUnit, 1024);
  const auto e = Entries(1, 1);
  ASSERT_EQ(e.size(), 6u);
  EXPECT_EQ(+e[3].entryNumber, second);
  EXPECT_EQ(+e[3].position, 1024);
  EXPECT_EQ(+e[5].position, 1024 + 2 * 682);
}

TEST_F(SubdivisionTest, SplittingTheFirstNoteOfATupletAgainAddsASecondTupletRecord) {
  Build(1, 1);
  const uint32_t number = Add(1, 1, Note(1024, 0));
  ASSERT_EQ(Run(Measures(1, 1, 1, 1), Divisions(3)), 1);
  ASSERT_EQ(doc().EntryDetails(number).size(), 1u);

  // Only the first triplet eighth (512 notated, 341 real) is selected this time.
  EXPECT_EQ(Run(Region(1, 1, 0, 1, 1, 0), Divisions(3)), 1);

  const auto records = doc().EntryDetails(number);
  ASSERT_EQ(records.size(), 2u) << "the new record goes beside the first, not over it";
  EDTTuplet nested;
  ASSERT_EQ(records[1].bytes.size(), sizeof nested);
  std::memcpy(&nested, records[1].bytes.data(), sizeof nested);
  EXPECT_EQ(nested.tupletNumber, 3);
  EXPECT_EQ(nested.tupletUnit, 256);
  EXPECT_EQ(nested.referenceNumber, 2);
  EXPECT_EQ(doc().Tuplet(number)->tupletUnit, 512) << "the outer tuplet is unchanged";
  const auto e = Entries(1, 1);
  ASSERT_EQ(e.size(), 5u);
  EXPECT_EQ(e[0].duration, 256);
  EXPECT_EQ(+e[0].actualDuration, 113);
  EXPECT_EQ(+e[3].position, 341);
}

} // namespace
} // namespace subdivisiontest
