// Host functions over records found by tag and key list: entry details, preferences, other
// records, specs and raw texts.
#include <cstring>

#include "EngineState.h"
#include "HostExport.h"

using namespace scribo::engine;

namespace {

// The size a tag's records must have when a plug-in writes them; 0 for variable sizes.
size_t FixedSize(uint32_t tag) {
  switch (tag) {
  case kTagMeasureSpec:
    return sizeof(EDTMeasureSpec2014);
  case kTagStaffSpec:
    return sizeof(EDTStaffSpec2014);
  case kTagGroupSpec:
    return sizeof(EDTGroupSpec);
  case kTagPageSpec:
    return sizeof(EDTPageSpec);
  case kTagTextBlock:
    return sizeof(EDTTextBlock25_4);
  case kTagGeneralPrefs:
    return sizeof(EDTGeneralPrefs2008);
  case kTupletPrefsTag:
  case kTupletDetailTag:
    return sizeof(EDTTuplet);
  default:
    return IsOtherRecordTag(tag) ? kOtherRecordSize : 0;
  }
}

// Whether a record with this key may exist in the document: specs belong to existing staves
// and measures, entry details to existing entries.
bool HasOwner(const DocumentData& data, const RecordKey& key) {
  if (IsEntryDetailTag(key.tag))
    return data.entryIndex.count(EntryNumberOf(key)) != 0;
  int16_t main = int16_t(uint16_t(key.order >> 32));
  if (key.tag == kTagMeasureSpec)
    return main >= 1 && main <= data.measureCount;
  if (key.tag == kTagStaffSpec)
    return main >= 1 && main <= data.staffCount;
  return true;
}

bool AcceptsBody(uint32_t tag, const void* buffer, uint32_t size) {
  if (size > 0 && !buffer)
    return false;
  size_t fixed = FixedSize(tag);
  return fixed == 0 || size == fixed;
}

std::vector<uint8_t> Body(const void* buffer, uint32_t size) {
  const auto* bytes = static_cast<const uint8_t*>(buffer);
  return size ? std::vector<uint8_t>(bytes, bytes + size) : std::vector<uint8_t>{};
}

void WriteKeys(uint16_t* keys, const RecordKey& key) {
  std::vector<uint16_t> words = KeyWords(key);
  std::memcpy(keys, words.data(), words.size() * sizeof(uint16_t));
}

// Copies a neighbouring record (its keys and, when a buffer is given and large enough, its
// body) to the caller.
int Neighbour(RecordMap::const_iterator it, const DocumentData& data, uint32_t tag, uint16_t* keys,
              void* buffer, uint32_t size) {
  if (it == data.records.end() || it->first.tag != tag)
    return 0;
  if (buffer) {
    if (size < it->second.size())
      return 0;
    if (!it->second.empty())
      std::memcpy(buffer, it->second.data(), it->second.size());
  }
  WriteKeys(keys, it->first);
  return 1;
}

} // namespace

// With a null buffer, answers the record's size in *size. Otherwise *size is the buffer's
// capacity on entry and the record's size on return; a buffer too small for the record gets
// nothing and *size is left alone.
SX_EXPORT int SX_LoadEData(uint32_t tag, uint16_t* keys, void* buffer, uint32_t* size,
                           uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::LoadEData);
  if (!keys || !size)
    return 0;
  const auto* record = s.data.FindRecord(MakeRecordKey(tag, keys));
  if (!record)
    return 0;
  uint32_t length = uint32_t(record->size());
  if (buffer) {
    if (*size < length)
      return 0;
    if (length)
      std::memcpy(buffer, record->data(), length);
  }
  *size = length;
  return 1;
}

// Stores the record, creating it when it does not exist yet.
SX_EXPORT int SX_SaveEData(uint32_t tag, uint16_t* keys, void* buffer, uint32_t size,
                           uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::SaveEData);
  if (!keys || !AcceptsBody(tag, buffer, size))
    return 0;
  RecordKey key = MakeRecordKey(tag, keys);
  if (!HasOwner(s.data, key))
    return 0;
  s.data.records[key] = Body(buffer, size);
  return 1;
}

// Creates a new record; 0 when one with the same key exists. An entry detail created with
// index 0xFFFF gets the entry's next free index, written back into keys[2].
SX_EXPORT int SX_CreateEData(uint32_t tag, uint16_t* keys, void* buffer, uint32_t size,
                             uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::CreateEData);
  if (s.Failing(HostCall::CreateEData) || !keys || !AcceptsBody(tag, buffer, size))
    return 0;
  RecordKey key = MakeRecordKey(tag, keys);
  if (!HasOwner(s.data, key))
    return 0;
  if (IsEntryDetailTag(tag) && keys[2] == kNextFreeDetailIndex) {
    uint32_t entry = EntryNumberOf(key);
    uint32_t index = 0;
    auto last = s.data.records.upper_bound(EntryDetailKey(tag, entry, 0xFFFE));
    if (last != s.data.records.begin()) {
      --last;
      if (last->first.tag == tag && EntryNumberOf(last->first) == entry)
        index = uint32_t(last->first.order & 0xFFFF) + 1;
    }
    if (index >= kNextFreeDetailIndex)
      return 0;
    key = EntryDetailKey(tag, entry, uint16_t(index));
  }
  if (s.data.records.count(key))
    return 0;
  s.data.records.emplace(key, Body(buffer, size));
  WriteKeys(keys, key);
  return 1;
}

SX_EXPORT int SX_DeleteEData(uint32_t tag, uint16_t* keys, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::DeleteEData);
  if (!keys)
    return 0;
  return s.data.records.erase(MakeRecordKey(tag, keys)) ? 1 : 0;
}

// The record of the same tag after `keys` in key order: its keys replace `keys`, its body goes
// into `buffer` (when given; `size` is the buffer's capacity). 0 when there is none.
SX_EXPORT int SX_NextEData(uint32_t tag, uint16_t* keys, void* buffer, uint32_t size,
                           uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::NextEData);
  if (!keys)
    return 0;
  return Neighbour(s.data.records.upper_bound(MakeRecordKey(tag, keys)), s.data, tag, keys, buffer,
                   size);
}

// The record of the same tag before `keys` in key order; as SX_NextEData otherwise.
SX_EXPORT int SX_PreviousEData(uint32_t tag, uint16_t* keys, void* buffer, uint32_t size,
                               uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::PreviousEData);
  if (!keys)
    return 0;
  auto it = s.data.records.lower_bound(MakeRecordKey(tag, keys));
  if (it == s.data.records.begin())
    return 0;
  return Neighbour(std::prev(it), s.data, tag, keys, buffer, size);
}
