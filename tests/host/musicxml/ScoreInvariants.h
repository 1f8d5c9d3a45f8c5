// What a subdivision must keep, checked on an output against the input it came from. Shared by
// the random-score property test and the golden-file tests; a benchmark or fuzz target can run
// it on its own outputs.
#pragma once

#include <string>

namespace scoretest {

struct Comparison {
  std::string fault;    // empty when every invariant holds; else the first that fails, and where
  long notesBefore = 0; // notes and rests that take time, chord notes included
  long notesAfter = 0;
};

// The output validates against the schema wherever the input did, and imports again. In every
// measure of every part each voice lasts exactly as long as before, sounds each pitch (of each
// instrument, cue or not) over exactly the same time with at least as many notes, and keeps
// its lyrics and notations other than ties and tuplet brackets. Ties (sounding and drawn) and
// tuplet brackets open and close per part, voice and pitch as often as before. Everything that
// is not a note taking time (directions, harmony, figured bass, sounds, attributes, grace notes,
// barlines, ...) is still there, unchanged but for values in divisions, at the same time in
// quarters.
Comparison CompareSubdivision(const std::string& input, const std::string& output);

} // namespace scoretest
