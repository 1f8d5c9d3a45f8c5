// Record tags, key lists and the byte layouts of the host records that the engine keeps.
//
// A record is found by a 32-bit tag (four characters, first in the most significant byte) and a
// list of 16-bit key words. How many key words a tag uses is fixed by the tag's family:
//   "pf.." preference records        {number}
//   entry-detail records ('E' first) {entryNumber low word, entryNumber high word, index}
//   "SDNG" group specs               {first, second, 0}
//   everything else ("ot.." other records, "SOMS", "SOIS", "SOPS", "SOTX", "txbl", ...)
//                                    {main key, second key}
// Record bodies are little-endian byte strings in the host's layouts; the offsets below are
// the ones the SDK's accessors read.
#pragma once

#include <cstddef>
#include <cstdint>

namespace scribo::engine {

constexpr uint32_t MakeTag(char a, char b, char c, char d) {
  return (uint32_t(uint8_t(a)) << 24) | (uint32_t(uint8_t(b)) << 16) | (uint32_t(uint8_t(c)) << 8) |
         uint32_t(uint8_t(d));
}

constexpr uint32_t kTagTupletPrefs = MakeTag('p', 'f', 'T', 'P');  // 0x70665450, 30 bytes
constexpr uint32_t kTagTupletDetail = 0x45035450;                  // entry detail, 30 bytes
constexpr uint32_t kTagMeasureSpec = MakeTag('S', 'O', 'M', 'S');  // 30 bytes, {measure, 0}
constexpr uint32_t kTagStaffSpec = MakeTag('S', 'O', 'I', 'S');    // 136 bytes, {staff, 0}
constexpr uint32_t kTagGroupSpec = MakeTag('S', 'D', 'N', 'G');    // 36 bytes, {a, b, 0}
constexpr uint32_t kTagPageSpec = MakeTag('S', 'O', 'P', 'S');     // 22 bytes, {page, 0}
constexpr uint32_t kTagTextBlock = MakeTag('S', 'O', 'T', 'X');    // 30 bytes, {block, 0}
constexpr uint32_t kTagGeneralPrefs = MakeTag('p', 'f', 'g', 'p'); // 66 bytes, {0}
constexpr uint32_t kTagRawText = MakeTag('t', 'x', 'b', 'l');      // UTF-16 units, {text, 0}

constexpr size_t kTupletRecordSize = 30;
constexpr size_t kMeasureSpecSize = 30;
constexpr size_t kStaffSpecSize = 136;
constexpr size_t kGroupSpecSize = 36;
constexpr size_t kPageSpecSize = 22;
constexpr size_t kTextBlockSize = 30;
constexpr size_t kGeneralPrefsSize = 66;
constexpr size_t kOtherRecordSize = 12; // six 16-bit words

// Byte offsets of the signed 16-bit words the SDK reads.
constexpr size_t kMeasureSpecKeySig =
    2; // key-signature word: low byte sharps(+)/flats(-), high byte mode
constexpr size_t kMeasureSpecBeats = 8;        // time signature: number of beats
constexpr size_t kMeasureSpecBeatValue = 10;   // time signature: TDU of one beat (1024: quarter)
constexpr size_t kStaffSpecTransposition = 20; // staff-transposition word
constexpr size_t kStaffSpecFirstName = 30;     // text block of the staff's first name; 0: none
constexpr size_t kStaffSpecSecondName = 32;    // text block of the staff's second name; 0: none
constexpr size_t kTextBlockRawText = 0;        // raw text ("txbl") holding the block's text
constexpr size_t kGeneralPrefsPitchNames = 38; // pitch-name switch
constexpr size_t kGeneralPrefsOctaveShift = 40;

// Number of key words a tag's records are found by (see the table above).
constexpr size_t KeyWordsForTag(uint32_t tag) {
  if ((tag >> 16) == ((uint32_t('p') << 8) | uint32_t('f')))
    return 1;
  if ((tag >> 24) == 0x45)
    return 3;
  if (tag == kTagGroupSpec)
    return 3;
  return 2;
}
constexpr bool IsEntryDetailTag(uint32_t tag) {
  return (tag >> 24) == 0x45;
}
constexpr bool IsOtherRecordTag(uint32_t tag) {
  return (tag >> 16) == ((uint32_t('o') << 8) | uint32_t('t'));
}

// An entry-detail record's index given to SX_CreateEData: the engine picks the next free index
// of that entry and writes it back into the caller's key list.
constexpr uint16_t kNextFreeDetailIndex = 0xFFFF;

#pragma pack(push, 2)
// The tuplet entry-detail record and the tuplet preference record that is its template.
struct TupletRecord {
  int16_t tupletNumber;    // notes in the tuplet
  int16_t tupletUnit;      // notated duration of each, TDU
  int16_t referenceNumber; // in the time of this many...
  int16_t referenceUnit;   // ...units of this duration, TDU
  uint8_t preferences[22]; // host data copied from the preference record
};
#pragma pack(pop)
static_assert(sizeof(TupletRecord) == kTupletRecordSize);
static_assert(offsetof(TupletRecord, tupletNumber) == 0);
static_assert(offsetof(TupletRecord, tupletUnit) == 2);
static_assert(offsetof(TupletRecord, referenceNumber) == 4);
static_assert(offsetof(TupletRecord, referenceUnit) == 6);
static_assert(offsetof(TupletRecord, preferences) == 8);

// Tie bits the engine keeps in EXNOTE::noteFlags (host bits, outside the SDK's copy mask).
constexpr uint32_t kNoteTieStart = 0x40000000; // bit 30: tied to the same pitch in the next entry
constexpr uint32_t kNoteTieEnd =
    0x20000000; // bit 29: tied from the same pitch in the previous entry

} // namespace scribo::engine
