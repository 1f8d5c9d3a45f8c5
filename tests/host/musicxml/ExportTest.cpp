// Export: edits made the way the subdivision command makes them, written back into the source
// tree, checked against the schema and by importing the result again.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "MusicXmlExport.h"
#include "MusicXmlImport.h"
#include "ScoreError.h"
#include "ScoreFile.h"
#include "ScoreText.h"

using namespace scribo::musicxml;
using namespace scoretest;

namespace {

// Splits entry `i` into `n` parts as the command does: the entry stays the first part (keeping
// its source, ties and flags), plain copies follow, and an uneven split gets a tuplet record
// unless `withRecord` is false (then the notated durations are truncated).
void Split(Frame& frame, size_t i, int n, bool withRecord = true) {
  Entry first = frame.entries[i];
  int notated = first.duration;
  if (notated % n != 0 && withRecord) {
    int q = notated / n, u = 1;
    while (u <= 8191 && u <= q)
      u *= 2;
    first.tuplets.push_back({static_cast<int16_t>(n), static_cast<int16_t>(u),
                             static_cast<int16_t>(notated / u), static_cast<int16_t>(u)});
    notated = u * n;
  }
  first.duration = static_cast<int16_t>(notated / n);
  first.actualDuration /= n;
  first.beam = first.duration < 1024 ? Beam::Start : Beam::None;
  std::vector<Entry> run{first};
  for (int k = 1; k < n; ++k) {
    Entry copy = first;
    copy.source = -1;
    copy.entryNumber = 0;
    copy.tuplets.clear();
    for (auto& p : copy.pitches)
      p.tieStart = p.tieEnd = false;
    copy.position = first.position + k * first.actualDuration;
    copy.beam = first.duration < 1024 ? (k + 1 == n ? Beam::End : Beam::Continue) : Beam::None;
    run.push_back(copy);
  }
  frame.entries.erase(frame.entries.begin() + static_cast<long>(i));
  frame.entries.insert(frame.entries.begin() + static_cast<long>(i), run.begin(), run.end());
}

pugi::xml_node Measure(const MusicXmlSource& source, const char* number, const char* part = "P1") {
  return source.doc->child("score-partwise")
      .find_child_by_attribute("part", "id", part)
      .find_child_by_attribute("measure", "number", number);
}

std::string Text(const pugi::xml_node& node) {
  std::ostringstream out;
  node.print(out);
  return out.str();
}

std::vector<std::string> NoteValues(const pugi::xml_node& measure, const char* child) {
  std::vector<std::string> out;
  for (auto note : measure.children("note"))
    if (!note.child("chord"))
      out.push_back(note.child_value(child));
  return out;
}

// Writes the edited source, checks it against the schema and imports it again.
ImportedScore WriteAndReimport(const MusicXmlSource& source, const std::string& tag) {
  auto file = TempDir(tag) / "out.musicxml";
  WriteScoreFile(source, file);
  if (HaveXmllint()) {
    EXPECT_EQ(SchemaErrors(file), "");
  }
  return ReadScoreFile(file);
}

} // namespace

TEST(Export, AnUneditedScoreComesOutAsItWent) {
  ImportedScore imported = ReadScoreFile(Example("piano-two-voices.musicxml"));
  std::string before = SerializeScore(imported.source);
  ExportSummary summary = ApplyScore(imported.source, imported.score);
  EXPECT_EQ(summary.changedMeasures, 0);
  EXPECT_EQ(SerializeScore(imported.source), before);
  EXPECT_NE(before.find("<!DOCTYPE score-partwise"), std::string::npos);
}

