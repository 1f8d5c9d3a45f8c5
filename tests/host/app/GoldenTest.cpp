// scribo-host end to end against reviewed results: golden/NAME.musicxml subdivided with the
// options below must come out as golden/NAME.expected.musicxml (compared as XML, so only the
// way it is written may differ), valid against the MusicXML schema, the listed measures exactly
// as they went in, and standard error saying exactly what is listed.
#include <gtest/gtest.h>

#include <vector>

#include "ProgramRun.h"
#include "ScoreText.h"

using namespace apptest;
using namespace scoretest;
namespace fs = std::filesystem;

namespace {

struct GoldenCase {
  const char* name;
  const char* options;
  std::vector<const char*> untouched; // measures outside the selection
  const char* says = "";              // standard error, with -q
};

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
     "scribo-host: voices beyond the fourth of a staff are kept as they are and never "
     "subdivided: staff 1 voice 5\n"}};

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

// The first line where `actual` departs from `expected`, for a readable failure.
std::string FirstDifference(const std::string& expected, const std::string& actual) {
  std::istringstream e(expected), a(actual);
  for (int line = 1; e || a; ++line) {
    std::string le, la;
    std::getline(e, le);
    std::getline(a, la);
    if (le != la)
      return "line " + std::to_string(line) + ": expected \"" + le + "\", got \"" + la + "\"";
  }
  return "";
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
    EXPECT_EQ(
        FirstDifference(CanonicalXml(Slurp(Golden(std::string(c.name) + ".expected.musicxml"))),
                        CanonicalXml(Slurp(output))),
        "")
        << "the result is in " << output;
    EXPECT_EQ(SchemaErrors(output), "");
    for (const char* measure : c.untouched)
      EXPECT_EQ(MeasureText(output, measure), MeasureText(input, measure)) << "measure " << measure;
  }
}
