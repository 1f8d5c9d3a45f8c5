// Writing an edited score back into its MusicXML source tree.
//
// Each entry of the edited score still linked to its source notes (through Entry::source) is
// compared with what was imported. Unchanged entries leave their elements alone; an entry that
// was split is followed by new entries (source -1), and together they replace the source notes
// in place, taking exactly the time those notes took, so backups, forwards, directions and the
// other voices stay where they were. Durations are written exactly: from the notated values and
// the tuplet ratios when they add up to the source duration, else as equal shares of it (a run
// without a tuplet record); the measure's divisions grow as needed to make them whole numbers.
// Measures without edits are left exactly as they were.
#pragma once

#include "MusicXmlSource.h"
#include "ScoreModel.h"

namespace scribo::musicxml {

struct ExportSummary {
  int changedMeasures = 0; // measures of a part whose elements were edited
  int splitEntries = 0;    // source entries replaced by runs of new ones
  int inexactNotes = 0;    // notes whose notated duration no note type shows exactly
  int removedEntries = 0;  // source entries no longer in the score (written as <forward>)
};

// Edits `source` to hold `edited`. Throws ScoreError when an edit cannot be expressed in the
// source tree (new entries with no source entry before them, or an entry moved to another
// staff, measure or layer).
ExportSummary ApplyScore(MusicXmlSource& source, const Score& edited);

} // namespace scribo::musicxml