TEST(Export, EvenSplitsReplaceTheSourceNotesAndLeaveOtherMeasuresAlone) {
  ImportedScore imported = ReadScoreFile(Example("melody-with-chords.musicxml"));
  std::vector<std::string> untouched;
  for (const char* m : {"2", "3", "4", "5", "6", "7", "8"})
    untouched.push_back(Text(Measure(imported.source, m)));
  Score edited = imported.score;
  Split(edited.At(0, 0, 0), 2, 2); // the G-B-D half-note chord into two quarters
  Split(edited.At(0, 0, 0), 0, 2); // the first quarter into two eighths (with its lyric)
  ExportSummary summary = ApplyScore(imported.source, edited);
  EXPECT_EQ(summary.changedMeasures, 1);
  EXPECT_EQ(summary.splitEntries, 2);
  EXPECT_EQ(summary.inexactNotes, 0);

  pugi::xml_node m1 = Measure(imported.source, "1");
  EXPECT_EQ(NoteValues(m1, "type"),
            (std::vector<std::string>{"eighth", "eighth", "quarter", "quarter", "quarter"}));
  EXPECT_EQ(NoteValues(m1, "duration"), (std::vector<std::string>{"1", "1", "2", "2", "2"}));
  // Each quarter of the chord has all three notes; the lyric stays with the first eighth.
  EXPECT_EQ(std::distance(m1.children("note").begin(), m1.children("note").end()), 9);
  auto notes = m1.children("note").begin();
  EXPECT_STREQ(notes->child("lyric").child_value("text"), "Day");
  EXPECT_FALSE((++notes)->child("lyric"));
  EXPECT_STREQ(notes->child("beam").child_value(), "end");
  for (int m = 0; m < 7; ++m)
    EXPECT_EQ(Text(Measure(imported.source, std::to_string(m + 2).c_str())), untouched[m]);

  ImportedScore again = WriteAndReimport(imported.source, "even");
  EXPECT_EQ(Positions(again.score.At(0, 0, 0)), (std::vector<int32_t>{0, 512, 1024, 2048, 3072}));
  EXPECT_EQ(again.score.At(0, 0, 0).entries[4].pitches.size(), 3u);
}

TEST(Export, UnevenSplitsBecomeTupletsWithExactDurations) {
  ImportedScore imported = ReadScoreFile(Example("melody-with-chords.musicxml"));
  Score edited = imported.score;
  Split(edited.At(0, 0, 0), 1, 3); // B4 quarter into a triplet of eighths
  ApplyScore(imported.source, edited);

  pugi::xml_node m1 = Measure(imported.source, "1");
  EXPECT_STREQ(m1.child("attributes").child_value("divisions"), "6");
  EXPECT_EQ(NoteValues(m1, "duration"), (std::vector<std::string>{"6", "2", "2", "2", "12"}));
  auto second = std::next(m1.children("note").begin());
  EXPECT_STREQ(second->child("time-modification").child_value("actual-notes"), "3");
  EXPECT_STREQ(second->child("time-modification").child_value("normal-notes"), "2");
  pugi::xml_node bracket = second->child("notations").child("tuplet");
  EXPECT_STREQ(bracket.attribute("type").value(), "start");
  EXPECT_STREQ(bracket.child("tuplet-actual").child_value("tuplet-type"), "eighth");
  EXPECT_STREQ(bracket.child("tuplet-normal").child_value("tuplet-number"), "2");
  auto fourth = std::next(second, 2);
  EXPECT_STREQ(fourth->child("notations").child("tuplet").attribute("type").value(), "stop");
  // The next measure says that the divisions are 2 again.
  EXPECT_STREQ(Measure(imported.source, "2").child("attributes").child_value("divisions"), "2");

  ImportedScore again = WriteAndReimport(imported.source, "uneven");
  const Frame& frame = again.score.At(0, 0, 0);
  EXPECT_EQ(Positions(frame), (std::vector<int32_t>{0, 1024, 1365, 1706, 2048}));
  ASSERT_EQ(frame.entries[1].tuplets.size(), 1u);
  EXPECT_EQ(frame.entries[1].tuplets[0], (TupletRatio{3, 512, 2, 512}));
  EXPECT_EQ(again.score.At(0, 1, 0).entries[2].position, 1024); // measure 2 unchanged in time
}

TEST(Export, ARunWithoutATupletRecordStillAddsUpExactly) {
  ImportedScore imported = ReadScoreFile(Example("melody-with-chords.musicxml"));
  Score edited = imported.score;
  Split(edited.At(0, 0, 0), 0, 3, /*withRecord=*/false); // notated 341 each
  ExportSummary summary = ApplyScore(imported.source, edited);
  EXPECT_EQ(summary.inexactNotes, 3);
  pugi::xml_node m1 = Measure(imported.source, "1");
  EXPECT_EQ(NoteValues(m1, "duration"), (std::vector<std::string>{"2", "2", "2", "6", "12"}));
  EXPECT_EQ(NoteValues(m1, "type"),
            (std::vector<std::string>{"16th", "16th", "16th", "quarter", "half"}));
  // A third of a quarter shown as a sixteenth: three in the time of four, with no bracket.
  pugi::xml_node first = m1.child("note");
  EXPECT_STREQ(first.child("time-modification").child_value("actual-notes"), "3");
  EXPECT_STREQ(first.child("time-modification").child_value("normal-notes"), "4");
  EXPECT_FALSE(first.child("notations").child("tuplet"));
  WriteAndReimport(imported.source, "norecord");
}

