// Key-signature words and the movable-tonic view of pitches.
#include "IntervalArithmetic.h"
#include "SXUtilTranspose.h"

short KeySigToOffsets(short keySig, tKeySigOffsets* out) {
  const unsigned word = static_cast<unsigned short>(keySig);
  const unsigned mode = word >> 8;
  if (word > 0x3fff || (mode != 0 && mode != 1))
    return kSXUtilBadKeySig;
  const int sharps = static_cast<int8_t>(word & 0xff);
  out->tonic.steps = static_cast<int16_t>(StepDegree(4 * sharps));
  out->tonic.alteration = static_cast<int16_t>(TonicAlteration(sharps));
  if (mode == 0) {
    out->minorShift = 0;
  } else {
    // The minor tonic lies a sixth above or a third below the major one; up when the major
    // tonic is a C or a D, so the minor tonic's degree stays within 0..6.
    const int r = sharps % 7;
    out->minorShift = (r == 0 || r == 2 || r == -5) ? 5 : -2;
  }
  return 0;
}

short SXUtilRelToAbsTCD(tDiaPitch* pitch, short keySig) {
  tKeySigOffsets offsets;
  if (short result = KeySigToOffsets(keySig, &offsets))
    return result;
  pitch->step = static_cast<int16_t>(pitch->step + offsets.minorShift);
  SXUtilTranspose(pitch, offsets.tonic);
  return 0;
}

short SXUtilAbsToRelTCD(tDiaPitch* pitch, short keySig) {
  tKeySigOffsets offsets;
  if (short result = KeySigToOffsets(keySig, &offsets))
    return result;
  tInterval down = offsets.tonic;
  SXUtilInvertInterval(&down);
  SXUtilTranspose(pitch, down);
  pitch->step = static_cast<int16_t>(pitch->step - offsets.minorShift);
  return 0;
}
