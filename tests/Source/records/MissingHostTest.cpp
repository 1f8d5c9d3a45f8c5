// Against a host engine that exports none of the functions: every wrapper takes its fallback,
// and what the SDK does around the calls still happens.
#include <gtest/gtest.h>

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

TEST_F(MissingHost, CountersCleaningAndTablesStillWork) {
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

  // A table load still succeeds: its fields hold what six zero words give.
  unsigned short keys[] = {0};
  std::vector<uint16_t> misc(53, 0xCCCC);
  uint32_t size = 104;
  EXPECT_EQ(SX_LoadEData(FourCharTag("pfMS"), keys, misc.data(), &size, kScriboHostVersion), 1);
  for (int i = 0; i < 52; ++i)
    EXPECT_EQ(misc[i], i == 6 ? 1 : 0) << "offset " << i * 2; // offset 12 is an inverted flag
  EXPECT_EQ(misc[52], 0xCCCC);
  EXPECT_EQ(SX_SaveEData(FourCharTag("pfMS"), keys, misc.data(), 104, kScriboHostVersion), 1);
}

} // namespace
