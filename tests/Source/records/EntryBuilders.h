// Entries for frame tests, and the host calls that hand a frame's entries to the host.
#pragma once

#include <initializer_list>
#include <vector>

#include "EXTGF2005a.h"
#include "HostFunctions.h"

inline EXENTRY NoteEntry(std::initializer_list<int16_t> ids, uint32_t noteFlags = 0) {
  EXENTRY entry{};
  entry.flags = kEntryIsNote;
  entry.duration = 1024;
  entry.noteCount = static_cast<int16_t>(ids.size());
  int j = 0;
  for (int16_t id : ids) {
    entry.notes[j].noteID = id;
    entry.notes[j++].noteFlags = noteFlags;
  }
  return entry;
}

inline EXENTRY RestEntry() {
  EXENTRY entry{};
  entry.duration = 1024;
  return entry;
}

// Copied out of the packed entry, so gtest can compare them by reference.
inline std::vector<int16_t> NoteIDs(const EXENTRY& entry) {
  std::vector<int16_t> ids;
  for (int j = 0; j < entry.noteCount && j < kMaxNotesPerEntry; ++j)
    ids.push_back(entry.notes[j].noteID);
  return ids;
}

// Each call cleans the frame before the host sees it; index 1, count 1 where one is taken.
struct FrameCall {
  const char* function;
  void (*call)(EXTGF2005a* frame);
};
inline constexpr FrameCall kCleaningFrameCalls[] = {
    {"SX_InsertEXENTRY", [](EXTGF2005a* f) { SX_InsertEXENTRY(f, 1, 1, kScriboHostVersion); }},
    {"SX_SaveTGF", [](EXTGF2005a* f) { SX_SaveTGF(f, kScriboHostVersion); }},
    {"SX_DeleteEXENTRY", [](EXTGF2005a* f) { SX_DeleteEXENTRY(f, 1, 1, kScriboHostVersion); }},
    {"SX_ReduceEntries", [](EXTGF2005a* f) { SX_ReduceEntries(f, kScriboHostVersion); }},
};
