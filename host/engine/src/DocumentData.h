// The document's data, as one copyable value so that an edit can keep a snapshot of it.
//
// Entries of all frames share one pool (with their beam roles in a pool beside it); a table with
// a slot for every frame of the document says where each frame's entries lie. A frame that grows
// past its room moves to the end of the pool, so storing a frame costs one block copy and no
// allocation per entry.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "Document.h"
#include "EntryIndex.h"
#include "PodBuffer.h"

namespace scribo::engine {

// Where a frame's entries lie in the pool: `count` of them from `first`, room for `capacity`.
struct FrameSlot {
  uint32_t first = 0;
  uint16_t count = 0;
  uint16_t capacity = 0;
};

// A record's identity: its tag and its key words folded into one ordered value. Entry-detail
// keys order by entry number, then index; other keys by their words in turn.
struct RecordKey {
  uint32_t tag = 0;
  uint64_t order = 0;
  friend auto operator<=>(const RecordKey&, const RecordKey&) = default;
};
// Reads KeyWordsForTag(tag) words from `keys`.
RecordKey MakeRecordKey(uint32_t tag, const uint16_t* keys);
// Writes the key words of a record key (KeyWordsForTag(tag) of them).
void WriteKeyWords(const RecordKey& key, uint16_t* keys);
inline RecordKey EntryDetailKey(uint32_t tag, uint32_t entryNumber, uint16_t index) {
  return {tag, (uint64_t(entryNumber) << 16) | index};
}
inline uint32_t EntryNumberOf(const RecordKey& key) {
  return uint32_t(key.order >> 16);
}
inline uint16_t DetailIndexOf(const RecordKey& key) {
  return uint16_t(key.order);
}

// Every record but entry details, which the entry index keeps.
using RecordMap = std::map<RecordKey, std::vector<uint8_t>>;

struct DocumentData {
  int16_t staffCount = 0;
  int16_t measureCount = 0;
  int16_t rawTextCount = 0;
  int16_t textBlockCount = 0;
  uint32_t lastEntryNumber = 0;
  EntryIndex entryIndex;
  RecordMap records;

  // Adds a staff (a measure) with its empty frames; returns its number, -1 when there are 32767.
  int16_t NewStaff();
  int16_t NewMeasure();
  bool IsValid(FrameAddress a) const {
    return a.staff >= 1 && a.staff <= staffCount && a.measure >= 1 && a.measure <= measureCount &&
           a.layer >= 0 && a.layer < kMaxLayerCount;
  }
  // The frame's entries and beam roles, empty outside the document; valid until the next change.
  std::span<const EXENTRY> Entries(FrameAddress a) const;
  std::span<const BeamRole> Beams(FrameAddress a) const;
  std::span<BeamRole> Beams(FrameAddress a);

  // A number no entry has: the one after lastEntryNumber (skipping those in use once the
  // numbers have run out and started again from 1).
  uint32_t NewEntryNumber();
  // Appends an entry to a frame of the document, numbered as Document::AddEntry says. Returns
  // the number, or 0 when the frame is full.
  uint32_t AppendEntry(FrameAddress a, const EXENTRY& entry);
  // Stores the frame's entries: numbers 0, repeated in the frame or owned by another frame get
  // new numbers (written back into `entries`); numbers that left the frame lose their detail
  // records; beam roles follow their entries.
  void StoreFrame(FrameAddress a, std::span<EXENTRY> entries);

  const std::vector<uint8_t>* FindRecord(const RecordKey& key) const {
    auto it = records.find(key);
    return it == records.end() ? nullptr : &it->second;
  }
  void ResetToEmpty();

private:
  const FrameSlot* Slot(FrameAddress a) const;
  FrameSlot* Slot(FrameAddress a) {
    return const_cast<FrameSlot*>(static_cast<const DocumentData*>(this)->Slot(a));
  }
  // Makes room for `count` entries in the slot, keeping the ones it holds. The pool may move.
  void Reserve(FrameSlot& slot, size_t count);

  // Slot of (staff, measure, layer): ((measure - 1) * staffStride_ + staff - 1) * 4 + layer.
  std::vector<FrameSlot> slots_;
  int32_t staffStride_ = 0;
  PodBuffer<EXENTRY> entryPool_;
  PodBuffer<BeamRole> beamPool_; // beside entryPool_
  uint16_t storeMark_ = 0;
  bool numbersWrapped_ = false;  // entry numbers ran past 0xFFFFFFFF and started again
  PodBuffer<BeamRole> newRoles_; // StoreFrame's scratch; empty between calls
};

} // namespace scribo::engine
