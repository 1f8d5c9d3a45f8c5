// Beam groups by beat: consecutive notes shorter than a quarter whose places fall in the same
// beat of the measure are beamed together.
#pragma once

#include <span>
#include <vector>

#include "Document.h"
#include "EDTTuplet.h"

namespace scribo::engine {

// Roles for `entries` in order. Rests and notes of a quarter or longer break a group; voice-2
// entries are left out of the groups and neither join nor break them. A group of one entry is
// not beamed. `beatLength` is in TDU; below 1 it counts as a quarter.
//
// `tuplets[i]` holds the tuplets entry i begins, outermost first (may be shorter than
// `entries`). Inside a tuplet an entry's place is worked out exactly from the tuplet's start
// and the notated durations before it, not taken from its stored position, which is a
// truncated running sum: the fourth of six eighths in the time of a half note starts on the
// second beat, not 1 TDU before it.
std::vector<BeamRole> ComputeBeams(std::span<const EXENTRY> entries, int beatLength,
                                   std::span<const std::vector<EDTTuplet>> tuplets = {});

} // namespace scribo::engine
