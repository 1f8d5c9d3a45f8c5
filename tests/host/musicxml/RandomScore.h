// Random scores for property tests, benchmarks and fuzzing: MusicXML 4.0 that validates and
// reads like a real export, and random option sets for the subdivide command.
#pragma once

#include <cstdint>
#include <string>

namespace scoretest {

// Parts of three kinds (a melody with lyrics, a two-staff piano part with figured bass, a drum
// kit whose notes name their instruments), several voices joined by <backup> and <forward>,
// time and divisions changes, a pickup, chords, rests, triplets and quintuplets, ties within
// and across barlines, grace and cue notes (some tied), directions, harmony and sounds, some
// with offsets and some before the measure's attributes, and now and then an overfull measure.
// Every voice of a measure fills it (the overfull one by a little more).
struct RandomScore {
  std::string xml;
  int lastNumber = 1; // the last measure's number; the first is 1, or 0 for a pickup
  int staves = 0;
};
RandomScore MakeRandomScore(uint32_t seed);

// Options for `scribo-host subdivide` that the plug-in accepts: parts (mostly 2..7) or a target
// duration in TDU, an optional duration range around it, and optional measure and staff
// selections within the score.
std::string RandomOptions(uint32_t seed, const RandomScore& score);

} // namespace scoretest
