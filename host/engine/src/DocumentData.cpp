#include "DocumentData.h"

#include <unordered_set>

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

std::vector<uint16_t> KeyWords(const RecordKey& key) {
  if (IsEntryDetailTag(key.tag)) {
    uint32_t entry = EntryNumberOf(key);
    return {uint16_t(entry & 0xFFFF), uint16_t(entry >> 16), uint16_t(key.order & 0xFFFF)};
  }
  size_t words = KeyWordsForTag(key.tag);
  std::vector<uint16_t> out;
  for (size_t i = 0; i < words; ++i)
    out.push_back(uint16_t(key.order >> (16 * (2 - i))));
  return out;
}

uint32_t DocumentData::NewEntryNumber() {
  do {
    ++lastEntryNumber;
  } while (lastEntryNumber == 0 || entryIndex.count(lastEntryNumber));
  return lastEntryNumber;
}

void DocumentData::RemoveEntryDetails(uint32_t entryNumber) {
  ForEachDetailRange(records, entryNumber,
                     [&](auto first, auto last) { records.erase(first, last); });
}

void DocumentData::StoreFrame(FrameId id, std::span<EXENTRY> entries) {
  FrameData& frame = frames[id];
  std::unordered_map<uint32_t, BeamRole> oldRoles;
  oldRoles.reserve(frame.entries.size());
  for (size_t i = 0; i < frame.entries.size(); ++i)
    oldRoles.emplace(uint32_t(frame.entries[i].entryNumber), frame.beams[i]);

  std::unordered_set<uint32_t> kept;
  kept.reserve(entries.size());
  for (EXENTRY& e : entries) {
    uint32_t number = e.entryNumber;
    bool fresh = number == 0 || kept.count(number) != 0;
    if (!fresh) {
      auto owner = entryIndex.find(number);
      fresh = owner != entryIndex.end() && owner->second != id;
    }
    if (fresh) {
      number = NewEntryNumber();
      e.entryNumber = number;
    } else if (number > lastEntryNumber) {
      lastEntryNumber = number;
    }
    kept.insert(number);
  }

  for (const EXENTRY& old : frame.entries) {
    uint32_t number = old.entryNumber;
    if (kept.count(number))
      continue;
    auto owner = entryIndex.find(number);
    if (owner != entryIndex.end() && owner->second == id) {
      entryIndex.erase(owner);
      RemoveEntryDetails(number);
    }
  }

  frame.entries.assign(entries.begin(), entries.end());
  frame.beams.assign(entries.size(), BeamRole::None);
  for (size_t i = 0; i < frame.entries.size(); ++i) {
    uint32_t number = frame.entries[i].entryNumber;
    entryIndex[number] = id;
    auto role = oldRoles.find(number);
    if (role != oldRoles.end())
      frame.beams[i] = role->second;
  }
}

void DocumentData::ResetToEmpty() {
  *this = DocumentData{};
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
