#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "CleanTGF.h"
#include "EntryBuilders.h"
#include "SDKCounters.h"

namespace {

void Clean(std::vector<EXENTRY>& entries) {
  EXTGF2005a frame{};
  frame.entries = entries.data();
  frame.entryCount = static_cast<int16_t>(entries.size());
  CleanTGF(&frame);
}

bool NotesAreZeroFrom(const EXENTRY& entry, int first) {
  static const EXNOTE kZero{};
  for (int j = first; j < kMaxNotesPerEntry; ++j)
    if (std::memcmp(&entry.notes[j], &kZero, sizeof kZero) != 0)
      return false;
  return true;
}

TEST(CleanTGF, RenumbersMissingAndTwinIdentifiersAndTouchesNothingElse) {
  EXENTRY twins = NoteEntry({0, 0});
  twins.entryNumber = 0xDEADBEEF;
  twins.hostWord6 = 0x1234;
  twins.flags2 = 0xFFFF;
  twins.position = 3072;
  twins.actualDuration = 683;
  twins.hostTrailer[0] = 0x77;
  EXENTRY three = NoteEntry({5, 5, 3});
  for (int j = 0; j < kMaxNotesPerEntry; ++j) {
    three.notes[j].hostData[0] = 0x55;
    if (j >= 3) { // stale records behind the count
      three.notes[j].noteID = 99;
      three.notes[j].noteFlags = 0xFFFFFFFF;
    }
  }
  std::vector<EXENTRY> entries = {twins, three, NoteEntry({-4, 0}), NoteEntry({37}, 0x8E1F0000),
                                  NoteEntry({7, 3, 7, 7})};
  Clean(entries);

  EXPECT_EQ(NoteIDs(entries[0]), (std::vector<int16_t>{1, 2}));
  EXPECT_EQ(NoteIDs(entries[1]), (std::vector<int16_t>{6, 5, 3})); // the earlier twin moves
  EXPECT_EQ(NoteIDs(entries[2]), (std::vector<int16_t>{-4, 1}));   // negatives do not raise max
  EXPECT_EQ(NoteIDs(entries[4]), (std::vector<int16_t>{8, 3, 9, 7}));

  // Bits 16..20 repeat the identifier's low five bits; every other bit stays.
  EXPECT_EQ(uint32_t{entries[3].notes[0].noteFlags}, 0x8E050000u);
  EXPECT_EQ(uint32_t{entries[2].notes[0].noteFlags}, 0x001C0000u); // -4 is ...11100
  EXPECT_EQ(uint32_t{entries[1].notes[0].noteFlags}, 0x00060000u);

  // Unused note records are cleared; used ones keep their host data.
  EXPECT_EQ(int{entries[1].noteCount}, 3);
  EXPECT_EQ(entries[1].notes[2].hostData[0], 0x55);
  EXPECT_TRUE(NotesAreZeroFrom(entries[1], 3));

  // Around the notes, the entry is as it was.
  const auto* before = reinterpret_cast<const char*>(&twins);
  const auto* after = reinterpret_cast<const char*>(entries.data());
  EXPECT_EQ(std::memcmp(after, before, offsetof(EXENTRY, noteCount) + 2), 0);
  const size_t tail = offsetof(EXENTRY, position);
  EXPECT_EQ(std::memcmp(after + tail, before + tail, sizeof(EXENTRY) - tail), 0);
}

// All twelve note records are in use: none is cleared.
TEST(CleanTGF, KeepsAFullEntry) {
  std::vector<EXENTRY> entries = {NoteEntry({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})};
  for (int j = 0; j < kMaxNotesPerEntry; ++j)
    entries[0].notes[j].hostData[3] = static_cast<uint8_t>(j + 1);
  Clean(entries);
  EXPECT_EQ(int{entries[0].noteCount}, 12);
  for (int j = 0; j < kMaxNotesPerEntry; ++j) {
    EXPECT_EQ(entries[0].notes[j].hostData[3], j + 1) << "note " << j;
    EXPECT_EQ(uint32_t{entries[0].notes[j].noteFlags}, static_cast<uint32_t>(j + 1) << 16);
  }
}

TEST(CleanTGF, GivesARestOnePlaceholderNote) {
  EXENTRY rest = RestEntry();
  rest.flags = kEntryVoiceTwo;
  rest.notes[0].noteID = 4; // stale data behind a count of 0
  rest.notes[5].noteFlags = 0x12345678;
  std::vector<EXENTRY> entries = {rest};
  Clean(entries);

  EXPECT_EQ(int{entries[0].noteCount}, 1);
  EXPECT_EQ(uint32_t{entries[0].flags}, kEntryVoiceTwo | kEntryRestPlaceholder);
  EXPECT_EQ(int{entries[0].notes[0].noteID}, 0);
  EXPECT_EQ(uint32_t{entries[0].notes[0].noteFlags}, 0x80000000u);
  EXPECT_EQ(std::memcmp(entries[0].notes[0].hostData, "\0\0\0\0", 4), 0);
  EXPECT_TRUE(NotesAreZeroFrom(entries[0], 1));

  // The next clean-up numbers the placeholder like any note and adds nothing.
  Clean(entries);
  EXPECT_EQ(NoteIDs(entries[0]), (std::vector<int16_t>{1}));
  EXPECT_EQ(uint32_t{entries[0].notes[0].noteFlags}, 0x80010000u);
  EXPECT_EQ(uint32_t{entries[0].flags}, kEntryVoiceTwo | kEntryRestPlaceholder);

  // Without the placeholder rule a rest keeps no notes, but its records are still cleared.
  CanAddNoteRecordToRests = false;
  std::vector<EXENTRY> bare = {rest};
  Clean(bare);
  CanAddNoteRecordToRests = true;
  EXPECT_EQ(int{bare[0].noteCount}, 0);
  EXPECT_EQ(uint32_t{bare[0].flags}, kEntryVoiceTwo);
  EXPECT_TRUE(NotesAreZeroFrom(bare[0], 0));

  // A frame that says it has no entries is not read at all.
  EXTGF2005a empty{};
  empty.entries = &rest;
  for (int16_t count : {0, -1}) {
    empty.entryCount = count;
    CleanTGF(&empty);
    EXPECT_EQ(int{rest.noteCount}, 0);
  }
  CleanTGF(nullptr);
}

} // namespace
