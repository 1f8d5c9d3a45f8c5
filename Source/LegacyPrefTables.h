// The ten older preference records that the host no longer keeps as such: each is a static
// table that says, field by field, which word of which 12-byte other record holds the value.
// LegacyPrefMapping.h runs the tables; this header holds their layout and contents.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "RecordTags.h"

// How a row's value travels between the other record's words and the preference field.
enum : int32_t {
  kPrefMapPlain = 0,     // 2 bytes: the word as it is
  kPrefMapHighFirst = 1, // 4 bytes: words `word` (high half) and `word` + 1 (low half)
  kPrefMapLowFirst = 2,  // 4 bytes: words `word` (low half) and `word` + 1 (high half)
  kPrefMapInverted = 3,  // 2 bytes: field 1 when the word is 0, else 0 (and back)
  kPrefMapLowByte = 4,   // 2 bytes: the word's low byte; saved sign-extended to 16 bits
};

// One row of a mapping table, 20 bytes, little-endian.
struct tPrefMapRow {
  uint16_t done;  // scratch of one call: 0 row not handled yet, 1 handled; 0 between calls
  char code[2];   // last two characters of the other record's tag: "21" means "ot21"
  uint16_t owner; // first key of the other record; 0 stands for 65534 (the document)
  uint16_t index; // second key of the other record
  int16_t offset; // byte offset of the field in the preference record
  int16_t word;   // first word (0..5) of the value in the other record
  int16_t size;   // bytes of the field: 2, or 4 for a value spread over two words
  uint16_t pad;   // 0
  int32_t kind;   // kPrefMap... conversion
};
static_assert(sizeof(tPrefMapRow) == 20);
static_assert(offsetof(tPrefMapRow, done) == 0);
static_assert(offsetof(tPrefMapRow, code) == 2);
static_assert(offsetof(tPrefMapRow, owner) == 4);
static_assert(offsetof(tPrefMapRow, index) == 6);
static_assert(offsetof(tPrefMapRow, offset) == 8);
static_assert(offsetof(tPrefMapRow, word) == 10);
static_assert(offsetof(tPrefMapRow, size) == 12);
static_assert(offsetof(tPrefMapRow, pad) == 14);
static_assert(offsetof(tPrefMapRow, kind) == 16);

// The tag of the row's other record: "ot" followed by its code.
constexpr uint32_t RowOtherTag(const tPrefMapRow& row) {
  return OtherRecordTag(row.code[0], row.code[1]);
}

// Whether two rows read and write the same other record (tag and keys as stored).
constexpr bool SameOtherRecord(const tPrefMapRow& a, const tPrefMapRow& b) {
  return a.code[0] == b.code[0] && a.code[1] == b.code[1] && a.owner == b.owner &&
         a.index == b.index;
}

// The tables, writable because their done marks change while a load or save runs.
extern std::array<tPrefMapRow, 11> EDT2005Prefs_MAP_ARRAY;            // "pf05"
extern std::array<tPrefMapRow, 36> EDTDistancePrefs_MAP_ARRAY;        // "pfDP"
extern std::array<tPrefMapRow, 25> EDTExtractPrefs_MAP_ARRAY;         // "pfEX"
extern std::array<tPrefMapRow, 49> EDTMiscDocPrefs_MAP_ARRAY;         // "pfMS"
extern std::array<tPrefMapRow, 11> EDTPianoBracePrefs_MAP_ARRAY;      // "pfPB"
extern std::array<tPrefMapRow, 22> EDTPageFormatPrefsScore_MAP_ARRAY; // "pfPF", number 0
extern std::array<tPrefMapRow, 7> EDTPlaybackPrefs_MAP_ARRAY;         // "pfPL"
extern std::array<tPrefMapRow, 20> EDTRepeatPrefs_MAP_ARRAY;          // "pfRP"
extern std::array<tPrefMapRow, 23> EDTSizePrefs_MAP_ARRAY;            // "pfSI"
extern std::array<tPrefMapRow, 43> EDTSmartShapePrefs_MAP_ARRAY;      // "pfSS"

// A table with the preference tag it serves.
struct tPrefMapTable {
  uint32_t tag;        // preference tag
  tPrefMapRow* rows;   // the writable rows
  int16_t rowCount;    // rows in `rows`
  uint32_t recordSize; // furthest row end: the bytes a caller's buffer must hold
};

constexpr int kPrefMapTableCount = 10;

// The ten tables, in the order of their tags.
tPrefMapTable* PrefMapTables();

// The table that serves `tag` with the key list `keys`, or null. "pfPF" has a table only for
// preference number 0 (keys[0] == 0; a null key list has no number and so no table); the
// other nine tags do not look at the keys.
tPrefMapTable* FindPrefMapTable(uint32_t tag, const unsigned short* keys);