TEST(Export, SplitsInsideExistingTupletsNestAndNumberTheirBrackets) {
  ImportedScore imported = ReadScoreFile(Example("existing-tuplets.musicxml"));
  Score edited = imported.score;
  Split(edited.At(0, 1, 0), 0, 3); // first triplet eighth into three: a triplet in a triplet
  Split(edited.At(0, 1, 0), 4, 2); // the last triplet eighth into two sixteenths
  ApplyScore(imported.source, edited);

  pugi::xml_node m2 = Measure(imported.source, "2");
  EXPECT_STREQ(m2.child("attributes").child_value("divisions"), "18");
  EXPECT_EQ(NoteValues(m2, "duration"),
            (std::vector<std::string>{"2", "2", "2", "6", "3", "3", "18"}));
  pugi::xml_node first = m2.child("note");
  EXPECT_STREQ(first.child("time-modification").child_value("actual-notes"), "9");
  EXPECT_STREQ(first.child("time-modification").child_value("normal-notes"), "4");
  // The source's bracket (no number: 1) stays on the first note; the new one takes number 2.
  std::vector<std::string> numbers;
  for (auto t : first.child("notations").children("tuplet"))
    numbers.push_back(std::string(t.attribute("type").value()) + t.attribute("number").value());
  EXPECT_EQ(numbers, (std::vector<std::string>{"start", "start2"}));
  // The source's stop moved from the split note to the last sixteenth.
  auto last16th = std::next(m2.children("note").begin(), 5);
  EXPECT_STREQ(last16th->child("notations").child("tuplet").attribute("type").value(), "stop");
  EXPECT_STREQ(last16th->child("time-modification").child_value("actual-notes"), "3");

  ImportedScore again = WriteAndReimport(imported.source, "nested");
  const Frame& frame = again.score.At(0, 1, 0);
  EXPECT_EQ(Positions(frame), (std::vector<int32_t>{0, 113, 227, 341, 682, 853, 1024}));
  ASSERT_EQ(frame.entries[0].tuplets.size(), 2u);
  EXPECT_EQ(frame.entries[0].tuplets[0], (TupletRatio{3, 512, 2, 512})); // the source's, stated
  EXPECT_EQ(frame.entries[0].tuplets[1], (TupletRatio{3, 256, 2, 256}));
}

TEST(Export, RemovedEntriesLeaveTheirTimeAndOrphansAreRefused) {
  ImportedScore imported = ReadScoreFile(Example("piano-two-voices.musicxml"));
  Score edited = imported.score;
  Frame& voice2 = edited.At(0, 0, 1);
  voice2.entries.erase(voice2.entries.begin() + 1);
  ExportSummary summary = ApplyScore(imported.source, edited);
  EXPECT_EQ(summary.removedEntries, 1);
  pugi::xml_node forward = Measure(imported.source, "1").child("forward");
  EXPECT_STREQ(forward.child_value("duration"), "4");
  EXPECT_STREQ(forward.child_value("voice"), "2");
  WriteAndReimport(imported.source, "removed");

  ImportedScore other = ReadScoreFile(Example("piano-two-voices.musicxml"));
  Score orphan = other.score;
  Entry stray = orphan.At(1, 0, 0).entries[0];
  stray.source = -1;
  orphan.At(1, 0, 0).entries.insert(orphan.At(1, 0, 0).entries.begin(), stray);
  EXPECT_THROW(ApplyScore(other.source, orphan), ScoreError);
}

TEST(Export, ExtraVoicesAndRestsAreLeftExactlyAsTheyWere) {
  std::string voices;
  for (int v = 1; v <= 5; ++v)
    voices += (v > 1 ? "<backup><duration>4</duration></backup>" : "") +
              Note("C", 4, 2, "half", "", std::to_string(v)) + Rest(2, "half", std::to_string(v));
  ImportedScore imported = ImportMusicXml(
      OnePart("<measure number=\"1\">" + Attributes(1) + voices + "</measure>"), "v");
  auto notesOfVoice = [&](const char* voice) {
    std::string text;
    for (auto note : Measure(imported.source, "1").children("note"))
      if (std::string_view(note.child_value("voice")) == voice)
        text += Text(note);
    return text;
  };
  std::string fifth = notesOfVoice("5");
  Score edited = imported.score;
  for (int l = 0; l < kLayerCount; ++l)
    Split(edited.At(0, 0, l), 0, 2);
  ApplyScore(imported.source, edited);
  EXPECT_EQ(notesOfVoice("5"), fifth);
  size_t rests = 0;
  for (auto note : Measure(imported.source, "1").children("note"))
    rests += note.child("rest") ? 1 : 0;
  EXPECT_EQ(rests, 5u);
  ImportedScore again = WriteAndReimport(imported.source, "voices");
  EXPECT_EQ(again.score.At(0, 0, 3).entries.size(), 3u);
}
