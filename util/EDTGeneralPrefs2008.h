// The document's general preferences record.
//
// Shared with the host bit for bit: little-endian, packed on 2-byte boundaries. Records only:
// the reference engine includes this header to store it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "RecordTags.h"

constexpr uint32_t kTagGeneralPrefs = FourCharTag("pfgp"); // keys {0}

#pragma pack(push, 2)

// General preferences, 66 bytes.
struct EDTGeneralPrefs2008 {
  uint8_t hostData0[38];
  int16_t pitchNames;  // 0: pitches are shown as MIDI note numbers; else as note names
  int16_t octaveShift; // semitones added to the written octave; a multiple of 12 to be usable
  uint8_t hostData42[24];
};

#pragma pack(pop)

static_assert(sizeof(EDTGeneralPrefs2008) == 66);
static_assert(offsetof(EDTGeneralPrefs2008, pitchNames) == 38);
static_assert(offsetof(EDTGeneralPrefs2008, octaveShift) == 40);
static_assert(offsetof(EDTGeneralPrefs2008, hostData42) == 42);
