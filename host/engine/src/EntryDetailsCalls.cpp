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
    return data.entryIndex.Find(EntryNumberOf(key)) != nullptr;
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

std::span<const uint8_t> Body(const void* buffer, uint32_t size) {
  return {static_cast<const uint8_t*>(buffer), size_t(buffer ? size : 0)};
}

// The body of the record at `key`, wherever the document keeps it.
std::optional<std::span<const uint8_t>> FindBody(const DocumentData& data, const RecordKey& key) {
  if (IsEntryDetailTag(key.tag))
    return data.entryIndex.Detail(key.tag, EntryNumberOf(key), DetailIndexOf(key));
  if (const auto* bytes = data.FindRecord(key))
    return std::span<const uint8_t>(*bytes);
  return std::nullopt;
}

void Put(DocumentData& data, const RecordKey& key, std::span<const uint8_t> body) {
  if (IsEntryDetailTag(key.tag))
    data.entryIndex.PutDetail(key.tag, EntryNumberOf(key), DetailIndexOf(key), body);
  else
    data.records[key].assign(body.begin(), body.end());
}

// The record of the same tag next to `key` in key order: after it, or before it.
std::optional<RecordKey> Neighbour(const DocumentData& data, const RecordKey& key, bool after) {
  if (IsEntryDetailTag(key.tag)) {
    EntryIndex::DetailKey at{EntryNumberOf(key), DetailIndexOf(key)};
    auto found = after ? data.entryIndex.NextDetail(key.tag, at)
                       : data.entryIndex.PreviousDetail(key.tag, at);
    return found ? std::optional(EntryDetailKey(key.tag, found->entry, found->index))
                 : std::nullopt;
  }
  auto it = after ? data.records.upper_bound(key) : data.records.lower_bound(key);
  if (!after) {
    if (it == data.records.begin())
      return std::nullopt;
    --it;
  }
  if (it == data.records.end() || it->first.tag != key.tag)
    return std::nullopt;
  return it->first;
}

// Copies a neighbouring record (its keys and, when a buffer is given and large enough, its
// body) to the caller.
int CopyNeighbour(const DocumentData& data, const RecordKey& key, bool after, uint16_t* keys,
                  void* buffer, uint32_t size) {
  auto found = Neighbour(data, key, after);
  if (!found)
    return 0;
  if (buffer) {
    auto body = *FindBody(data, *found);
    if (size < body.size())
      return 0;
    if (!body.empty())
      std::memcpy(buffer, body.data(), body.size());
  }
  WriteKeyWords(*found, keys);
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
  auto record = FindBody(s.data, MakeRecordKey(tag, keys));
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
  Put(s.data, key, Body(buffer, size));
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
  if (IsEntryDetailTag(tag)) {
    const uint32_t entry = EntryNumberOf(key);
    auto index = s.data.entryIndex.CreateDetail(tag, entry, DetailIndexOf(key), Body(buffer, size));
    if (!index)
      return 0;
    WriteKeyWords(EntryDetailKey(tag, entry, *index), keys);
    return 1;
  }
  if (!HasOwner(s.data, key) || s.data.records.count(key))
    return 0;
  Put(s.data, key, Body(buffer, size));
  WriteKeyWords(key, keys);
  return 1;
}

SX_EXPORT int SX_DeleteEData(uint32_t tag, uint16_t* keys, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::DeleteEData);
  if (!keys)
    return 0;
  RecordKey key = MakeRecordKey(tag, keys);
  if (IsEntryDetailTag(tag))
    return s.data.entryIndex.RemoveDetail(tag, EntryNumberOf(key), DetailIndexOf(key)) ? 1 : 0;
  return s.data.records.erase(key) ? 1 : 0;
}

// The record of the same tag after `keys` in key order: its keys replace `keys`, its body goes
// into `buffer` (when given; `size` is the buffer's capacity). 0 when there is none.
SX_EXPORT int SX_NextEData(uint32_t tag, uint16_t* keys, void* buffer, uint32_t size,
                           uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::NextEData);
  if (!keys)
    return 0;
  return CopyNeighbour(s.data, MakeRecordKey(tag, keys), true, keys, buffer, size);
}

// The record of the same tag before `keys` in key order; as SX_NextEData otherwise.
SX_EXPORT int SX_PreviousEData(uint32_t tag, uint16_t* keys, void* buffer, uint32_t size,
                               uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::PreviousEData);
  if (!keys)
    return 0;
  return CopyNeighbour(s.data, MakeRecordKey(tag, keys), false, keys, buffer, size);
}
