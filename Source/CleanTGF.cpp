#include "CleanTGF.h"

#include <cstring>

#include "SDKCounters.h"

namespace {

// Entries are packed records: work on each one through a local copy so that no reference
// ever binds to a misaligned member.
void CleanEntry(EXENTRY& entry, bool addPlaceholder) {
  int16_t count = entry.noteCount;
  if (count > kMaxNotesPerEntry)
    count = kMaxNotesPerEntry; // a corrupt count must not take the clean-up past the record

  if (count > 0) {
    int16_t ids[kMaxNotesPerEntry];
    for (int j = 0; j < count; ++j)
      ids[j] = entry.notes[j].noteID;

    int32_t maxID = 0;
    for (int j = 0; j < count; ++j)
      if (ids[j] > maxID)
        maxID = ids[j];

    for (int j = 0; j < count; ++j) {
      bool renumber = ids[j] == 0;
      for (int k = 0; k < count && !renumber; ++k)
        renumber = k != j && ids[k] == ids[j];
      if (renumber) {
        ++maxID;
        ids[j] = static_cast<int16_t>(maxID);
      }
    }

    for (int j = 0; j < count; ++j) {
      entry.notes[j].noteID = ids[j];
      uint32_t noteFlags = entry.notes[j].noteFlags;
      noteFlags = (noteFlags & ~kNoteIDCopyMask) | ((static_cast<uint32_t>(ids[j]) & 0x1F) << 16);
      entry.notes[j].noteFlags = noteFlags;
    }
  }

  int firstUnused = count > 0 ? count : 0;
  if (firstUnused < kMaxNotesPerEntry)
    std::memset(reinterpret_cast<unsigned char*>(&entry) + offsetof(EXENTRY, notes) +
                    firstUnused * sizeof(EXNOTE),
                0, (kMaxNotesPerEntry - firstUnused) * sizeof(EXNOTE));

  if (entry.noteCount == 0 && addPlaceholder) {
    entry.noteCount = 1;
    entry.notes[0].noteFlags = kNoteRestPlaceholder;
    entry.flags = entry.flags | kEntryRestPlaceholder;
  }
}

} // namespace

void CleanTGF(EXTGF2005a* frame) {
  if (!frame)
    return;
  const bool addPlaceholder = CanAddNoteRecordToRests;
  const int16_t entryCount = frame->entryCount;
  EXENTRY* entries = frame->entries;
  if (entryCount < 1 || !entries)
    return;
  for (int i = 0; i < entryCount; ++i)
    CleanEntry(entries[i], addPlaceholder);
}
