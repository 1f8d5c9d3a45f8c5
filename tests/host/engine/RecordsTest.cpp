// Records through the exported host functions: size queries and buffers too small, writes that
// would break a layout or have no owner, entry details created at the next free index, walked in
// key order and deleted. The SDK's accessors read the engine's specs in tests/util.
#include <cstring>
#include <vector>

#include "EngineTestSupport.h"

using namespace enginetest;
using namespace scribo::engine;

namespace {

class RecordsTest : public EngineTest {};

TEST_F(RecordsTest, LoadsAnswerSizeQueriesAndWritesKeepLayoutsAndOwners) {
  uint16_t prefKey[1] = {0};
  uint32_t size = 0;
  EXPECT_EQ(SX_LoadEData(kTupletPrefsTag, prefKey, nullptr, &size, kStamp), 1);
  EXPECT_EQ(size, sizeof(EDTTuplet));
  uint8_t buffer[40];
  std::memset(buffer, 0xEE, sizeof buffer);
  size = 29;
  EXPECT_EQ(SX_LoadEData(kTupletPrefsTag, prefKey, buffer, &size, kStamp), 0);
  EXPECT_EQ(size, 29u);
  EXPECT_EQ(buffer[0], 0xEE);
  size = 40;
  EXPECT_EQ(SX_LoadEData(kTupletPrefsTag, prefKey, buffer, &size, kStamp), 1);
  EXPECT_EQ(size, 30u);
  EXPECT_EQ(buffer[30], 0xEE);
  EXPECT_EQ(SX_SaveEData(kTupletPrefsTag, prefKey, buffer, 20, kStamp), 0);
  EXPECT_EQ(SX_SaveEData(kTupletPrefsTag, prefKey, buffer, 30, kStamp), 1);

  // A measure spec reaches the document; one for a measure that does not exist is refused.
  doc().AddMeasure();
  EDTMeasureSpec2014 spec{};
  spec.timeSigBeats = 5;
  spec.timeSigBeatValue = 512;
  uint16_t measure1[2] = {1, 0}, measure2[2] = {2, 0};
  EXPECT_EQ(SX_SaveEData(kTagMeasureSpec, measure1, &spec, sizeof spec, kStamp), 1);
  EXPECT_EQ(doc().TimeSig(1), (TimeSignature{5, 512}));
  EXPECT_EQ(SX_SaveEData(kTagMeasureSpec, measure2, &spec, sizeof spec, kStamp), 0);

  // Other records: 12 bytes, {owner, index}.
  uint16_t otherKey[2] = {kOtherRecordDocumentOwner, 3};
  uint8_t other[kOtherRecordSize] = {42}, back[kOtherRecordSize] = {};
  EXPECT_EQ(SX_SaveEData(FourCharTag("ot21"), otherKey, other, 11, kStamp), 0);
  EXPECT_EQ(SX_SaveEData(FourCharTag("ot21"), otherKey, other, 12, kStamp), 1);
  size = sizeof back;
  EXPECT_EQ(SX_LoadEData(FourCharTag("ot21"), otherKey, back, &size, kStamp), 1);
  EXPECT_EQ(back[0], 42);
}

TEST_F(RecordsTest, DetailsTakeTheNextFreeIndexAndWalkInKeyOrder) {
  doc().AddStaff();
  doc().AddMeasure();
  uint32_t first = doc().AddEntry({1, 1, 0}, Note(1024));
  uint32_t second = doc().AddEntry({1, 1, 0}, Note(1024));
  EDTTuplet triplet{3, 512, 2, 512, {}};
  auto create = [&](uint32_t entry, uint16_t index) {
    uint16_t key[3] = {uint16_t(entry), uint16_t(entry >> 16), index};
    int result = SX_CreateEData(kTupletDetailTag, key, &triplet, sizeof triplet, kStamp);
    return std::pair{result, key[2]};
  };
  EXPECT_EQ(create(second, kNextFreeDetailIndex), (std::pair{1, uint16_t(0)}));
  EXPECT_EQ(create(second, kNextFreeDetailIndex), (std::pair{1, uint16_t(1)}));
  EXPECT_EQ(create(first, kNextFreeDetailIndex), (std::pair{1, uint16_t(0)}));
  EXPECT_EQ(create(first, 0).first, 0);                     // taken
  EXPECT_EQ(create(0x7777, kNextFreeDetailIndex).first, 0); // no such entry

  uint16_t key[3] = {0, 0, 0};
  EDTTuplet read{};
  std::vector<std::pair<uint32_t, uint16_t>> walked;
  while (SX_NextEData(kTupletDetailTag, key, &read, sizeof read, kStamp))
    walked.emplace_back(uint32_t(key[0]) | (uint32_t(key[1]) << 16), key[2]);
  EXPECT_EQ(walked,
            (std::vector<std::pair<uint32_t, uint16_t>>{{first, 0}, {second, 0}, {second, 1}}));
  EXPECT_EQ(read.referenceNumber, 2);
  EXPECT_EQ(SX_PreviousEData(kTupletDetailTag, key, nullptr, 0, kStamp), 1);
  EXPECT_EQ(key[2], 0);
  // A buffer too small for the neighbour leaves the key where it was.
  EXPECT_EQ(SX_PreviousEData(kTupletDetailTag, key, &read, 10, kStamp), 0);
  EXPECT_EQ(key[0], uint16_t(second));
  EXPECT_EQ(SX_DeleteEData(kTupletDetailTag, key, kStamp), 1);
  EXPECT_EQ(SX_DeleteEData(kTupletDetailTag, key, kStamp), 0);
  EXPECT_EQ(doc().EntryDetails(second).size(), 1u);
}

} // namespace
