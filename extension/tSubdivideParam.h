// The parameters of one subdivision run, and the type of the dialog's remembered settings.
#pragma once

#include <cstdint>

struct tSubdivideParam {
  int32_t minDuration; // TDU; shortest actual duration that is split (inclusive)
  int32_t
      maxDuration; // TDU; longest actual duration that is split (inclusive); 0x7FFFFFFF: no bound
  int32_t targetDuration; // TDU; part length in target mode
  int16_t divisions;      // number of parts in divisions mode (2..32)
  int16_t allDurations;   // non-zero: every duration qualifies (the range is then 1..0x7FFFFFFF)
  int16_t byDivisions;    // non-zero: divisions mode; zero: target mode
};
