// The tuplet entry-detail record and the tuplet preference record that serves as its template.
//
// Shared with the host: little-endian, packed on 2-byte boundaries. Copy values in and out;
// never bind a pointer or reference to one of its fields.
#pragma once

#include <cstddef>
#include <cstdint>

#include "RecordTags.h"

// "pfTP": the document's tuplet preferences, preference number 0.
constexpr uint32_t kTupletPrefsTag = FourCharTag("pfTP");
// The tuplet detail record attached to the first entry of a tuplet (bytes 'E', 0x03, 'T', 'P').
constexpr uint32_t kTupletDetailTag = 0x45035450;
// The index (-1) that a new detail record's key carries after the entry number: the host gives
// the record the entry's next free index (0 for its first), so a new record never replaces one
// the entry already holds, and writes that index back into the key.
constexpr uint16_t kNextFreeDetailIndex = 0xFFFF;

#pragma pack(push, 2)
// 30 bytes: `tupletNumber` notes of `tupletUnit` in the time of `referenceNumber` notes of
// `referenceUnit`.
struct EDTTuplet {
  int16_t tupletNumber;    // notes in the tuplet
  int16_t tupletUnit;      // TDU; notated duration of each of them, a power of two
  int16_t referenceNumber; // notes of `referenceUnit` whose time the tuplet takes
  int16_t referenceUnit;   // TDU
  uint8_t hostData[22];    // host's tuplet options, carried over from the preference record
};

// The detail record's key as the host reads it: the entry's number, then the index.
struct EDTTupletKey {
  uint32_t entryNumber; // EXENTRY::entryNumber
  uint16_t index;       // kNextFreeDetailIndex on creation
};
#pragma pack(pop)

static_assert(sizeof(EDTTuplet) == 30);
static_assert(offsetof(EDTTuplet, tupletNumber) == 0);
static_assert(offsetof(EDTTuplet, tupletUnit) == 2);
static_assert(offsetof(EDTTuplet, referenceNumber) == 4);
static_assert(offsetof(EDTTuplet, referenceUnit) == 6);
static_assert(offsetof(EDTTuplet, hostData) == 8);

static_assert(sizeof(EDTTupletKey) == 6);
static_assert(offsetof(EDTTupletKey, entryNumber) == 0);
static_assert(offsetof(EDTTupletKey, index) == 4);
