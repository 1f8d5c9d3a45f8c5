// scribo-host end to end against reviewed results: golden/NAME.musicxml subdivided with the
// options below must come out as golden/NAME.expected.musicxml (compared as XML, so only the
// way it is written may differ), keep what CompareSubdivision checks (valid wherever the input
// is), the listed measures exactly as they went in, and standard error saying exactly what is
// listed.
#include <gtest/gtest.h>

#include <vector>

#include "ProgramRun.h"
#include "ScoreInvariants.h"
#include "ScoreText.h"

using namespace apptest;
using namespace scoretest;
namespace fs = std::filesystem;

namespace {

struct GoldenCase {
  const char* name;
  const char* options;
  std::vector<const char*> untouched; // measures outside the selection
  std::string says = "";              // standard error, with -q
};

// What scribo-host says of what it keeps as it is.
std::string Kept(const std::string& what, const std::string& where) {
  return "scribo-host: " + what + " are kept as they are and never subdivided: " + where + "\n";
}

const GoldenCase kCases[] = {
    // Even splits: a chord, lyrics on the first part, dotted values, ties across the bar.
    {"chords-and-ties", "--divisions 2 --measures 2-3", {"1"}},
    // Uneven splits become tuplets of eighths (3:2), even ones stay plain; rests stay.
    {"triplets", "--divisions 3", {}},
    // Quintuplets of two units: sixteenths (5:4) and 32nds (5:4).
    {"quintuplets", "--divisions 5", {}},
    // Triplets in an existing triplet nest (9:4) and number their brackets.
    {"nested-tuplets", "--divisions 3", {}},
    // 6/8: beamed by dotted quarter, rests and quarters break beams; a target from the palette
    // within a range given by a dotted palette value and a typed number.
    {"compound-meter-range", "--target 16th --min dotted-quarter --max 2048", {}},
    // Only the lower staff of a piano part is selected.
    {"piano-staves", "--divisions 2 --staves 2", {}},
    // The fifth voice of a staff and a grace note are kept as they are.
    {"five-voices",
     "--divisions 2",
     {},
     Kept("voices beyond the fourth of a staff", "staff 1 voice 5")},
    // Six eighths in the time of a half note are beamed by beat, 3+3.
    {"half-in-six", "--divisions 6", {}},
    // Every copy of a drum note keeps the instrument it plays, chord notes too.
    {"percussion", "--divisions 2", {}},
    // Tied cue notes keep only drawn ties; directions placed by offset stay where they were when
    // the divisions grow, and the unselected measure after them states its own.
    {"cue-ties-and-offsets", "--divisions 3 --measures 1-2", {}},
    // Notes the engine cannot hold are written back untouched; the rest is split.
    {"zero-duration", "--divisions 2", {}, Kept("notes of duration 0", "measure 1 of part P1")},
    {"overfull",
     "--divisions 2",
     {},
     Kept("notes that end past their measure's time signature", "measure 1 of part P1")},
    {"maxima",
     "--divisions 2",
     {},
     Kept("notes longer than the engine's longest notated value (32767 TDU; a maxima is 32768)",
          "measure 1 of part P1")}};

std::string MeasureText(const fs::path& file, const char* number) {
  pugi::xml_document doc;
  doc.load_file(file.c_str());
  std::ostringstream text;
  doc.child("score-partwise")
      .child("part")
      .find_child_by_attribute("measure", "number", number)
      .print(text);
  return text.str();
}

} // namespace

TEST(Golden, EachScoreComesOutAsReviewed) {
  fs::path dir = TempDir("golden");
  for (const GoldenCase& c : kCases) {
    SCOPED_TRACE(c.name);
    fs::path input = Golden(std::string(c.name) + ".musicxml");
    fs::path output = dir / (std::string(c.name) + ".musicxml");
    HostRun run = RunHost("subdivide " + Q(input) + " -o " + Q(output) + " -q " + c.options);
    ASSERT_EQ(run.code, 0) << run.err;
    EXPECT_EQ(run.err, c.says);
    // On a difference GoogleTest shows the lines that differ.
    EXPECT_EQ(CanonicalXml(Slurp(output)),
              CanonicalXml(Slurp(Golden(std::string(c.name) + ".expected.musicxml"))))
        << "the result is in " << output;
    EXPECT_EQ(CompareSubdivision(Slurp(input), Slurp(output)).fault, "");
    for (const char* measure : c.untouched)
      EXPECT_EQ(MeasureText(output, measure), MeasureText(input, measure)) << "measure " << measure;
  }
}
