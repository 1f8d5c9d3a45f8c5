// The subdivision command's pass over the selection: every qualifying note of every shown layer
// becomes a run of equal shorter notes (a tuplet where the notated duration does not divide).
#pragma once

#include <cstdint>

#include "HostTypes.h"
#include "tSubdivideParam.h"

// Allows the voice-2 warning to be shown once more; every invocation calls it before the pass.
void ArmVoiceTwoWarning();

// Walks the region measure by measure, staff by staff and shown layer by shown layer (layers
// 0 .. layerCount-1), holding one frame at a time: load, split, save if changed, free. If any
// save succeeded the region is rebeamed once and the result is 1; otherwise 0.
// Thread: host's main thread, inside the invocation.
short RunSubdivisionPass(EREGION* region, const tSubdivideParam& param, short layerCount);
