// Intervals laid on written pitches.
#include "SXUtilTranspose.h"

#include "IntervalArithmetic.h"

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
