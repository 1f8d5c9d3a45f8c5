// A test-only plug-in image: the subdivision command without its dialog, so that a host-side
// test can run the pass on a region with parameters of its own choosing.
#include "SubdivisionPass.h"

#define PROBE_EXPORT extern "C" __attribute__((visibility("default")))

// The pass as an invocation runs it after the dialog: the warning armed, then the walk.
PROBE_EXPORT int ProbeRunSubdivision(EREGION* region, const tSubdivideParam* param,
                                     short layerCount) {
  ArmVoiceTwoWarning();
  return RunSubdivisionPass(region, *param, layerCount);
}

// The pass alone, without re-arming the warning: two calls behave as one invocation.
PROBE_EXPORT int ProbeContinueSubdivision(EREGION* region, const tSubdivideParam* param,
                                          short layerCount) {
  return RunSubdivisionPass(region, *param, layerCount);
}
