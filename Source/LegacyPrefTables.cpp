// The contents of the ten mapping tables. Rows are in the field order of each preference
// record; within a table, rows that share an other record form one group, which the table
// method reads and writes once per call whatever the order of its rows.
#include "LegacyPrefTables.h"

#include "RecordTags.h"

namespace {

// A 2-byte field at `offset` from word `word` of the other record "ot<code>" {owner, index}.
constexpr tPrefMapRow W2(const char (&code)[3], uint16_t owner, uint16_t index, int16_t word,
                         int16_t offset, int32_t kind = kPrefMapPlain) {
  return tPrefMapRow{0, {code[0], code[1]}, owner, index, offset, word, 2, 0, kind};
}

// A 4-byte field at `offset` from words `word` (high half) and `word` + 1 (low half).
constexpr tPrefMapRow W4(const char (&code)[3], uint16_t owner, uint16_t index, int16_t word,
                         int16_t offset) {
  return tPrefMapRow{0, {code[0], code[1]}, owner, index, offset, word, 4, 0, kPrefMapHighFirst};
}

constexpr int32_t kInv = kPrefMapInverted;
constexpr int32_t kLow = kPrefMapLowByte;

template <size_t N> constexpr uint32_t FieldBytes(const std::array<tPrefMapRow, N>& rows) {
  uint32_t bytes = 0;
  for (const tPrefMapRow& row : rows)
    bytes += static_cast<uint32_t>(row.size);
  return bytes;
}

template <size_t N> constexpr uint32_t FurthestEnd(const std::array<tPrefMapRow, N>& rows) {
  uint32_t end = 0;
  for (const tPrefMapRow& row : rows)
    if (static_cast<uint32_t>(row.offset + row.size) > end)
      end = static_cast<uint32_t>(row.offset + row.size);
  return end;
}

// Every row must be one the table method can run: a known kind for its size, whole words
// inside the other record, an even field offset, no field overlapping another, no word of an
// other record feeding two fields (a save would have to store two values into it).
template <size_t N> constexpr bool RowsAreConsistent(const std::array<tPrefMapRow, N>& rows) {
  for (size_t i = 0; i < N; ++i) {
    const tPrefMapRow& r = rows[i];
    if (r.done != 0 || r.pad != 0 || r.offset < 0 || r.offset % 2 != 0 || r.word < 0)
      return false;
    if (r.size == 2) {
      if (r.kind != kPrefMapPlain && r.kind != kPrefMapInverted && r.kind != kPrefMapLowByte)
        return false;
    } else if (r.size == 4) {
      if (r.kind != kPrefMapHighFirst && r.kind != kPrefMapLowFirst)
        return false;
    } else {
      return false;
    }
    if (r.word + r.size / 2 > kOtherRecordWords)
      return false;
    for (size_t j = i + 1; j < N; ++j) {
      const tPrefMapRow& s = rows[j];
      if (r.offset < s.offset + s.size && s.offset < r.offset + r.size)
        return false;
      if (SameOtherRecord(r, s) && r.word < s.word + s.size / 2 && s.word < r.word + r.size / 2)
        return false;
    }
  }
  return true;
}

template <size_t N>
constexpr bool TableHas(const std::array<tPrefMapRow, N>& rows, size_t rowCount,
                        uint32_t fieldBytes, uint32_t recordSize) {
  return N == rowCount && FieldBytes(rows) == fieldBytes && FurthestEnd(rows) == recordSize &&
         RowsAreConsistent(rows);
}

constexpr std::array<tPrefMapRow, 11> k2005Prefs{{
    W2("69", 0, 0, 1, 0),
    W2("20", 0, 0, 3, 2),
    W2("39", 0, 0, 5, 4),
    W2("38", 0, 0, 5, 6),
    W2("39", 0, 0, 4, 8),
    W2("23", 0, 0, 5, 10),
    W2("56", 0, 0, 4, 12),
    W2("41", 0, 2, 2, 14),
    W2("41", 0, 2, 3, 16),
    W2("94", 0, 0, 4, 18),
    W2("94", 0, 2, 2, 20),
}};
static_assert(TableHas(k2005Prefs, 11, 22, 22));

// The row for offset 74 precedes the one for 72: "ot01" is the earlier group of the two.
constexpr std::array<tPrefMapRow, 36> kDistancePrefs{{
    W2("21", 0, 0, 3, 0),  W2("21", 0, 0, 5, 2),  W2("59", 0, 0, 3, 4),  W2("59", 0, 0, 4, 6),
    W2("22", 0, 0, 1, 8),  W2("22", 0, 0, 2, 10), W2("22", 0, 0, 3, 12), W2("67", 0, 0, 3, 14),
    W2("67", 0, 0, 4, 16), W4("68", 0, 0, 4, 18), W2("20", 0, 0, 1, 22), W2("20", 0, 0, 2, 24),
    W2("13", 0, 0, 3, 26), W2("19", 0, 0, 0, 28), W2("19", 0, 0, 1, 30), W2("68", 0, 0, 0, 32),
    W2("21", 0, 0, 1, 34), W2("68", 0, 0, 1, 36), W2("21", 0, 0, 0, 38), W2("27", 0, 0, 5, 40),
    W2("18", 0, 0, 0, 42), W2("18", 0, 0, 2, 44), W2("18", 0, 0, 1, 46), W2("21", 0, 0, 4, 48),
    W2("39", 0, 0, 0, 50), W2("39", 0, 0, 1, 52), W4("65", 0, 0, 0, 54), W2("67", 0, 0, 1, 58),
    W2("18", 0, 0, 5, 60), W2("67", 0, 0, 0, 62), W2("18", 0, 0, 3, 64), W2("18", 0, 0, 4, 66),
    W2("14", 0, 0, 4, 68), W2("14", 0, 0, 5, 70), W2("01", 0, 0, 5, 74), W2("77", 0, 4, 0, 72),
}};
static_assert(TableHas(kDistancePrefs, 36, 76, 76));

constexpr std::array<tPrefMapRow, 25> kExtractPrefs{{
    W2("77", 0, 4, 1, 0),  W2("77", 0, 4, 2, 2),  W2("77", 0, 4, 3, 4),  W2("77", 0, 4, 4, 6),
    W2("77", 0, 4, 5, 8),  W2("77", 0, 5, 0, 10), W2("77", 0, 5, 1, 12), W2("77", 0, 5, 2, 14),
    W2("77", 0, 5, 3, 16), W2("77", 0, 5, 4, 18), W2("77", 0, 5, 5, 20), W2("77", 0, 6, 0, 22),
    W2("77", 0, 6, 1, 24), W2("77", 0, 6, 2, 26), W2("77", 0, 6, 3, 28), W2("77", 0, 6, 4, 30),
    W2("77", 0, 6, 5, 32), W2("77", 0, 7, 0, 34), W2("77", 0, 7, 1, 36), W2("77", 0, 7, 2, 38),
    W2("77", 0, 7, 3, 40), W2("77", 0, 8, 0, 42), W2("77", 0, 8, 1, 44), W2("77", 0, 7, 4, 46),
    W2("77", 0, 7, 5, 48),
}};
static_assert(TableHas(kExtractPrefs, 25, 50, 50));

constexpr std::array<tPrefMapRow, 49> kMiscDocPrefs{{
    W2("36", 0, 0, 4, 0),        W2("03", 0, 0, 4, 2),  W2("03", 0, 0, 5, 4),
    W2("09", 0, 0, 5, 6),        W2("36", 0, 0, 2, 8),  W2("36", 0, 0, 3, 10),
    W2("36", 0, 0, 1, 12, kInv), W2("41", 0, 0, 0, 14), W2("41", 0, 0, 1, 16),
    W2("20", 0, 0, 0, 18),       W2("27", 0, 0, 1, 20), W2("01", 0, 0, 0, 22),
    W2("13", 0, 0, 2, 24),       W2("15", 0, 0, 4, 26), W2("27", 0, 0, 0, 28),
    W2("27", 0, 0, 4, 30),       W2("44", 0, 0, 4, 32), W2("27", 0, 0, 2, 34),
    W2("12", 0, 0, 2, 36),       W2("12", 0, 0, 3, 38), W2("12", 0, 0, 1, 40),
    W2("41", 0, 2, 1, 42),       W2("23", 0, 0, 1, 44), W2("19", 0, 0, 2, 46),
    W2("19", 0, 0, 3, 48),       W2("31", 0, 0, 5, 50), W2("19", 0, 0, 4, 52, kLow),
    W2("19", 0, 0, 5, 54, kLow), W2("44", 0, 0, 3, 56), W2("05", 0, 0, 4, 58),
    W2("05", 0, 0, 5, 60),       W2("13", 0, 0, 0, 62), W2("41", 0, 0, 5, 64),
    W2("12", 0, 0, 4, 66),       W2("01", 0, 0, 1, 68), W2("93", 0, 0, 4, 70),
    W2("76", 0, 0, 4, 72),       W2("93", 0, 0, 2, 74), W2("76", 0, 0, 3, 76),
    W2("17", 0, 0, 5, 78),       W2("23", 0, 0, 4, 80), W2("16", 0, 0, 5, 82),
    W4("62", 0, 0, 0, 84),       W4("62", 0, 0, 2, 88), W2("41", 0, 2, 0, 92),
    W2("41", 0, 0, 2, 94),       W4("41", 0, 1, 3, 96), W2("76", 0, 0, 5, 100),
    W2("FI", 10, 0, 2, 102),
}};
static_assert(TableHas(kMiscDocPrefs, 49, 104, 104));

constexpr std::array<tPrefMapRow, 11> kPianoBracePrefs{{
    W4("65", 0, 0, 2, 0),
    W4("60", 0, 0, 2, 4),
    W4("65", 0, 0, 4, 8),
    W4("60", 0, 0, 4, 12),
    W4("61", 0, 0, 0, 16),
    W4("61", 0, 0, 2, 20),
    W4("61", 0, 0, 4, 24),
    W4("60", 0, 0, 0, 28),
    W4("64", 0, 0, 2, 32),
    W4("45", 0, 0, 2, 36),
    W4("45", 0, 0, 4, 40),
}};
static_assert(TableHas(kPianoBracePrefs, 11, 44, 44));

constexpr std::array<tPrefMapRow, 22> kPageFormatPrefsScore{{
    W4("14", 0, 0, 0, 0),  W4("15", 0, 0, 2, 4),  W2("39", 0, 0, 2, 8),  W2("16", 0, 0, 0, 10),
    W2("16", 0, 0, 1, 12), W2("16", 0, 0, 2, 14), W2("16", 0, 0, 3, 16), W2("02", 0, 0, 0, 18),
    W2("02", 0, 0, 1, 20), W2("02", 0, 0, 2, 22), W2("02", 0, 0, 3, 24), W2("17", 0, 0, 0, 26),
    W2("17", 0, 0, 1, 28), W2("17", 0, 0, 3, 30), W2("17", 0, 0, 2, 32), W2("01", 0, 0, 4, 34),
    W2("02", 0, 0, 4, 36), W2("13", 0, 0, 5, 38), W2("13", 0, 0, 4, 40), W2("02", 0, 0, 5, 42),
    W2("03", 0, 0, 0, 44), W2("03", 0, 0, 1, 46),
}};
static_assert(TableHas(kPageFormatPrefsScore, 22, 48, 48));

constexpr std::array<tPrefMapRow, 7> kPlaybackPrefs{{
    W2("13", 0, 0, 1, 0),
    W2("39", 0, 0, 3, 2),
    W2("36", 0, 0, 0, 4),
    W2("36", 0, 0, 5, 6),
    W2("37", 0, 0, 0, 8),
    W2("37", 0, 0, 1, 10),
    W2("37", 0, 0, 2, 12),
}};
static_assert(TableHas(kPlaybackPrefs, 7, 14, 14));

constexpr std::array<tPrefMapRow, 20> kRepeatPrefs{{
    W2("70", 0, 0, 0, 0),  W2("70", 0, 0, 1, 2),  W2("70", 0, 0, 2, 4),  W2("70", 0, 0, 3, 6),
    W2("70", 0, 0, 4, 8),  W2("70", 0, 0, 5, 10), W2("71", 0, 0, 0, 12), W2("71", 0, 0, 1, 14),
    W2("71", 0, 0, 2, 16), W2("71", 0, 0, 3, 18), W2("71", 0, 0, 4, 20), W2("71", 0, 0, 5, 22),
    W2("05", 0, 0, 3, 24), W2("72", 0, 0, 0, 26), W2("76", 0, 0, 2, 28), W2("72", 0, 0, 1, 30),
    W2("72", 0, 0, 2, 32), W2("72", 0, 0, 3, 34), W2("72", 0, 0, 4, 36), W2("72", 0, 0, 5, 38),
}};
static_assert(TableHas(kRepeatPrefs, 20, 40, 40));

constexpr std::array<tPrefMapRow, 23> kSizePrefs{{
    W2("67", 0, 0, 2, 0),  W2("58", 0, 0, 4, 2),  W4("68", 0, 0, 2, 4),  W4("62", 0, 0, 4, 8),
    W2("03", 0, 0, 3, 12), W2("23", 0, 0, 0, 14), W2("14", 0, 0, 2, 16), W2("64", 0, 0, 1, 18),
    W2("27", 0, 0, 3, 20), W2("58", 0, 0, 5, 22), W2("59", 0, 0, 0, 24), W2("59", 0, 0, 1, 26),
    W2("01", 0, 0, 2, 28), W2("59", 0, 0, 2, 30), W2("01", 0, 0, 3, 32), W4("97", 0, 0, 0, 34),
    W2("20", 0, 0, 4, 38), W2("20", 0, 0, 5, 40), W2("03", 0, 0, 2, 42), W2("21", 0, 0, 2, 44),
    W2("64", 0, 0, 5, 46), W4("97", 0, 0, 2, 48), W2("69", 0, 0, 0, 52),
}};
static_assert(TableHas(kSizePrefs, 23, 54, 54));

// The low-byte fields at 28 to 48 each leave a 2-byte gap after them (30, 34, 38, 42, 46, 50),
// so the rows reach byte 108 while their sizes add up to 96.
constexpr std::array<tPrefMapRow, 43> kSmartShapePrefs{{
    W2("92", 0, 0, 0, 0),        W2("92", 0, 0, 1, 2),        W2("92", 0, 0, 2, 4),
    W2("92", 0, 0, 3, 6),        W2("FI", 11, 0, 0, 8),       W2("FI", 11, 0, 1, 10),
    W2("FI", 12, 0, 4, 12),      W2("FI", 11, 0, 4, 14),      W4("FI", 12, 0, 0, 16),
    W4("FI", 12, 0, 2, 20),      W2("FI", 11, 0, 2, 24),      W2("FI", 11, 0, 5, 26),
    W2("12", 0, 0, 5, 28, kLow), W2("11", 0, 0, 5, 32, kLow), W2("69", 0, 0, 4, 36, kLow),
    W2("69", 0, 0, 5, 40, kLow), W2("69", 0, 0, 2, 44, kLow), W2("69", 0, 0, 3, 48, kLow),
    W2("51", 0, 0, 5, 52),       W2("53", 0, 0, 5, 54),       W2("51", 0, 0, 4, 56),
    W2("53", 0, 0, 4, 58),       W2("50", 0, 0, 4, 60),       W2("53", 0, 1, 0, 62),
    W2("53", 0, 1, 1, 64),       W2("53", 0, 1, 2, 66),       W2("53", 0, 1, 3, 68),
    W4("51", 0, 0, 0, 70),       W4("51", 0, 0, 2, 74),       W2("53", 0, 0, 2, 78),
    W2("53", 0, 0, 0, 80),       W2("53", 0, 0, 1, 82),       W4("93", 0, 0, 0, 84),
    W2("53", 0, 0, 3, 88),       W2("50", 0, 0, 5, 90),       W2("50", 0, 0, 0, 92),
    W2("50", 0, 0, 1, 94),       W2("50", 0, 0, 2, 96),       W2("50", 0, 0, 3, 98),
    W2("97", 0, 1, 0, 100),      W2("97", 0, 1, 1, 102),      W2("97", 0, 1, 2, 104),
    W2("97", 0, 1, 3, 106),
}};
static_assert(TableHas(kSmartShapePrefs, 43, 96, 108));

} // namespace

