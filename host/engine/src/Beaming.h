// Beam groups by beat: consecutive notes shorter than a quarter whose positions fall in the same
// beat of the measure are beamed together.
#pragma once

#include <span>
#include <vector>

#include "Document.h"

namespace scribo::engine {

// Roles for `entries` in order. Rests and notes of a quarter or longer break a group; voice-2
// entries are left out of the groups and neither join nor break them. A group of one entry is
// not beamed. `beatLength` is in TDU; below 1 it counts as a quarter.
std::vector<BeamRole> ComputeBeams(std::span<const EXENTRY> entries, int beatLength);

} // namespace scribo::engine
