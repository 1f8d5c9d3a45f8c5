// Entry numbers -> the frame holding each entry, and the entry's detail records.
//
// One flat table with open addressing (linear probing; number 0, which no entry has, marks a free
// bucket), so that storing a frame of new entries costs no allocation per entry. Numbers the
// engine gives are consecutive, and the bucket of a number is the number itself folded into the
// table, so a frame's entries sit side by side in memory. Detail records live in one pool of nodes
// with their bodies in one byte pool; each entry's records are chained from its bucket in
// (tag, index) order. The whole index is a handful of vectors, so an undo snapshot copies it in
// a few block copies.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "Document.h"
#include "PodBuffer.h"

namespace scribo::engine {

// A frame address packed into one word: staff (15 bits), measure (15 bits), layer (2 bits).
// Never 0 for a frame of the document.
using FrameId = uint32_t;
inline FrameId MakeFrameId(FrameAddress a) {
  return (uint32_t(uint16_t(a.staff)) << 17) | (uint32_t(uint16_t(a.measure) & 0x7FFF) << 2) |
         (uint32_t(a.layer) & 3);
}
inline FrameAddress FrameAddressOf(FrameId id) {
  return {int16_t(id >> 17), int16_t((id >> 2) & 0x7FFF), int16_t(id & 3)};
}

class EntryIndex {
public:
  static constexpr uint32_t kNone = UINT32_MAX;

  struct Entry {
    uint32_t number = 0; // 0: a free bucket
    FrameId frame = 0;
    uint32_t details = kNone; // first node of the entry's detail chain
    // Bookkeeping of the frame store in progress (DocumentData::StoreFrame): the store that
    // claimed the number, and the beam role the entry had before it.
    uint16_t storeMark = 0;
    BeamRole role = BeamRole::None;
  };

  struct DetailKey {
    uint32_t entry = 0;
    uint16_t index = 0;
  };

  size_t size() const { return count_; }
  // Removes every entry; the buffers keep their memory.
  void Clear();
  Entry* Find(uint32_t number);
  const Entry* Find(uint32_t number) const;
  // The entry's bucket; a new number gets one with frame 0 and no details. Bucket pointers stay
  // valid until the next Add or Remove.
  Entry& Add(uint32_t number);
  // Removes the entry with its detail records.
  void Remove(uint32_t number);
  // Clears the store marks of every bucket (when the 16-bit mark counter wraps).
  void ClearStoreMarks();

  // --- Detail records ----------------------------------------------------------------------
  std::optional<std::span<const uint8_t>> Detail(uint32_t tag, uint32_t entry,
                                                 uint16_t index) const;
  // Creates or replaces a record of an existing entry; false when the entry does not exist.
  bool PutDetail(uint32_t tag, uint32_t entry, uint16_t index, std::span<const uint8_t> body);
  bool RemoveDetail(uint32_t tag, uint32_t entry, uint16_t index);
  // Creates a record of an existing entry under `index`, or under the entry's next free index
  // for the tag when `index` is kNextFreeDetailIndex. Returns the index used; nullopt when the
  // entry does not exist, the record already does or no index is left.
  std::optional<uint16_t> CreateDetail(uint32_t tag, uint32_t entry, uint16_t index,
                                       std::span<const uint8_t> body);
  // Calls fn(tag, index, body) for every record of the entry, in (tag, index) order.
  template <class Fn> void ForEachDetail(uint32_t entry, Fn fn) const {
    const Entry* e = Find(entry);
    for (uint32_t n = e ? e->details : kNone; n != kNone; n = nodes_[n].next)
      fn(nodes_[n].tag, nodes_[n].index, Body(nodes_[n]));
  }
  // The nearest record of `tag` after (before) the key, in (entry number, index) order.
  std::optional<DetailKey> NextDetail(uint32_t tag, DetailKey after) const;
  std::optional<DetailKey> PreviousDetail(uint32_t tag, DetailKey before) const;

private:
  struct DetailNode {
    uint32_t tag = 0; // 0: a free node
    uint32_t next = kNone;
    uint32_t offset = 0; // of the body in bodies_
    uint32_t size = 0;
    uint16_t index = 0;
  };

  // Where (tag, index) belongs in an entry's chain: between `previous` and `next` (kNone at
  // either end). `next` is the record itself when the entry has it.
  struct ChainPlace {
    uint32_t previous;
    uint32_t next;
  };
  ChainPlace Place(const Entry& entry, uint32_t tag, uint16_t index) const;
  bool Holds(uint32_t node, uint32_t tag, uint16_t index) const;
  void Link(Entry& entry, ChainPlace place, uint32_t tag, uint16_t index,
            std::span<const uint8_t> body);
  size_t Home(uint32_t number) const { return (number ^ (number >> 16)) & (buckets_.size() - 1); }
  void Grow();
  std::span<const uint8_t> Body(const DetailNode& node) const {
    return {bodies_.data() + node.offset, node.size};
  }
  uint32_t StoreBody(std::span<const uint8_t> body);
  void FreeNode(uint32_t node);
  void CompactBodies();
  // Entry numbers that have (or had, since the last rebuild) detail records, in order.
  const std::vector<uint32_t>& EntriesWithDetails() const;

  std::vector<Entry> buckets_; // size 0 or a power of two
  size_t count_ = 0;
  PodBuffer<DetailNode> nodes_;
  uint32_t freeNodes_ = kNone;
  PodBuffer<uint8_t> bodies_;
  size_t deadBytes_ = 0; // body bytes no node uses
  mutable std::vector<uint32_t> withDetails_;
  mutable bool withDetailsStale_ = false;
};

} // namespace scribo::engine
