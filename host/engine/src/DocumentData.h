// The document's data, as one copyable value so that an edit can keep a snapshot of it.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <unordered_map>
#include <vector>

#include "Document.h"

namespace scribo::engine {

// A frame address packed into one word: staff, measure, layer.
using FrameId = uint64_t;
inline FrameId MakeFrameId(FrameAddress a) {
  return (uint64_t(uint16_t(a.staff)) << 32) | (uint64_t(uint16_t(a.measure)) << 16) |
         uint16_t(a.layer);
}
inline FrameAddress FrameAddressOf(FrameId id) {
  return {int16_t(uint16_t(id >> 32)), int16_t(uint16_t(id >> 16)), int16_t(uint16_t(id))};
}

struct FrameData {
  std::vector<EXENTRY> entries;
  std::vector<BeamRole> beams; // beside `entries`
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
// The key words of a record key (KeyWordsForTag(tag) of them).
std::vector<uint16_t> KeyWords(const RecordKey& key);
inline RecordKey EntryDetailKey(uint32_t tag, uint32_t entryNumber, uint16_t index) {
  return {tag, (uint64_t(entryNumber) << 16) | index};
}
inline uint32_t EntryNumberOf(const RecordKey& key) {
  return uint32_t(key.order >> 16);
}

using RecordMap = std::map<RecordKey, std::vector<uint8_t>>;

// Calls fn(first, last) with the records of `records` that each entry-detail tag holds for the
// entry, one tag after another. The detail tags sort together: all begin with 'E'.
template <class Map, class Fn> void ForEachDetailRange(Map& records, uint32_t entryNumber, Fn fn) {
  auto it = records.lower_bound(RecordKey{FourCharTag("E\0\0\0"), 0});
  while (it != records.end() && IsEntryDetailTag(it->first.tag)) {
    uint32_t tag = it->first.tag;
    fn(records.lower_bound(EntryDetailKey(tag, entryNumber, 0)),
       records.upper_bound(EntryDetailKey(tag, entryNumber, 0xFFFF)));
    it = records.upper_bound(RecordKey{tag, UINT64_MAX});
  }
}

struct DocumentData {
  int16_t staffCount = 0;
  int16_t measureCount = 0;
  int16_t rawTextCount = 0;
  int16_t textBlockCount = 0;
  uint32_t lastEntryNumber = 0;
  std::unordered_map<FrameId, FrameData> frames;
  std::unordered_map<uint32_t, FrameId> entryIndex; // entry number -> its frame
  RecordMap records;

  // Every entry number given out so far is below this; a new one is the next unused.
  uint32_t NewEntryNumber();
  bool IsValid(FrameAddress a) const {
    return a.staff >= 1 && a.staff <= staffCount && a.measure >= 1 && a.measure <= measureCount &&
           a.layer >= 0 && a.layer < kMaxLayerCount;
  }
  const std::vector<uint8_t>* FindRecord(const RecordKey& key) const {
    auto it = records.find(key);
    return it == records.end() ? nullptr : &it->second;
  }
  // Stores the frame's entries: numbers 0, repeated in the frame or owned by another frame get
  // new numbers (written back into `entries`); numbers that left the frame lose their detail
  // records; beam roles follow their entries.
  void StoreFrame(FrameId id, std::span<EXENTRY> entries);
  // Removes every entry-detail record of the entry.
  void RemoveEntryDetails(uint32_t entryNumber);
  void ResetToEmpty();
};

} // namespace scribo::engine
