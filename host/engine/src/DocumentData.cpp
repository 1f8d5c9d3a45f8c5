#include "DocumentData.h"

#include <algorithm>

namespace scribo::engine {

RecordKey MakeRecordKey(uint32_t tag, const uint16_t* keys) {
  RecordKey key{tag, 0};
  if (IsEntryDetailTag(tag)) {
    uint32_t entry = uint32_t(keys[0]) | (uint32_t(keys[1]) << 16);
    key.order = (uint64_t(entry) << 16) | keys[2];
    return key;
  }
  size_t words = KeyWordsForTag(tag);
  for (size_t i = 0; i < 3; ++i)
    key.order = (key.order << 16) | (i < words ? keys[i] : 0);
  return key;
}

void WriteKeyWords(const RecordKey& key, uint16_t* keys) {
  if (IsEntryDetailTag(key.tag)) {
    uint32_t entry = EntryNumberOf(key);
    keys[0] = uint16_t(entry & 0xFFFF);
    keys[1] = uint16_t(entry >> 16);
    keys[2] = DetailIndexOf(key);
    return;
  }
  size_t words = KeyWordsForTag(key.tag);
  for (size_t i = 0; i < words; ++i)
    keys[i] = uint16_t(key.order >> (16 * (2 - i)));
}

int16_t DocumentData::NewStaff() {
  if (staffCount == INT16_MAX)
    return -1;
  if (staffCount == staffStride_) {
    // Rows of the slot table get room for twice as many staves.
    const int32_t stride = std::max(8, staffStride_ * 2);
    const size_t oldRow = size_t(staffStride_) * kMaxLayerCount;
    const size_t newRow = size_t(stride) * kMaxLayerCount;
    std::vector<FrameSlot> slots(size_t(measureCount) * newRow);
    for (size_t m = 0; m < size_t(measureCount); ++m)
      std::copy_n(slots_.begin() + ptrdiff_t(m * oldRow), oldRow,
                  slots.begin() + ptrdiff_t(m * newRow));
    slots_.swap(slots);
    staffStride_ = stride;
  }
  return ++staffCount;
}

int16_t DocumentData::NewMeasure() {
  if (measureCount == INT16_MAX)
    return -1;
  slots_.resize(slots_.size() + size_t(staffStride_) * kMaxLayerCount);
  return ++measureCount;
}

const FrameSlot* DocumentData::Slot(FrameAddress a) const {
  if (!IsValid(a))
    return nullptr;
  return &slots_[(size_t(a.measure - 1) * size_t(staffStride_) + size_t(a.staff - 1)) *
                     kMaxLayerCount +
                 size_t(a.layer)];
}

std::span<const EXENTRY> DocumentData::Entries(FrameAddress a) const {
  const FrameSlot* slot = Slot(a);
  return slot ? std::span(entryPool_.data() + slot->first, slot->count)
              : std::span<const EXENTRY>();
}

std::span<const BeamRole> DocumentData::Beams(FrameAddress a) const {
  const FrameSlot* slot = Slot(a);
  return slot ? std::span(beamPool_.data() + slot->first, slot->count)
              : std::span<const BeamRole>();
}

std::span<BeamRole> DocumentData::Beams(FrameAddress a) {
  FrameSlot* slot = Slot(a);
  return slot ? std::span(beamPool_.data() + slot->first, slot->count) : std::span<BeamRole>();
}

uint32_t DocumentData::NewEntryNumber() {
  // No number in use is above lastEntryNumber, so the next one is free, until the numbers run
  // out and start again from 1 among the ones in use.
  do {
    if (++lastEntryNumber == 0)
      numbersWrapped_ = true;
  } while (lastEntryNumber == 0 || (numbersWrapped_ && entryIndex.Find(lastEntryNumber)));
  return lastEntryNumber;
}

void DocumentData::Reserve(FrameSlot& slot, size_t count) {
  if (count <= slot.capacity)
    return;
  if (slot.first + slot.capacity == entryPool_.size()) {
    // The last frame of the pool grows where it is.
    entryPool_.resize(slot.first + count);
    beamPool_.resize(slot.first + count);
    slot.capacity = uint16_t(count);
    return;
  }
  // The frame moves to the end of the pool with twice the room; its old room is left behind.
  // Rooms double as they move, so the ones left behind never add up to the ones in use.
  const size_t first = entryPool_.size();
  const size_t capacity =
      std::min(std::max(count, size_t(slot.capacity) * 2), size_t(kMaxFrameEntries));
  entryPool_.resize(first + capacity);
  beamPool_.resize(first + capacity);
  std::copy_n(entryPool_.data() + slot.first, slot.count, entryPool_.data() + first);
  std::copy_n(beamPool_.data() + slot.first, slot.count, beamPool_.data() + first);
  slot.first = uint32_t(first);
  slot.capacity = uint16_t(capacity);
}

uint32_t DocumentData::AppendEntry(FrameAddress a, const EXENTRY& entry) {
  FrameSlot* slot = Slot(a);
  if (!slot || slot->count >= kMaxFrameEntries)
    return 0;
  // Packed fields are copied out, never bound to references.
  uint32_t number = entry.entryNumber;
  if (number == 0 || entryIndex.Find(number))
    number = NewEntryNumber();
  else if (number > lastEntryNumber)
    lastEntryNumber = number;
  EXENTRY copy = entry; // `entry` may lie in the pool, which may move
  Reserve(*slot, size_t(slot->count) + 1);
  const size_t at = slot->first + slot->count++;
  entryPool_[at] = copy;
  entryPool_[at].entryNumber = number;
  beamPool_[at] = BeamRole::None;
  entryIndex.Add(number).frame = MakeFrameId(a);
  return number;
}

void DocumentData::StoreFrame(FrameAddress a, std::span<EXENTRY> entries) {
  FrameSlot* slot = Slot(a);
  if (!slot)
    return;
  const FrameId id = MakeFrameId(a);
  if (++storeMark_ == 0) {
    entryIndex.ClearStoreMarks();
    storeMark_ = 1;
  }
  const uint16_t mark = storeMark_;
  const std::span<const EXENTRY> old(entryPool_.data() + slot->first, slot->count);
  for (size_t i = 0; i < old.size(); ++i)
    if (EntryIndex::Entry* known = entryIndex.Find(old[i].entryNumber))
      known->role = beamPool_[slot->first + i];

  // The numbers the new entries keep or get (the marks tell repeats within the frame), and
  // their beam roles.
  newRoles_.resize(entries.size());
  size_t oldKept = 0;
  for (size_t i = 0; i < entries.size(); ++i) {
    EXENTRY& e = entries[i];
    uint32_t number = e.entryNumber;
    EntryIndex::Entry* known = number ? entryIndex.Find(number) : nullptr;
    if (number == 0 || (known && (known->frame != id || known->storeMark == mark))) {
      number = NewEntryNumber();
      e.entryNumber = number;
      known = nullptr;
    } else if (number > lastEntryNumber) {
      lastEntryNumber = number;
    }
    if (known) { // an entry the frame held
      newRoles_[i] = known->role;
      ++oldKept;
    } else {
      known = &entryIndex.Add(number);
      known->frame = id;
      newRoles_[i] = BeamRole::None;
    }
    known->storeMark = mark;
  }

  // Entries that left the frame go, with their detail records.
  for (size_t i = 0; oldKept < old.size() && i < old.size(); ++i) {
    const uint32_t number = old[i].entryNumber;
    const EntryIndex::Entry* known = entryIndex.Find(number);
    if (known && known->frame == id && known->storeMark != mark)
      entryIndex.Remove(number);
  }

  slot->count = 0; // nothing to keep if the frame moves
  Reserve(*slot, entries.size());
  slot->count = uint16_t(entries.size());
  std::copy(entries.begin(), entries.end(), entryPool_.data() + slot->first);
  std::copy(newRoles_.begin(), newRoles_.end(), beamPool_.data() + slot->first);
  newRoles_.clear();
}

void DocumentData::ResetToEmpty() {
  // Everything goes back to where it started, but the large buffers keep their memory for the
  // next document: a host opening documents one after another does not fault it in again.
  auto entries = std::move(entryPool_);
  auto beams = std::move(beamPool_);
  auto index = std::move(entryIndex);
  *this = DocumentData{};
  entries.clear();
  beams.clear();
  index.Clear();
  entryPool_ = std::move(entries);
  beamPool_ = std::move(beams);
  entryIndex = std::move(index);
  EDTTuplet triplet{};
  triplet.tupletNumber = 3;
  triplet.tupletUnit = 512;
  triplet.referenceNumber = 2;
  triplet.referenceUnit = 512;
  const uint16_t zero[1] = {0};
  records[MakeRecordKey(kTupletPrefsTag, zero)] = BytesOf(triplet);
  records[MakeRecordKey(kTagGeneralPrefs, zero)] = BytesOf(EDTGeneralPrefs2008{});
}

} // namespace scribo::engine
