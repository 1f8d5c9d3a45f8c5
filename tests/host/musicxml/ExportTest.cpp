// Export of edits that scribo-host cannot reach with the subdivision command: a run the host
// refused a tuplet record for, an entry that disappeared, a new entry with no source before it.
// What the command does reach is checked end to end by the golden files of tests/host/app.
#include <gtest/gtest.h>

#include "MusicXmlExport.h"
#include "SchemaCheck.h"
#include "ScoreError.h"
#include "ScoreFile.h"
#include "ScoreText.h"

using namespace scribo::musicxml;
using namespace scoretest;

namespace {

pugi::xml_node FirstMeasure(const MusicXmlSource& source) {
  return source.doc->child("score-partwise").child("part").child("measure");
}

// Each note as "duration type actual:normal", "[" where a tuplet bracket starts.
std::string Notes(pugi::xml_node measure) {
  std::string text;
  for (auto note : measure.children("note")) {
    pugi::xml_node modification = note.child("time-modification");
    text += std::string(note.child_value("duration")) + " " + note.child_value("type") + " " +
            modification.child_value("actual-notes") + ":" +
            modification.child_value("normal-notes") +
            (note.child("notations").child("tuplet") ? "[" : "") + ", ";
  }
  return text;
}

void ExpectValid(const MusicXmlSource& source) {
  EXPECT_EQ(SchemaErrors(SerializeScore(source)), "");
}

} // namespace

TEST(Export, ARunWithoutATupletRecordStillAddsUpExactly) {
  ImportedScore imported = ReadScoreFile(Golden("triplets.musicxml"));
  Score edited = imported.score;
  std::vector<Entry>& entries = edited.At(0, 0, 0).entries;
  // The first quarter in three, each notated as the truncated third (341): no note value shows
  // that, so the notes are 16ths, three in the time of four, without a bracket.
  Entry part = entries[0];
  part.duration = 341;
  part.actualDuration = 341;
  entries[0] = part;
  part.source = -1;
  for (int k = 1; k < 3; ++k) {
    part.position = 341 * k;
    entries.insert(entries.begin() + k, part);
  }
  ExportSummary summary = ApplyScore(imported.source, edited);
  EXPECT_EQ(summary.splitEntries, 1);
  EXPECT_EQ(summary.inexactNotes, 3);
  EXPECT_EQ(Notes(FirstMeasure(imported.source)),
            "1 16th 3:4, 1 16th 3:4, 1 16th 3:4, 3 quarter :, 3 quarter :, ");
  ExpectValid(imported.source);
}

TEST(Export, RemovedEntriesLeaveTheirTimeAndNewOnesNeedASourceBefore) {
  ImportedScore imported = ReadScoreFile(Golden("piano-staves.musicxml"));
  Score edited = imported.score;
  std::vector<Entry>& voice2 = edited.At(0, 0, 1).entries;
  voice2.erase(voice2.begin());
  EXPECT_EQ(ApplyScore(imported.source, edited).removedEntries, 1);
  pugi::xml_node forward = FirstMeasure(imported.source).child("forward");
  EXPECT_STREQ(forward.child_value("duration"), "1");
  EXPECT_STREQ(forward.child_value("voice"), "2");
  ExpectValid(imported.source);

  ImportedScore other = ReadScoreFile(Golden("piano-staves.musicxml"));
  Score orphan = other.score;
  Entry stray = orphan.At(1, 0, 0).entries[0];
  stray.source = -1;
  orphan.At(1, 0, 0).entries.insert(orphan.At(1, 0, 0).entries.begin(), stray);
  EXPECT_THROW(ApplyScore(other.source, orphan), ScoreError);
}
