// Between written pitches and semitones.
#include "SXUtilPitch.h"
#include "UtilModDiv.h"

const int8_t kMajorToChromatic[7] = {0, 2, 4, 5, 7, 9, 11};

const tDiaPitch kChromaticToMajor[12] = {
    {0, 0}, {0, 1}, {1, 0}, {1, 1}, {2, 0}, {3, 0}, {3, 1}, {4, 0}, {4, 1}, {5, 0}, {6, -1}, {6, 0},
};

tDiaPitch SXUtilChromToAbsTCD(short chromatic) {
  short pitchClass, octave;
  UtilModDiv(chromatic, 12, &pitchClass, &octave);
  const tDiaPitch written = kChromaticToMajor[pitchClass];
  return {static_cast<int16_t>(7 * octave + written.step), written.alteration};
}

short SXUtilAbsTCDToChrom(const tDiaPitch& pitch) {
  short degree, octave;
  UtilModDiv(pitch.step, 7, &degree, &octave);
  return static_cast<short>(kMajorToChromatic[degree] + 12 * octave + pitch.alteration);
}
