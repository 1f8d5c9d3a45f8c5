// Plain records of the notation utilities: time signatures, written pitches, pitch ranges,
// intervals and key-signature offsets. Packed on 2-byte boundaries like the host's records, so
// that they can be stored beside them; records only, no functions.
#pragma once

#include <cstddef>
#include <cstdint>

#pragma pack(push, 2)

// A measure's time signature, the two words of its measure spec unchanged.
struct tTimeSig {
  int16_t beats;
  int16_t beatValue;
};

// A written pitch: diatonic steps from middle C (0 middle C, 1 the D above, -1 the B below,
// 7 the C an octave up) and semitones added to the natural note of that step (+1 sharp, -1 flat;
// any value is carried).
struct tDiaPitch {
  int16_t step;
  int16_t alteration;
};

// A pitch range; `low` is not above `high` when it comes from SXUtilParseRange.
struct tDiaRange {
  tDiaPitch low;
  tDiaPitch high;
};

// An interval: diatonic size (0 unison, 1 second ... 7 octave; negative goes down) and the
// semitones added to the natural note that lies `steps` steps from C. (2, 0) is a major third
// up, (2, -1) a minor third up, (-2, 0) a minor third down (C down to A).
struct tInterval {
  int16_t steps;
  int16_t alteration;
};

// What a key-signature word means for transposition: the interval from C up to the major tonic
// (steps 0..6), and the step distance from the major to the minor tonic (0 in major keys; +5 or
// -2 in minor keys, whichever keeps the minor tonic's degree within 0..6).
struct tKeySigOffsets {
  tInterval tonic;
  int16_t minorShift;
};

#pragma pack(pop)

static_assert(sizeof(tTimeSig) == 4);
static_assert(offsetof(tTimeSig, beats) == 0);
static_assert(offsetof(tTimeSig, beatValue) == 2);
static_assert(sizeof(tDiaPitch) == 4);
static_assert(offsetof(tDiaPitch, step) == 0);
static_assert(offsetof(tDiaPitch, alteration) == 2);
static_assert(sizeof(tDiaRange) == 8);
static_assert(offsetof(tDiaRange, low) == 0);
static_assert(offsetof(tDiaRange, high) == 4);
static_assert(sizeof(tInterval) == 4);
static_assert(offsetof(tInterval, steps) == 0);
static_assert(offsetof(tInterval, alteration) == 2);
static_assert(sizeof(tKeySigOffsets) == 6);
static_assert(offsetof(tKeySigOffsets, tonic) == 0);
static_assert(offsetof(tKeySigOffsets, minorShift) == 4);
