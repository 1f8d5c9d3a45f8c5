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

bool NoteIsZero(const EXENTRY& entry, int j) {
  static const EXNOTE kZero{};
  return std::memcmp(&entry.notes[j], &kZero, sizeof kZero) == 0;
}

TEST(CleanTGF, RenumbersMissingAndTwinIdentifiers) {
  std::vector<EXENTRY> entries = {NoteEntry({0, 0}), NoteEntry({5, 5, 3}), NoteEntry({-4, 0}),
                                  NoteEntry({37}, 0x8E1F0000), NoteEntry({7, 3, 7, 7})};
  Clean(entries);

  EXPECT_EQ(NoteIDs(entries[0]), (std::vector<int16_t>{1, 2}));
  EXPECT_EQ(NoteIDs(entries[1]), (std::vector<int16_t>{6, 5, 3})); // the earlier twin moves
  EXPECT_EQ(NoteIDs(entries[2]), (std::vector<int16_t>{-4, 1}));   // negatives do not raise max
  EXPECT_EQ(NoteIDs(entries[4]), (std::vector<int16_t>{8, 3, 9, 7}));

  // Bits 16..20 repeat the identifier's low five bits; every other bit stays.
  EXPECT_EQ(NoteFlags(entries[3], 0), 0x8E050000u);
  EXPECT_EQ(NoteFlags(entries[2], 0), 0x001C0000u); // -4 is ...11100
  EXPECT_EQ(NoteFlags(entries[1], 0), 0x00060000u);
  EXPECT_EQ(EntryFlags(entries[0]), kEntryIsNote);
}

TEST(CleanTGF, ClearsUnusedNoteRecordsButKeepsAFullEntry) {
  EXENTRY three = NoteEntry({1, 2, 3});
  EXENTRY twelve = NoteEntry({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
  for (int j = 3; j < kMaxNotesPerEntry; ++j) {
    three.notes[j].noteID = 99;
    three.notes[j].noteFlags = 0xFFFFFFFF;
    three.notes[j].hostData[0] = 0x55;
  }
  for (int j = 0; j < kMaxNotesPerEntry; ++j)
    twelve.notes[j].hostData[3] = static_cast<uint8_t>(j + 1);
  std::vector<EXENTRY> entries = {three, twelve};
  Clean(entries);

  EXPECT_EQ(NoteCount(entries[0]), 3);
  for (int j = 3; j < kMaxNotesPerEntry; ++j)
    EXPECT_TRUE(NoteIsZero(entries[0], j)) << "note " << j;
  EXPECT_EQ(NoteCount(entries[1]), 12);
  for (int j = 0; j < kMaxNotesPerEntry; ++j) {
    EXPECT_EQ(entries[1].notes[j].hostData[3], j + 1) << "note " << j;
    EXPECT_EQ(NoteFlags(entries[1], j), static_cast<uint32_t>(j + 1) << 16);
  }
  EXPECT_EQ(NoteIDs(entries[1]).back(), 12);
}

TEST(CleanTGF, GivesARestOnePlaceholderNote) {
  EXENTRY rest = RestEntry();
  rest.flags = kEntryVoiceTwo;
  rest.notes[0].noteID = 4; // stale data behind a count of 0
  rest.notes[5].noteFlags = 0x12345678;
  std::vector<EXENTRY> entries = {rest};
  Clean(entries);

  EXPECT_EQ(NoteCount(entries[0]), 1);
  EXPECT_EQ(EntryFlags(entries[0]), kEntryVoiceTwo | kEntryRestPlaceholder);
  EXPECT_EQ(int{entries[0].notes[0].noteID}, 0);
  EXPECT_EQ(NoteFlags(entries[0], 0), 0x80000000u);
  EXPECT_EQ(std::memcmp(entries[0].notes[0].hostData, "\0\0\0\0", 4), 0);
  for (int j = 1; j < kMaxNotesPerEntry; ++j)
    EXPECT_TRUE(NoteIsZero(entries[0], j)) << "note " << j;

  // The next clean-up numbers the placeholder like any note and adds nothing.
  Clean(entries);
  EXPECT_EQ(NoteCount(entries[0]), 1);
  EXPECT_EQ(NoteIDs(entries[0]), (std::vector<int16_t>{1}));
  EXPECT_EQ(NoteFlags(entries[0], 0), 0x80010000u);
  EXPECT_EQ(EntryFlags(entries[0]), kEntryVoiceTwo | kEntryRestPlaceholder);

  // Without the placeholder rule a rest keeps no notes, but its records are still cleared.
  CanAddNoteRecordToRests = false;
  std::vector<EXENTRY> bare = {rest};
  Clean(bare);
  CanAddNoteRecordToRests = true;
  EXPECT_EQ(NoteCount(bare[0]), 0);
  EXPECT_EQ(EntryFlags(bare[0]), kEntryVoiceTwo);
  EXPECT_TRUE(NoteIsZero(bare[0], 0));
  EXPECT_TRUE(NoteIsZero(bare[0], 5));
}

TEST(CleanTGF, TouchesNothingButNotesCountAndPlaceholderBit) {
  EXENTRY entry = NoteEntry({0, 0});
  entry.entryNumber = 0xDEADBEEF;
  entry.hostWord6 = 0x1234;
  entry.flags2 = 0xFFFF;
  entry.position = 3072;
  entry.actualDuration = 683;
  entry.hostTrailer[0] = 0x77;
  std::vector<EXENTRY> entries = {entry};
  Clean(entries);
  EXPECT_EQ(std::memcmp(&entries[0], &entry, offsetof(EXENTRY, noteCount)), 0);
  EXPECT_EQ(std::memcmp(reinterpret_cast<const char*>(&entries[0]) + offsetof(EXENTRY, position),
                        reinterpret_cast<const char*>(&entry) + offsetof(EXENTRY, position),
                        sizeof(EXENTRY) - offsetof(EXENTRY, position)),
            0);

  // A frame that says it has no entries is not read at all.
  EXENTRY rest = RestEntry();
  EXTGF2005a empty{};
  empty.entries = &rest;
  empty.entryCount = 0;
  CleanTGF(&empty);
  EXPECT_EQ(NoteCount(rest), 0);
  empty.entryCount = -1;
  CleanTGF(&empty);
  EXPECT_EQ(NoteCount(rest), 0);
  CleanTGF(nullptr);
}

} // namespace
