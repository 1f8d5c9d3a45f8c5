#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "HostFunctions.h"
#include "TestHost.h"

namespace {

constexpr uint32_t kTupletDetailTag = 0x45035450;

std::vector<unsigned char> Pattern(size_t size, unsigned char seed) {
  std::vector<unsigned char> bytes(size);
  for (size_t i = 0; i < size; ++i)
    bytes[i] = static_cast<unsigned char>(seed + i * 7);
  return bytes;
}

TEST(EntryDetails, FretInstrumentLoadClearsAndAcceptsAPartialRecord) {
  TestHost& host = TestHost::Fresh();
  unsigned short keys[] = {3};
  const std::vector<unsigned char> stored = Pattern(kFretInstrumentRecordSize, 1);
  host.PutRecord(kFretInstrumentTag, 3, 0, stored.data(), kFretInstrumentRecordSize);

  // A successful host load is asked a second time, and its answer is the result.
  std::vector<unsigned char> buffer(kFretInstrumentRecordSize + 4, 0xCC);
  uint32_t size = static_cast<uint32_t>(buffer.size());
  EXPECT_EQ(SX_LoadEData(kFretInstrumentTag, keys, buffer.data(), &size, kScriboHostVersion), 1);
  EXPECT_EQ(host.Calls("SX_LoadEData"), 2);
  EXPECT_EQ(size, kFretInstrumentRecordSize);
  EXPECT_EQ(std::memcmp(buffer.data(), stored.data(), stored.size()), 0);
  EXPECT_EQ(buffer[kFretInstrumentRecordSize], 0xCC); // past the record: untouched

  // A host that fills part of the record and reports failure: still loaded.
  host.FailLoads(kFretInstrumentTag, 10);
  std::fill(buffer.begin(), buffer.end(), 0xCC);
  size = kFretInstrumentRecordSize;
  EXPECT_EQ(SX_LoadEData(kFretInstrumentTag, keys, buffer.data(), &size, kScriboHostVersion), 1);
  EXPECT_EQ(host.Calls("SX_LoadEData"), 3);
  EXPECT_EQ(buffer[9], 0xAB);
  EXPECT_EQ(buffer[10], 0); // cleared before the host was asked

  // A host that writes nothing and fails: not loaded, and the record is left cleared.
  host.FailLoads(kFretInstrumentTag, 0);
  std::fill(buffer.begin(), buffer.end(), 0xCC);
  EXPECT_EQ(SX_LoadEData(kFretInstrumentTag, keys, buffer.data(), &size, kScriboHostVersion), 0);
  EXPECT_EQ(host.Calls("SX_LoadEData"), 4);
  EXPECT_EQ(std::count(buffer.begin(), buffer.begin() + kFretInstrumentRecordSize, 0),
            static_cast<long>(kFretInstrumentRecordSize));

  // A size query has no buffer to guard and goes straight to the host.
  size = 0;
  SX_LoadEData(kFretInstrumentTag, keys, nullptr, &size, kScriboHostVersion);
  EXPECT_EQ(host.Calls("SX_LoadEData"), 5);
}

TEST(EntryDetailsDeathTest, FretInstrumentBufferBelowRecordSizeStops) {
  TestHost::Fresh();
  unsigned short keys[] = {1};
  std::vector<unsigned char> buffer(kFretInstrumentRecordSize);
  uint32_t size = kFretInstrumentRecordSize - 1;
  EXPECT_DEATH(SX_LoadEData(kFretInstrumentTag, keys, buffer.data(), &size, kScriboHostVersion),
               "Assertion failed: \\(\\*size >= sizeof\\(EDTFretInstrument25_3\\)\\), function "
               "SX_LoadEData, file Source/scribopdk, line 1442\\.");
}

TEST(EntryDetails, UnmappedRecordsGoStraightToTheHost) {
  TestHost& host = TestHost::Fresh();
  const std::vector<unsigned char> tuplet = Pattern(30, 40);
  host.PutRecord(FourCharTag("pfTP"), 0, 0, tuplet.data(), 30);
  unsigned short prefKeys[] = {0};

  uint32_t size = 0;
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfTP"), prefKeys, nullptr, &size, kScriboHostVersion), 1);
  EXPECT_EQ(size, 30u); // the host answered the size query itself
  std::vector<unsigned char> buffer(30);
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfTP"), prefKeys, buffer.data(), &size, kScriboHostVersion),
            1);
  EXPECT_EQ(buffer, tuplet);

  // Entry details are created, found and deleted by the host.
  unsigned short entryKeys[] = {17, 0};
  EXPECT_EQ(SX_CreateEData(kTupletDetailTag, entryKeys, buffer.data(), 30, kScriboHostVersion), 1);
  EXPECT_EQ(SX_CreateEData(kTupletDetailTag, entryKeys, buffer.data(), 30, kScriboHostVersion), 0);
  EXPECT_EQ(SX_DeleteEData(kTupletDetailTag, entryKeys, kScriboHostVersion), 1);
  EXPECT_EQ(SX_DeleteEData(kTupletDetailTag, entryKeys, kScriboHostVersion), 0);

