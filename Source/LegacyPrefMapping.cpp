#include "LegacyPrefMapping.h"

#include <bit>
#include <cstring>

#include "HostFunctions.h"
#include "RecordTags.h"

static_assert(std::endian::native == std::endian::little,
              "preference records and other records are little-endian in memory");

namespace {

struct tOtherRecord {
  uint16_t words[kOtherRecordWords];
};
static_assert(sizeof(tOtherRecord) == kOtherRecordSize);

// Loads the row's other record into a cleared scratch record. What the host cannot supply
// reads as zeros.
void LoadOtherRecord(const tPrefMapRow& row, tOtherRecord& scratch) {
  scratch = tOtherRecord{};
  unsigned short keys[2] = {row.owner == 0 ? kOtherRecordDocumentOwner : row.owner, row.index};
  uint32_t size = kOtherRecordSize;
  SX_LoadEData(RowOtherTag(row), keys, &scratch, &size, kScriboHostVersion);
}

void SaveOtherRecord(const tPrefMapRow& row, tOtherRecord& scratch) {
  unsigned short keys[2] = {row.owner == 0 ? kOtherRecordDocumentOwner : row.owner, row.index};
  SX_SaveEData(RowOtherTag(row), keys, &scratch, kOtherRecordSize, kScriboHostVersion);
}

// The value a 4-byte row holds for the words of `scratch`.
uint32_t PairValue(const tPrefMapRow& row, const tOtherRecord& scratch) {
  const uint32_t a = scratch.words[row.word];
  const uint32_t b = scratch.words[row.word + 1];
  switch (row.kind) {
  case kPrefMapHighFirst:
    return (a << 16) | b;
  case kPrefMapLowFirst:
    return (b << 16) | a;
  default:
    return 0;
  }
}

void StoreField(const tPrefMapRow& row, const tOtherRecord& scratch, unsigned char* record) {
  if (row.size == 4) {
    const uint32_t value = PairValue(row, scratch);
    std::memcpy(record + row.offset, &value, sizeof value);
    return;
  }
  const uint16_t word = scratch.words[row.word];
  uint16_t value = word;
  if (row.kind == kPrefMapInverted)
    value = word == 0 ? 1 : 0;
  else if (row.kind == kPrefMapLowByte)
    value = word & 0x00FF;
  std::memcpy(record + row.offset, &value, sizeof value);
}

// Folds the record's field into the scratch record; true when that changed the scratch record.
bool FoldField(const tPrefMapRow& row, const unsigned char* record, tOtherRecord& scratch) {
  if (row.size == 4) {
    uint32_t field;
    std::memcpy(&field, record + row.offset, sizeof field);
    if (field == PairValue(row, scratch))
      return false;
    const uint16_t high = static_cast<uint16_t>(field >> 16);
    const uint16_t low = static_cast<uint16_t>(field & 0xFFFF);
    if (row.kind == kPrefMapHighFirst) {
      scratch.words[row.word] = high;
      scratch.words[row.word + 1] = low;
    } else if (row.kind == kPrefMapLowFirst) {
      scratch.words[row.word] = low;
      scratch.words[row.word + 1] = high;
    }
    return true; // a kind that cannot store still counts as a change
  }
  uint16_t field;
  std::memcpy(&field, record + row.offset, sizeof field);
  uint16_t value = field;
  if (row.kind == kPrefMapInverted)
    value = field == 0 ? 1 : 0;
  else if (row.kind == kPrefMapLowByte)
    value = static_cast<uint16_t>(static_cast<int16_t>(static_cast<int8_t>(field & 0x00FF)));
  if (value == scratch.words[row.word])
    return false;
  scratch.words[row.word] = value;
  return true;
}

// Visits the rows group by group: `visit(group, eachRow)` runs once per other record, in the
// order of its first row, and `eachRow(fn)` calls fn on every row of that group and marks it
// done, so each other record is read (and written) once per call. The done marks are cleared
// first and all set at the end.
template <class Visit> void ForEachGroup(tPrefMapTable& table, Visit visit) {
  for (int r = 0; r < table.rowCount; ++r)
    table.rows[r].done = 0;
  for (int r = 0; r < table.rowCount; ++r) {
    const tPrefMapRow& group = table.rows[r];
    if (group.done)
      continue;
    visit(group, [&table, &group, r](auto&& fn) {
      for (int s = r; s < table.rowCount; ++s) {
        tPrefMapRow& row = table.rows[s];
        if (row.done || !SameOtherRecord(group, row))
          continue;
        fn(row);
        row.done = 1;
      }
    });
  }
}

} // namespace

short LoadPrefTable(tPrefMapTable& table, void* buffer, uint32_t* size) {
  if (!size)
    return 0;
  const uint32_t capacity = *size;
  if (!buffer) {
    *size = table.recordSize;
    return 1;
  }
  if (capacity < table.recordSize)
    return 0;
  *size = table.recordSize;

  auto* record = static_cast<unsigned char*>(buffer);
  ForEachGroup(table, [record](const tPrefMapRow& group, auto eachRow) {
    tOtherRecord scratch;
    LoadOtherRecord(group, scratch);
    eachRow([&](const tPrefMapRow& row) { StoreField(row, scratch, record); });
  });
  return 1;
}

short SavePrefTable(tPrefMapTable& table, const void* buffer, uint32_t size) {
  // The record size is at least twice the row count (every row holds 2 or 4 bytes), so this
  // also rejects a size below that.
  if (!buffer || size < table.recordSize)
    return 0;

  const auto* record = static_cast<const unsigned char*>(buffer);
  ForEachGroup(table, [record](const tPrefMapRow& group, auto eachRow) {
    tOtherRecord scratch;
    LoadOtherRecord(group, scratch);
    bool changed = false;
    eachRow([&](const tPrefMapRow& row) { changed = FoldField(row, record, scratch) || changed; });
    // Also when the load failed: the scratch record then holds zeros besides the changed
    // fields, and dropping the change would lose it while the save reports success.
    if (changed)
      SaveOtherRecord(group, scratch);
  });
  return 1;
}
