// The subdivision pass without its dialog, for the benchmark host.
#include "SubdivisionPass.h"

extern "C" __attribute__((visibility("default"))) int
BenchRunSubdivision(EREGION* region, const tSubdivideParam* param, short layerCount) {
  ArmVoiceTwoWarning();
  return RunSubdivisionPass(region, *param, layerCount);
}
