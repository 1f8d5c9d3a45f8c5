// The host's spec records of measures, staves, staff groups and pages.
//
// Shared with the host bit for bit: little-endian, packed on 2-byte boundaries. The host owns
// the layouts; the SDK names only the fields it reads, the rest is host data to be passed back
// unchanged. Records only: the reference engine includes this header to store them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "RecordTags.h"

// Record tags and their key lists.
constexpr uint32_t kTagMeasureSpec = FourCharTag("SOMS"); // keys {measure, 0}
constexpr uint32_t kTagStaffSpec = FourCharTag("SOIS");   // keys {staff, 0}
constexpr uint32_t kTagGroupSpec = FourCharTag("SDNG");   // keys {first key, second key, 0}
constexpr uint32_t kTagPageSpec = FourCharTag("SOPS");    // keys {page, 0}

#pragma pack(push, 2)

// Measure spec, 30 bytes.
struct EDTMeasureSpec2014 {
  uint8_t hostData0[2];
  int16_t keySig; // key-signature word: low byte sharps (+) or flats (-), high byte mode
  uint8_t hostData4[4];
  int16_t timeSigBeats;     // first word of the time signature
  int16_t timeSigBeatValue; // second word of the time signature
  uint8_t hostData12[18];
};

// Staff spec, 136 bytes.
struct EDTStaffSpec2014 {
  uint8_t hostData0[20];
  int16_t staffTrans; // staff-transposition word (interval form when bit 13 is set)
  uint8_t hostData22[8];
  int16_t firstNameBlock;  // text block of the staff's first name; 0: none
  int16_t secondNameBlock; // text block of the staff's second name; 0: none
  uint8_t hostData34[68];
  uint8_t loadSelector[12]; // host data that the host reads on a load: cleared before every load
  uint8_t hostData114[22];
};

// Staff-group spec, 36 bytes; its fields are the host's.
struct EDTGroupSpec {
  uint8_t hostData[36];
};

// Page spec, 22 bytes; its fields are the host's.
struct EDTPageSpec {
  uint8_t hostData[22];
};

#pragma pack(pop)

static_assert(sizeof(EDTMeasureSpec2014) == 30);
static_assert(offsetof(EDTMeasureSpec2014, keySig) == 2);
static_assert(offsetof(EDTMeasureSpec2014, timeSigBeats) == 8);
static_assert(offsetof(EDTMeasureSpec2014, timeSigBeatValue) == 10);
static_assert(offsetof(EDTMeasureSpec2014, hostData12) == 12);

static_assert(sizeof(EDTStaffSpec2014) == 136);
static_assert(offsetof(EDTStaffSpec2014, staffTrans) == 20);
static_assert(offsetof(EDTStaffSpec2014, firstNameBlock) == 30);
static_assert(offsetof(EDTStaffSpec2014, secondNameBlock) == 32);
static_assert(offsetof(EDTStaffSpec2014, loadSelector) == 102);
static_assert(offsetof(EDTStaffSpec2014, hostData114) == 114);

static_assert(sizeof(EDTGroupSpec) == 36);
static_assert(sizeof(EDTPageSpec) == 22);
