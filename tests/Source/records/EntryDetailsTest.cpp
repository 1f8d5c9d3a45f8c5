#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <tuple>
#include <vector>

#include "HostFunctions.h"
#include "TestHost.h"

namespace {

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
  std::vector<unsigned char> buffer(kFretInstrumentRecordSize + 4);
  uint32_t size = static_cast<uint32_t>(buffer.size());
  auto load = [&] {
    std::fill(buffer.begin(), buffer.end(), 0xCC);
    return SX_LoadEData(kFretInstrumentTag, keys, buffer.data(), &size, kScriboHostVersion);
  };

  // A successful host load is asked a second time, and its answer is the result.
  EXPECT_EQ(load(), 1);
  EXPECT_EQ(host.Calls("SX_LoadEData"), 2);
  EXPECT_EQ(size, kFretInstrumentRecordSize);
  EXPECT_EQ(std::memcmp(buffer.data(), stored.data(), stored.size()), 0);
  EXPECT_EQ(buffer[kFretInstrumentRecordSize], 0xCC); // past the record: untouched

  // A host that fills part of the record and reports failure: still loaded.
  host.FailLoads(kFretInstrumentTag, 10);
  EXPECT_EQ(load(), 1);
  EXPECT_EQ(host.Calls("SX_LoadEData"), 3);
  EXPECT_EQ(buffer[9], 0xAB);
  EXPECT_EQ(buffer[10], 0); // cleared before the host was asked

  // A host that writes nothing and fails: not loaded, and the record is left cleared.
  host.FailLoads(kFretInstrumentTag, 0);
  EXPECT_EQ(load(), 0);
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

TEST(EntryDetails, UnmappedRecordsAndOlderCallersGoStraightToTheHost) {
  TestHost& host = TestHost::Fresh();
  const std::vector<unsigned char> tuplet = Pattern(30, 40);
  host.PutRecord(FourCharTag("pfTP"), 0, 0, tuplet.data(), 30);
  unsigned short keys[] = {0};
  uint32_t size = 0;
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfTP"), keys, nullptr, &size, kScriboHostVersion), 1);
  EXPECT_EQ(size, 30u); // the host answered the size query itself
  std::vector<unsigned char> buffer(30);
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfTP"), keys, buffer.data(), &size, kScriboHostVersion), 1);
  EXPECT_EQ(buffer, tuplet);

  // Callers stamped before the other records existed save without translation.
  std::vector<unsigned char> distance(76);
  SX_SaveEData(FourCharTag("pfDP"), keys, distance.data(), 76, 0x07FFFFFF);
  std::vector<TestHostCall> saves = host.Log("SX_SaveEData");
  ASSERT_EQ(saves.size(), 1u);
  EXPECT_EQ(saves[0].tag, FourCharTag("pfDP"));
  for (const TestHostCall& call : host.Log())
    EXPECT_EQ(call.version, call.tag == FourCharTag("pfDP") ? 0x07FFFFFFu : kScriboHostVersion);
}

TEST(EntryDetails, MappedPreferenceIsARunOfOtherRecords) {
  TestHost& host = TestHost::Fresh();
  auto words = [](uint16_t i) {
    return std::array<uint16_t, 6>{i, uint16_t(i + 100), 0, 0, 0, uint16_t(0xF000 | i)};
  };
  for (uint16_t i = 0; i < 9; ++i)
    if (i != 3) // "ot78" 3 is missing: it reads as zeros
      host.PutOther("ot78", i, words(i));
  const uint32_t tag = FourCharTag("pfTX");
  unsigned short keys[] = {1};

  // Neither the size query nor a load into too small a buffer asks the host.
  uint32_t size = 5;
  EXPECT_EQ(SX_LoadEData(tag, keys, nullptr, &size, kScriboHostVersion), 1);
  EXPECT_EQ(size, 9 * 12u);
  std::vector<uint16_t> text(9 * 6 + 1, 0xCCCC);
  size = 9 * 12 - 1;
  EXPECT_EQ(SX_LoadEData(tag, keys, text.data(), &size, kScriboHostVersion), 0);
  EXPECT_EQ(size, 9 * 12u - 1);
  EXPECT_EQ(text[0], 0xCCCC);
  EXPECT_TRUE(host.Log().empty());

  size = static_cast<uint32_t>(text.size() * 2);
  EXPECT_EQ(SX_LoadEData(tag, keys, text.data(), &size, kScriboHostVersion), 1);
  EXPECT_EQ(size, 9 * 12u);
  std::vector<TestHostCall> loads = host.Log("SX_LoadEData");
  ASSERT_EQ(loads.size(), 9u);
  for (uint16_t i = 0; i < 9; ++i) {
    std::array<uint16_t, 6> loaded;
    std::copy_n(text.begin() + i * 6, 6, loaded.begin());
    EXPECT_EQ(loaded, (i == 3 ? std::array<uint16_t, 6>{} : words(i))) << "record " << i;
    EXPECT_EQ(std::tie(loads[i].tag, loads[i].key0, loads[i].key1, loads[i].size),
              std::make_tuple(FourCharTag("ot78"), kOtherRecordDocumentOwner, i, 12u));
  }
  EXPECT_EQ(text[9 * 6], 0xCCCC);

  // Saving writes each record of the run from its 12 bytes of the buffer.
  text[2 * 6 + 4] = 0x4242;
  EXPECT_EQ(SX_SaveEData(tag, keys, text.data(), 9 * 12 - 1, kScriboHostVersion), 0);
  EXPECT_EQ(SX_SaveEData(tag, keys, nullptr, 9 * 12, kScriboHostVersion), 0);
  EXPECT_EQ(host.Calls("SX_SaveEData"), 0);
  EXPECT_EQ(SX_SaveEData(tag, keys, text.data(), 9 * 12, kScriboHostVersion), 1);
  EXPECT_EQ(host.Calls("SX_SaveEData"), 9);
  EXPECT_EQ(host.Other("ot78", 2)[4], 0x4242);

  // Numbered runs start at number - 1; numbers out of range never reach the host.
  host.PutOther("ot40", 127, {1, 2, 3, 4, 5, 6});
  std::array<uint16_t, 6> staffName{};
  size = 12;
  unsigned short last[] = {128}, outside[] = {129};
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfSN"), last, staffName.data(), &size, kScriboHostVersion),
            1);
  EXPECT_EQ(staffName, (std::array<uint16_t, 6>{1, 2, 3, 4, 5, 6}));
  const size_t callsBefore = host.Log().size();
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfSN"), outside, staffName.data(), &size, kScriboHostVersion),
            0);
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfSN"), outside, staffName.data(), 12, kScriboHostVersion),
            0);
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfSN"), nullptr, staffName.data(), &size, kScriboHostVersion),
            0);
  EXPECT_EQ(host.Log().size(), callsBefore);

  // Page format 0 is the score's table; from number 1 on, a run of four "ot77" records.
  unsigned short parts[] = {1}, otherParts[] = {2};
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfPF"), parts, nullptr, &size, kScriboHostVersion), 1);
  EXPECT_EQ(size, 48u);
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfPF"), otherParts, nullptr, &size, kScriboHostVersion), 0);
}

} // namespace
