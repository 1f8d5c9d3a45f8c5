// Entries for frame tests, and copies of packed fields that gtest can compare by reference.
#pragma once

#include <initializer_list>
#include <vector>

#include "EXTGF2005a.h"

inline EXENTRY NoteEntry(std::initializer_list<int16_t> ids, uint32_t noteFlags = 0) {
  EXENTRY entry{};
  entry.flags = kEntryIsNote;
  entry.duration = 1024;
  entry.noteCount = static_cast<int16_t>(ids.size());
  int j = 0;
  for (int16_t id : ids) {
    entry.notes[j].noteID = id;
    entry.notes[j].noteFlags = noteFlags;
    ++j;
  }
  return entry;
}

inline EXENTRY RestEntry() {
  EXENTRY entry{};
  entry.duration = 1024;
  return entry;
}

inline std::vector<int16_t> NoteIDs(const EXENTRY& entry) {
  std::vector<int16_t> ids;
  for (int j = 0; j < entry.noteCount && j < kMaxNotesPerEntry; ++j)
    ids.push_back(entry.notes[j].noteID);
  return ids;
}

inline uint32_t NoteFlags(const EXENTRY& entry, int j) {
  return entry.notes[j].noteFlags;
}
inline uint32_t EntryFlags(const EXENTRY& entry) {
  return entry.flags;
}
inline int16_t NoteCount(const EXENTRY& entry) {
  return entry.noteCount;
}
