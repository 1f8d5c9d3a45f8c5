// Intervals laid on written pitches, key-signature words and the movable-tonic view of
// pitches, and the host's staff-transposition word with the written pitches of transposing
// staves.
#include "SXUtilTranspose.h"

#include "SXUtilPitch.h"

namespace {

// Degree (0..6) of a step count: its remainder by 7, raised by 7 when negative.
int StepDegree(int steps) {
  const int r = steps % 7;
  return r < 0 ? r + 7 : r;
}

// True for the truncating remainders by 7 of a downward second, third, sixth or seventh, whose
// natural note lies a minor interval away from C.
bool IsDownwardImperfect(int steps) {
  const int r = steps % 7;
  return r == -1 || r == -2 || r == -5 || r == -6;
}

// Alteration of the major tonic of a key with `sharps` sharps (flats negative): -1 from two to
// seven flats, +1 for six and seven sharps, else 0 (and further out, one more per seven).
int TonicAlteration(int sharps) {
  const int n = sharps + 1;
  return n / 7 - (n < 0 ? 1 : 0);
}

int SignExtend(unsigned value, int bits) {
  const unsigned sign = 1u << (bits - 1);
  value &= (1u << bits) - 1;
  return static_cast<int>(value ^ sign) - static_cast<int>(sign);
}

// Steps of `a` up to `b` rounded up; a >= 0, b > 0.
int CeilDiv(int a, int b) {
  return (a + b - 1) / b;
}

} // namespace

const int8_t kTransposeUpAlts[6][6] = {
    {0, 1, 0, 0, 0, 1},  // D
    {1, 1, 0, 0, 1, 1},  // E
    {0, 0, -1, 0, 0, 0}, // F
    {0, 0, 0, 0, 0, 1},  // G
    {0, 1, 0, 0, 1, 1},  // A
    {1, 1, 0, 1, 1, 1},  // B
};

void SXUtilTranspose(tDiaPitch* pitch, const tInterval& interval) {
  const int a = StepDegree(pitch->step);
  const int b = StepDegree(interval.steps);
  int alteration = pitch->alteration;
  if (a > 0 && b > 0)
    alteration += kTransposeUpAlts[a - 1][b - 1];
  pitch->step = static_cast<int16_t>(pitch->step + interval.steps);
  pitch->alteration = static_cast<int16_t>(alteration + interval.alteration);
}

void SXUtilInvertInterval(tInterval* interval) {
  const int degree = StepDegree(interval->steps);
  const bool perfect = degree == 0 || degree == 3 || degree == 4;
  interval->alteration =
      static_cast<int16_t>(perfect ? -interval->alteration : -interval->alteration - 1);
  interval->steps = static_cast<int16_t>(-interval->steps);
}

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

void SXUtilStaffTransToInterval(short staffTrans, short keySig, tInterval* out) {
  const unsigned word = static_cast<unsigned short>(staffTrans);
  if (word & kStaffTransIntervalForm) {
    const int steps = SignExtend(word, 8);
    int alteration = SignExtend(word >> 8, 4);
    // The alteration is stored against the major or perfect interval; downward, the natural
    // note of a second, third, sixth or seventh lies a minor interval away.
    if (IsDownwardImperfect(steps))
      alteration -= 1;
    out->steps = static_cast<int16_t>(steps);
    out->alteration = static_cast<int16_t>(alteration);
    return;
  }

  int keyChange = SignExtend(word, 6);
  int steps = SignExtend(word >> 6, 6);
  if (!(word & kStaffTransKeyAsIs)) {
    const unsigned keyWord = static_cast<unsigned short>(keySig);
    const int current = keyWord < 0x4000 ? static_cast<int8_t>(keyWord & 0xff) : keySig;
    // Respell by octaves of fifths (12 sharps = one step up or down with the same sound) until
    // the resulting key keeps within six sharps or flats. Counted in one step rather than
    // looped, so a huge count from a non-standard key word costs nothing more.
    const int key = keyChange + current;
    if (key > 6) {
      const int octaves = CeilDiv(key - 6, 12);
      keyChange -= 12 * octaves;
      steps += octaves;
    } else if (key < -6) {
      const int octaves = CeilDiv(-6 - key, 12);
      keyChange += 12 * octaves;
      steps -= octaves;
    }
  }
  out->steps = static_cast<int16_t>(steps);
  out->alteration = static_cast<int16_t>(TonicAlteration(keyChange));
}

short SXUtilIntervalToStaffTrans(tInterval interval, short byKey) {
  if (interval.steps == 0 && interval.alteration == 0)
    return 0;
  const int steps = interval.steps;
  if (byKey) {
    // Key form: the reverse interval's key change in sharps (fifths up), and its steps.
    const int degree = StepDegree(steps);
    const int keyChange =
        -7 * interval.alteration + (degree <= 2 ? 0 : 6) - kMajorToChromatic[degree];
    return static_cast<short>((keyChange & 0x3f) | ((-steps & 0x3f) << 6));
  }
  int alteration = -interval.alteration;
  if (IsDownwardImperfect(steps))
    alteration -= 1;
  return static_cast<short>((-steps & 0xff) | ((alteration & 0x0f) << 8) | kStaffTransIntervalForm);
}

void SXUtilAbsToStaffTCD(tDiaPitch* pitch, short staffTrans, short keySig) {
  tInterval interval;
  SXUtilStaffTransToInterval(staffTrans, keySig, &interval);
  SXUtilTranspose(pitch, interval);
}

void SXUtilStaffToAbsTCD(tDiaPitch* pitch, short staffTrans, short keySig) {
  tInterval interval;
  SXUtilStaffTransToInterval(staffTrans, keySig, &interval);
  SXUtilInvertInterval(&interval);
  SXUtilTranspose(pitch, interval);
}
