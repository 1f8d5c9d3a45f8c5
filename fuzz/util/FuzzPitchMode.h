// The formatting state a pitch fuzzer runs under, chosen by the input's first byte: MIDI
// numbers, or note names with middle C written in an octave from -4 to 9.
#pragma once

#include <cstddef>
#include <cstdint>

#include "SXUtilPitch.h"

inline bool SetFuzzPitchMode(uint8_t selector) {
  const bool names = selector & 1;
  SXUtilSetPitchFormatting(names ? static_cast<short>((selector >> 1) % 14 - 4) : kPitchFormatMidi);
  return names;
}
