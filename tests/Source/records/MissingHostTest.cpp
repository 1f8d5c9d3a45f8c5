// Against a host engine that exports none of the functions: every wrapper takes its fallback,
// and what the SDK does around the calls still happens.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "EntryBuilders.h"
#include "RecordTags.h"
#include "SDKCounters.h"
#include "TestSupport.h"
#include "scribopdk.h"

namespace {

class MissingHost : public testing::Test {
protected:
  static void SetUpTestSuite() {
    static void* image = scribotest::LoadBundle(SCRIBO_TEST_HOST_BUNDLE, RTLD_NOW | RTLD_GLOBAL);
    ASSERT_EQ(InitializeGlobals(), 0);
    ASSERT_NE(dlsym(image, "TestHost_ExportsNoHostFunction"), nullptr);
  }
};

TEST_F(MissingHost, FramesAndEditsStillCountAndClean) {
  const int32_t frames = LoadedTGFCounter;
  EXPECT_EQ(SX_LoadTGF(0, 1, 1, 0, 1, kScriboHostVersion), nullptr);
  EXPECT_EQ(LoadedTGFCounter, frames + 1);
  SX_FreeTGF(nullptr, kScriboHostVersion);
  EXPECT_EQ(LoadedTGFCounter, frames);

  std::vector<EXENTRY> entries = {NoteEntry({0, 0}), RestEntry()};
  EXTGF2005a frame{};
  frame.entries = entries.data();
  frame.entryCount = 2;
  for (const FrameCall& call : kCleaningFrameCalls) {
    entries[0] = NoteEntry({4, 4});
    call.call(&frame);
    EXPECT_EQ(NoteIDs(entries[0]), (std::vector<int16_t>{5, 4})) << call.function;
  }
  EXPECT_EQ(int{frame.entryCount}, 2);
  EXPECT_EQ(uint32_t{entries[1].notes[0].noteFlags}, 0x80010000u); // a numbered placeholder

  ASSERT_EQ(ScriboEditDepth, 0);
  SX_StartScriboEdit("edit", kScriboHostVersion);
  EXPECT_EQ(ScriboEditDepth, 1);
  EXPECT_EQ(SX_EndScriboEdit(kScriboHostVersion), 0); // the open edit went to the fallback
  EXPECT_EQ(ScriboEditDepth, 0);
}

// A table load still succeeds: its fields hold what six zero words give.
TEST_F(MissingHost, MissingOtherRecordsReadAsZeros) {
  unsigned short keys[] = {0};
  std::vector<unsigned char> buffer(106, 0xCC);
  uint32_t size = 104;
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfMS"), keys, buffer.data(), &size, kScriboHostVersion), 1);
  for (uint32_t offset = 0; offset < 104; offset += 2) {
    uint16_t field;
    std::memcpy(&field, buffer.data() + offset, 2);
    EXPECT_EQ(field, offset == 12 ? 1 : 0) << "offset " << offset; // 12 is an inverted flag
  }
  EXPECT_EQ(buffer[104], 0xCC);
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfMS"), keys, buffer.data(), 104, kScriboHostVersion), 1);
}

} // namespace
