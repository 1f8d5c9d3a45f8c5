#include <gtest/gtest.h>

#include <dlfcn.h>

#include <vector>

#include "EntryBuilders.h"
#include "SDKCounters.h"
#include "TestHost.h"

namespace {

TEST(Frames, LoadsAndFreesKeepTheCounter) {
  TestHost& host = TestHost::Fresh();
  const int32_t before = LoadedTGFCounter;
  EXTGF2005a* first = SX_LoadTGF(0, 1, 1, 0, 1, kScriboHostVersion);
  EXTGF2005a* second = SX_LoadTGF(0, 1, 2, 0, 1, kScriboHostVersion);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(SX_FreeTGF(first, kScriboHostVersion), 1);
  EXPECT_EQ(LoadedTGFCounter, before + 1);

  // A load the host refuses still counts; so does the free that matches it.
  EXPECT_EQ(SX_LoadTGF(0, 1, 0, 0, 1, kScriboHostVersion), nullptr);
  EXPECT_EQ(LoadedTGFCounter, before + 2);
  SX_FreeTGF(nullptr, kScriboHostVersion);
  SX_FreeTGF(second, kScriboHostVersion);
  EXPECT_EQ(LoadedTGFCounter, before);
  EXPECT_EQ(host.Calls("SX_LoadTGF"), 3);
  EXPECT_EQ(host.Calls("SX_FreeTGF"), 3);
}

TEST(Frames, HostSeesCleanedEntriesOnInsertSaveDeleteAndReduce) {
  TestHost& host = TestHost::Fresh();
  std::vector<EXENTRY> entries = {NoteEntry({0, 0}), RestEntry(), NoteEntry({5, 5, 3})};
  EXTGF2005a frame{};
  frame.entries = entries.data();
  frame.entryCount = 3;
  for (const FrameCall& call : kCleaningFrameCalls) {
    entries[0] = NoteEntry({9, 9});
    call.call(&frame);
    std::vector<EXENTRY> seen = host.SeenEntries(call.function);
    ASSERT_EQ(seen.size(), 3u) << call.function;
    EXPECT_EQ(NoteIDs(seen[0]), (std::vector<int16_t>{10, 9})) << call.function;
    EXPECT_EQ(uint32_t{seen[1].notes[0].noteFlags} & 0x80000000u, 0x80000000u); // placeholder
    EXPECT_EQ(NoteIDs(seen[2]), (std::vector<int16_t>{6, 5, 3})) << call.function;
  }
}

// Plug-in bundles export the counters by name; the executable here is linked the same way.
TEST(Frames, CountersAreExportedAsCData) {
  void* self = dlopen(nullptr, RTLD_NOW);
  ASSERT_NE(self, nullptr);
  EXPECT_EQ(dlsym(self, "LoadedTGFCounter"), static_cast<void*>(&LoadedTGFCounter));
  EXPECT_EQ(dlsym(self, "CanAddNoteRecordToRests"), static_cast<void*>(&CanAddNoteRecordToRests));
  EXPECT_EQ(dlsym(self, "ScriboEditDepth"), static_cast<void*>(&ScriboEditDepth));
  EXPECT_EQ(dlsym(self, "MassEditDepth"), static_cast<void*>(&MassEditDepth));
  EXPECT_TRUE(CanAddNoteRecordToRests);
  dlclose(self);
}

} // namespace
