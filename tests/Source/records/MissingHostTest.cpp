// Against a host engine that exports none of the functions: every wrapper takes its fallback,
// and what the SDK does around the calls still happens.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "EntryBuilders.h"
#include "HostFunctions.h"
#include "RecordTags.h"
#include "SDKCounters.h"
#include "TestSupport.h"
#include "scribopdk.h"

namespace {

class MissingHost : public testing::Test {
protected:
  static void SetUpTestSuite() {
    static void* image = scribotest::LoadBundle(SCRIBO_TEST_HOST_BUNDLE, RTLD_NOW | RTLD_GLOBAL);
    ASSERT_NE(image, nullptr);
    ASSERT_EQ(InitializeGlobals(), 0);
    ASSERT_NE(dlsym(image, "TestHost_ExportsNoHostFunction"), nullptr);
  }
};

TEST_F(MissingHost, FrameCallsStillCountAndClean) {
  const int32_t before = LoadedTGFCounter;
  EXPECT_EQ(SX_LoadTGF(0, 1, 1, 0, 1, kScriboHostVersion), nullptr);
  EXPECT_EQ(SX_LoadTGF(0, 1, 2, 0, 1, kScriboHostVersion), nullptr);
  EXPECT_EQ(LoadedTGFCounter, before + 2);
  EXPECT_EQ(SX_FreeTGF(nullptr, kScriboHostVersion), 0);
  EXPECT_EQ(LoadedTGFCounter, before + 1);

  std::vector<EXENTRY> entries = {NoteEntry({0, 0}), RestEntry()};
  EXTGF2005a frame{};
  frame.entries = entries.data();
  frame.entryCount = 2;
  EXPECT_EQ(SX_InsertEXENTRY(&frame, 0, 1, kScriboHostVersion), 0);
  EXPECT_EQ(int{frame.entryCount}, 2);
  EXPECT_EQ(NoteIDs(entries[0]), (std::vector<int16_t>{1, 2}));
  EXPECT_EQ(NoteFlags(entries[1], 0), 0x80000000u);

  entries[0] = NoteEntry({4, 4});
  EXPECT_EQ(SX_SaveTGF(&frame, kScriboHostVersion), 0);
  EXPECT_EQ(NoteIDs(entries[0]), (std::vector<int16_t>{5, 4}));
  entries[0] = NoteEntry({0});
  EXPECT_EQ(SX_DeleteEXENTRY(&frame, 0, 1, kScriboHostVersion), 0);
  EXPECT_EQ(NoteIDs(entries[0]), (std::vector<int16_t>{1}));
  entries[0] = NoteEntry({3, 3});
  SX_ReduceEntries(&frame, kScriboHostVersion);
  EXPECT_EQ(NoteIDs(entries[0]), (std::vector<int16_t>{4, 3}));
  EXPECT_EQ(NoteFlags(entries[1], 0), 0x80010000u);
}

TEST_F(MissingHost, EditBracketsStillCount) {
  ASSERT_EQ(ScriboEditDepth, 0);
  EXPECT_EQ(SX_StartScriboEdit("edit", kScriboHostVersion), 0);
  EXPECT_EQ(ScriboEditDepth, 1);
  EXPECT_EQ(SX_EndScriboEdit(kScriboHostVersion), 0);
  EXPECT_EQ(ScriboEditDepth, 0);
  EXPECT_EQ(SX_EndScriboEdit(kScriboHostVersion), 1);

  const int32_t before = MassEditDepth;
  EXPECT_EQ(SX_StartMassEdit(nullptr, 10, kScriboHostVersion), nullptr);
  EXPECT_EQ(MassEditDepth, before + 1);
  SX_EndMassEdit(nullptr, 0, kScriboHostVersion);
  EXPECT_EQ(MassEditDepth, before);
}

TEST_F(MissingHost, RecordsFallBackAndMissingOtherRecordsReadAsZeros) {
  unsigned short keys[] = {0};
  uint32_t size = 30;
  std::vector<unsigned char> buffer(260, 0xCC);
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfTP"), keys, buffer.data(), &size, kScriboHostVersion), 0);
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfTP"), keys, buffer.data(), 30, kScriboHostVersion), 0);
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfDP"), keys, buffer.data(), 76, 0x07FFFFFF), 0);

  // The fret-instrument record is cleared, and nothing loaded it.
  size = kFretInstrumentRecordSize;
  EXPECT_EQ(SX_LoadEData(kFretInstrumentTag, keys, buffer.data(), &size, kScriboHostVersion), 0);
  EXPECT_EQ(std::count(buffer.begin(), buffer.begin() + kFretInstrumentRecordSize, 0),
            static_cast<long>(kFretInstrumentRecordSize));

  // A table load still succeeds: its fields hold what six zero words give.
  std::fill(buffer.begin(), buffer.end(), 0xCC);
  size = 104;
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfMS"), keys, buffer.data(), &size, kScriboHostVersion), 1);
  for (uint32_t offset = 0; offset < 104; offset += 2) {
    uint16_t field;
    std::memcpy(&field, buffer.data() + offset, 2);
    EXPECT_EQ(field, offset == 12 ? 1 : 0) << "offset " << offset; // 12 is an inverted flag
  }
  EXPECT_EQ(buffer[104], 0xCC);
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfMS"), keys, buffer.data(), 104, kScriboHostVersion), 1);

  // So does a run of other records.
  std::fill(buffer.begin(), buffer.end(), 0xCC);
  size = 36;
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfSP"), keys, buffer.data(), &size, kScriboHostVersion), 1);
  EXPECT_EQ(std::count(buffer.begin(), buffer.begin() + 36, 0), 36);
  EXPECT_EQ(buffer[36], 0xCC);
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfSP"), keys, buffer.data(), 36, kScriboHostVersion), 1);

  unsigned short detailKeys[] = {1, 0};
  EXPECT_EQ(SX_CreateEData(0x45035450, detailKeys, buffer.data(), 30, kScriboHostVersion), 0);
  EXPECT_EQ(SX_DeleteEData(0x45035450, detailKeys, kScriboHostVersion), 0);
}

} // namespace
