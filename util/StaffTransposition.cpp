// The host's staff-transposition word and the written pitches of transposing staves.
#include "IntervalArithmetic.h"
#include "SXUtilPitch.h"
#include "SXUtilTranspose.h"

namespace {

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
