#include <gtest/gtest.h>

#include <dlfcn.h>

#include <vector>

#include "EntryBuilders.h"
#include "HostFunctions.h"
#include "SDKCounters.h"
#include "TestHost.h"

namespace {

std::vector<EXENTRY> Seen(TestHost& host, const char* function) {
  std::vector<EXENTRY> entries(16);
  entries.resize(host.SeenEntries(function, entries.data(), 16));
  return entries;
}

TEST(Frames, LoadsAndFreesKeepTheCounter) {
  TestHost& host = TestHost::Fresh();
  std::vector<EXENTRY> entries = {NoteEntry({1}), RestEntry()};
  host.SetFrame(entries.data(), 2);
  const int32_t before = LoadedTGFCounter;

  EXTGF2005a* first = SX_LoadTGF(0, 1, 1, 0, 1, kScriboHostVersion);
  EXTGF2005a* second = SX_LoadTGF(0, 1, 2, 0, 1, kScriboHostVersion);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(int{first->entryCount}, 2);
  EXPECT_EQ(SX_FreeTGF(first, kScriboHostVersion), 1);
  EXPECT_EQ(LoadedTGFCounter, before + 1);

  // A load the host refuses still counts; so does the free that matches it.
  host.SetFrame(nullptr, -1);
  EXPECT_EQ(SX_LoadTGF(0, 1, 3, 0, 1, kScriboHostVersion), nullptr);
  EXPECT_EQ(LoadedTGFCounter, before + 2);
  SX_FreeTGF(nullptr, kScriboHostVersion);
  SX_FreeTGF(second, kScriboHostVersion);
  EXPECT_EQ(LoadedTGFCounter, before);
  EXPECT_EQ(host.LiveFrames(), 0);
  EXPECT_EQ(host.Calls("SX_LoadTGF"), 3);
  EXPECT_EQ(host.Calls("SX_FreeTGF"), 3);
}

TEST(Frames, HostSeesCleanedEntriesOnInsertDeleteSaveAndReduce) {
  TestHost& host = TestHost::Fresh();
  std::vector<EXENTRY> entries = {NoteEntry({0, 0}), RestEntry(), NoteEntry({5, 5, 3})};
  host.SetFrame(entries.data(), 3);
  EXTGF2005a* frame = SX_LoadTGF(0, 1, 1, 0, 1, kScriboHostVersion);
  ASSERT_NE(frame, nullptr);
  EXENTRY* before = frame->entries;

  ASSERT_EQ(SX_InsertEXENTRY(frame, 1, 2, kScriboHostVersion), 1);
  std::vector<EXENTRY> seen = Seen(host, "SX_InsertEXENTRY");
  ASSERT_EQ(seen.size(), 3u);
  EXPECT_EQ(NoteIDs(seen[0]), (std::vector<int16_t>{1, 2}));
  EXPECT_EQ(NoteCount(seen[1]), 1);
  EXPECT_EQ(NoteFlags(seen[1], 0), 0x80000000u);
  EXPECT_EQ(NoteIDs(seen[2]), (std::vector<int16_t>{6, 5, 3}));
  // The host moved the array: the frame must be read again.
  EXENTRY* after = frame->entries;
  EXPECT_NE(after, before);
  ASSERT_EQ(int{frame->entryCount}, 5);
  EXPECT_EQ(NoteCount(frame->entries[1]), 0);
  EXPECT_EQ(NoteCount(frame->entries[3]), 1);

  // The caller fills one new slot with copies carrying twin identifiers, leaves the other empty.
  frame->entries[1] = NoteEntry({2, 2});
  ASSERT_EQ(SX_SaveTGF(frame, kScriboHostVersion), 1);
  seen = Seen(host, "SX_SaveTGF");
  ASSERT_EQ(seen.size(), 5u);
  EXPECT_EQ(NoteIDs(seen[1]), (std::vector<int16_t>{3, 2}));
  EXPECT_EQ(EntryFlags(seen[2]), kEntryRestPlaceholder);
  EXPECT_EQ(NoteIDs(seen[3]), (std::vector<int16_t>{1})); // the placeholder's second clean-up

  frame->entries[0] = NoteEntry({9, 9});
  ASSERT_EQ(SX_DeleteEXENTRY(frame, 2, 1, kScriboHostVersion), 1);
  EXPECT_EQ(NoteIDs(Seen(host, "SX_DeleteEXENTRY")[0]), (std::vector<int16_t>{10, 9}));
  EXPECT_EQ(int{frame->entryCount}, 4);

  frame->entries[0] = NoteEntry({0});
  SX_ReduceEntries(frame, kScriboHostVersion);
  EXPECT_EQ(NoteIDs(Seen(host, "SX_ReduceEntries")[0]), (std::vector<int16_t>{1}));

  SX_FreeTGF(frame, kScriboHostVersion);
  EXPECT_EQ(host.LiveFrames(), 0);
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