std::array<tPrefMapRow, 11> EDT2005Prefs_MAP_ARRAY = k2005Prefs;
std::array<tPrefMapRow, 36> EDTDistancePrefs_MAP_ARRAY = kDistancePrefs;
std::array<tPrefMapRow, 25> EDTExtractPrefs_MAP_ARRAY = kExtractPrefs;
std::array<tPrefMapRow, 49> EDTMiscDocPrefs_MAP_ARRAY = kMiscDocPrefs;
std::array<tPrefMapRow, 11> EDTPianoBracePrefs_MAP_ARRAY = kPianoBracePrefs;
std::array<tPrefMapRow, 22> EDTPageFormatPrefsScore_MAP_ARRAY = kPageFormatPrefsScore;
std::array<tPrefMapRow, 7> EDTPlaybackPrefs_MAP_ARRAY = kPlaybackPrefs;
std::array<tPrefMapRow, 20> EDTRepeatPrefs_MAP_ARRAY = kRepeatPrefs;
std::array<tPrefMapRow, 23> EDTSizePrefs_MAP_ARRAY = kSizePrefs;
std::array<tPrefMapRow, 43> EDTSmartShapePrefs_MAP_ARRAY = kSmartShapePrefs;

namespace {

#define SCRIBO_PREF_TABLE(ARRAY, TAG, SOURCE)                                                      \
  tPrefMapTable {                                                                                  \
    FourCharTag(TAG), ARRAY.data(), static_cast<int16_t>(ARRAY.size()), FurthestEnd(SOURCE)        \
  }

tPrefMapTable sPrefMapTables[kPrefMapTableCount] = {
    SCRIBO_PREF_TABLE(EDT2005Prefs_MAP_ARRAY, "pf05", k2005Prefs),
    SCRIBO_PREF_TABLE(EDTDistancePrefs_MAP_ARRAY, "pfDP", kDistancePrefs),
    SCRIBO_PREF_TABLE(EDTExtractPrefs_MAP_ARRAY, "pfEX", kExtractPrefs),
    SCRIBO_PREF_TABLE(EDTMiscDocPrefs_MAP_ARRAY, "pfMS", kMiscDocPrefs),
    SCRIBO_PREF_TABLE(EDTPianoBracePrefs_MAP_ARRAY, "pfPB", kPianoBracePrefs),
    SCRIBO_PREF_TABLE(EDTPageFormatPrefsScore_MAP_ARRAY, "pfPF", kPageFormatPrefsScore),
    SCRIBO_PREF_TABLE(EDTPlaybackPrefs_MAP_ARRAY, "pfPL", kPlaybackPrefs),
    SCRIBO_PREF_TABLE(EDTRepeatPrefs_MAP_ARRAY, "pfRP", kRepeatPrefs),
    SCRIBO_PREF_TABLE(EDTSizePrefs_MAP_ARRAY, "pfSI", kSizePrefs),
    SCRIBO_PREF_TABLE(EDTSmartShapePrefs_MAP_ARRAY, "pfSS", kSmartShapePrefs),
};

#undef SCRIBO_PREF_TABLE

} // namespace

tPrefMapTable* PrefMapTables() {
  return sPrefMapTables;
}

tPrefMapTable* FindPrefMapTable(uint32_t tag, const unsigned short* keys) {
  if (tag == FourCharTag("pfPF") && (!keys || keys[0] != 0))
    return nullptr;
  for (tPrefMapTable& table : sPrefMapTables)
    if (table.tag == tag)
      return &table;
  return nullptr;
}
