// Internal to the utilities: the small pieces of step and key arithmetic that transposition,
// key signatures and staff transpositions share.
#pragma once

// Degree (0..6) of a step count: its remainder by 7, raised by 7 when negative.
inline int StepDegree(int steps) {
  const int r = steps % 7;
  return r < 0 ? r + 7 : r;
}

// True for the truncating remainders by 7 of a downward second, third, sixth or seventh, whose
// natural note lies a minor interval away from C.
inline bool IsDownwardImperfect(int steps) {
  const int r = steps % 7;
  return r == -1 || r == -2 || r == -5 || r == -6;
}

// Alteration of the major tonic of a key with `sharps` sharps (flats negative): -1 from two to
// seven flats, +1 for six and seven sharps, else 0 (and further out, one more per seven).
inline int TonicAlteration(int sharps) {
  const int n = sharps + 1;
  return n / 7 - (n < 0 ? 1 : 0);
}