  // Callers stamped before the other records existed save without translation.
  std::vector<unsigned char> distance(76);
  SX_SaveEData(FourCharTag("pfDP"), prefKeys, distance.data(), 76, 0x07FFFFFF);
  std::vector<TestHostCall> saves = host.LogOf("SX_SaveEData");
  ASSERT_EQ(saves.size(), 1u);
  EXPECT_EQ(saves[0].tag, FourCharTag("pfDP"));
  EXPECT_EQ(saves[0].version, 0x07FFFFFFu);
  for (const TestHostCall& call : host.Log())
    EXPECT_EQ(call.version, call.tag == FourCharTag("pfDP") ? 0x07FFFFFFu : kScriboHostVersion);
}

TEST(EntryDetails, MappedPreferenceIsARunOfOtherRecords) {
  TestHost& host = TestHost::Fresh();
  for (uint16_t i = 0; i < 9; ++i)
    if (i != 3) // "ot78" 3 is missing: it reads as zeros
      host.PutOther("ot78", kOtherRecordDocumentOwner, i,
                    {i, uint16_t(i + 100), 0, 0, 0, uint16_t(0xF000 | i)});
  unsigned short keys[] = {1};

  uint32_t size = 5;
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfTX"), keys, nullptr, &size, kScriboHostVersion), 1);
  EXPECT_EQ(size, 9 * 12u);
  EXPECT_EQ(host.LogSize(), 0);

  std::vector<uint16_t> text(9 * 6 + 1, 0xCCCC);
  size = 9 * 12 - 1;
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfTX"), keys, text.data(), &size, kScriboHostVersion), 0);
  EXPECT_EQ(size, 9 * 12u - 1);
  EXPECT_EQ(text[0], 0xCCCC);
  EXPECT_EQ(host.LogSize(), 0);

  size = static_cast<uint32_t>(text.size() * 2);
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfTX"), keys, text.data(), &size, kScriboHostVersion), 1);
  EXPECT_EQ(size, 9 * 12u);
  for (uint16_t i = 0; i < 9; ++i) {
    const uint16_t* words = &text[i * 6];
    if (i == 3) {
      EXPECT_EQ(std::count(words, words + 6, 0), 6);
      continue;
    }
    EXPECT_EQ(words[0], i);
    EXPECT_EQ(words[1], i + 100);
    EXPECT_EQ(words[5], 0xF000 | i);
  }
  EXPECT_EQ(text[9 * 6], 0xCCCC);
  std::vector<TestHostCall> loads = host.LogOf("SX_LoadEData");
  ASSERT_EQ(loads.size(), 9u);
  for (uint16_t i = 0; i < 9; ++i) {
    EXPECT_EQ(loads[i].tag, FourCharTag("ot78"));
    EXPECT_EQ(loads[i].key0, kOtherRecordDocumentOwner);
    EXPECT_EQ(loads[i].key1, i);
    EXPECT_EQ(loads[i].size, 12u);
  }

  // Saving writes each record of the run from its 12 bytes of the buffer.
  text[2 * 6 + 4] = 0x4242;
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfTX"), keys, text.data(), 9 * 12 - 1, kScriboHostVersion),
            0);
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfTX"), keys, nullptr, 9 * 12, kScriboHostVersion), 0);
  EXPECT_EQ(host.LogOf("SX_SaveEData").size(), 0u);
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfTX"), keys, text.data(), 9 * 12, kScriboHostVersion), 1);
  EXPECT_EQ(host.LogOf("SX_SaveEData").size(), 9u);
  EXPECT_EQ(host.Other("ot78", kOtherRecordDocumentOwner, 2)[4], 0x4242);

  // Numbered runs start at number - 1; numbers out of range never reach the host.
  host.PutOther("ot40", kOtherRecordDocumentOwner, 127, {1, 2, 3, 4, 5, 6});
  std::array<uint16_t, 6> staffName{};
  size = 12;
  unsigned short last[] = {128};
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfSN"), last, staffName.data(), &size, kScriboHostVersion),
            1);
  EXPECT_EQ(staffName, (std::array<uint16_t, 6>{1, 2, 3, 4, 5, 6}));
  const int callsBefore = host.LogSize();
  unsigned short outside[] = {129};
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfSN"), outside, staffName.data(), &size, kScriboHostVersion),
            0);
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfSN"), outside, staffName.data(), 12, kScriboHostVersion),
            0);
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfSN"), nullptr, staffName.data(), &size, kScriboHostVersion),
            0);
  EXPECT_EQ(host.LogSize(), callsBefore);
}

} // namespace
