// scribo-host end to end: the built program, the built engine and plug-in bundles, the example
// scores and the MusicXML schema.
#include <gtest/gtest.h>

#include <map>

#include "ProgramRun.h"
#include "Rational.h"
#include "ScoreFile.h"
#include "ScoreText.h"
#include "XmlNumbers.h"

using namespace apptest;
using namespace scoretest;
using scribo::musicxml::Rational;
namespace fs = std::filesystem;

namespace {

std::string Q(const fs::path& p) {
  return "'" + p.string() + "'";
}

// Every voice of every measure fills the time signature exactly (in quarters).
void ExpectFullMeasures(const fs::path& file) {
  pugi::xml_document doc;
  ASSERT_TRUE(doc.load_file(file.c_str()));
  for (auto part : doc.child("score-partwise").children("part")) {
    Rational divisions = 1, length = 4;
    for (auto measure : part.children("measure")) {
      std::map<std::string, Rational> filled;
      for (auto child : measure.children()) {
        std::string_view name = child.name();
        if (name == "attributes") {
          if (auto d = child.child("divisions"))
            divisions = scribo::musicxml::ParseDecimal(d.child_value());
          if (auto t = child.child("time"))
            length = Rational(4 * t.child("beats").text().as_int(),
                              t.child("beat-type").text().as_int());
        } else if (name == "note" && !child.child("chord") && !child.child("grace")) {
          filled[child.child_value("voice")] +=
              scribo::musicxml::ParseDecimal(child.child_value("duration")) / divisions;
        }
      }
      for (const auto& [voice, quarters] : filled)
        EXPECT_EQ(quarters, length) << file << " measure " << measure.attribute("number").value()
                                    << " voice " << voice << ": " << quarters.ToString();
    }
  }
}

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

size_t EntriesIn(const scribo::musicxml::Score& score, int staff, int measure, int layer) {
  return score.At(staff, measure, layer).entries.size();
}

} // namespace

TEST(CommandLine, EachExampleSubdividesIntoValidConsistentMusicXml) {
  fs::path dir = TempDir("examples");
  struct Case {
    const char* example;
    const char* options;
  };
  const Case cases[] = {{"melody-with-chords.musicxml", "--divisions 2"},
                        {"melody-with-chords.musicxml", "--target eighth --measures 1-3"},
                        {"piano-two-voices.musicxml", "--target eighth"},
                        {"piano-two-voices.musicxml", "--divisions 3 --staves 2"},
                        {"existing-tuplets.musicxml", "--divisions 3"},
                        {"existing-tuplets.musicxml", "--target 170 --measures 2-3"}};
  int index = 0;
  for (const auto& c : cases) {
    fs::path out = dir / ("out" + std::to_string(index++) + ".musicxml");
    HostRun run = RunHost("subdivide " + Q(Example(c.example)) + " -o " + Q(out) + " " + c.options);
    ASSERT_EQ(run.code, 0) << c.example << " " << c.options << ": " << run.err;
    if (HaveXmllint()) {
      EXPECT_EQ(SchemaErrors(out), "") << c.example << " " << c.options;
    }
    ExpectFullMeasures(out);
  }

  // What came out, imported again.
  auto melody = scribo::musicxml::ReadScoreFile(dir / "out0.musicxml").score;
  EXPECT_EQ(EntriesIn(melody, 0, 0, 0), 6u); // 3 entries, each in two
  EXPECT_EQ(EntriesIn(melody, 0, 1, 0), 9u); // the rest stays one entry
  EXPECT_EQ(EntriesIn(melody, 0, 5, 0), 1u); // the measure rest too
  auto targeted = scribo::musicxml::ReadScoreFile(dir / "out1.musicxml").score;
  EXPECT_EQ(EntriesIn(targeted, 0, 0, 0), 8u); // quarter, quarter, half: 2 + 2 + 4 eighths
  EXPECT_EQ(EntriesIn(targeted, 0, 3, 0), 2u); // measure 4 is outside the selection
  auto piano = scribo::musicxml::ReadScoreFile(dir / "out3.musicxml").score;
  EXPECT_EQ(EntriesIn(piano, 0, 0, 1), 3u); // staff 1 not selected
  EXPECT_EQ(EntriesIn(piano, 1, 0, 0), 3u); // dotted half in three
  auto tuplets = scribo::musicxml::ReadScoreFile(dir / "out5.musicxml").score;
  const auto& m2 = tuplets.At(0, 1, 0).entries;
  // Triplet eighths (341) in two, the rest kept, the quarter in six (6 x 170 is 4 short of
  // 1024): six sixteenths in the time of four.
  ASSERT_EQ(m2.size(), 11u);
  EXPECT_EQ(m2[0].duration, 256);
  EXPECT_EQ(m2[1].position, 170);
  EXPECT_FALSE(m2[2].isNote);
  ASSERT_EQ(m2[5].tuplets.size(), 1u);
  EXPECT_EQ(m2[5].tuplets[0], (scribo::musicxml::TupletRatio{6, 256, 4, 256}));
}

TEST(CommandLine, MeasuresOutsideTheSelectionComeOutAsTheyWent) {
  fs::path dir = TempDir("unchanged");
  fs::path out = dir / "piano.musicxml";
  HostRun run = RunHost("subdivide " + Q(Example("piano-two-voices.musicxml")) + " -o " + Q(out) +
                        " --divisions 2 --measures 2-3");
  ASSERT_EQ(run.code, 0) << run.err;
  EXPECT_EQ(MeasureText(out, "1"), MeasureText(Example("piano-two-voices.musicxml"), "1"));
  EXPECT_EQ(MeasureText(out, "4"), MeasureText(Example("piano-two-voices.musicxml"), "4"));
  EXPECT_NE(MeasureText(out, "2"), MeasureText(Example("piano-two-voices.musicxml"), "2"));
  // The rest of voice 2 in measure 2 is the same element as before.
  pugi::xml_document doc;
  doc.load_file(out.c_str());
  auto m2 =
      doc.child("score-partwise").child("part").find_child_by_attribute("measure", "number", "2");
  int rests = 0;
  for (auto note : m2.children("note"))
    if (note.child("rest")) {
      ++rests;
      EXPECT_STREQ(note.child_value("duration"), "4");
      EXPECT_STREQ(note.child_value("type"), "quarter");
    }
  EXPECT_EQ(rests, 1);
}

TEST(CommandLine, ARejectedDialogValuePrintsThePluginsAlertAndWritesNothing) {
  fs::path dir = TempDir("rejected");
  fs::path out = dir / "never.musicxml";
  HostRun run = RunHost("subdivide " + Q(Example("melody-with-chords.musicxml")) + " -o " + Q(out) +
                        " --divisions 33");
  EXPECT_EQ(run.code, 2);
  EXPECT_NE(run.err.find(PluginString("20128,4")), std::string::npos) << run.err;
  EXPECT_FALSE(fs::exists(out));

  // The minimum above the maximum, chosen from the palettes.
  run = RunHost("subdivide " + Q(Example("melody-with-chords.musicxml")) + " -o " + Q(out) +
                " --divisions 2 --min half --max quarter");
  EXPECT_EQ(run.code, 2);
  EXPECT_NE(run.err.find(PluginString("20128,3")), std::string::npos) << run.err;
  EXPECT_FALSE(fs::exists(out));
  EXPECT_TRUE(fs::is_empty(dir));
}

TEST(CommandLine, TheDurationRangeComesFromPalettesAndTypedNumbers) {
  fs::path dir = TempDir("range");
  fs::path out = dir / "range.musicxml";
  // Only notes from a dotted quarter (palette and dotted box) to a half (typed) are split.
  HostRun run = RunHost("subdivide " + Q(Example("melody-with-chords.musicxml")) + " -o " + Q(out) +
                        " --divisions 2 --min dotted-quarter --max 2048");
  ASSERT_EQ(run.code, 0) << run.err;
  auto score = scribo::musicxml::ReadScoreFile(out).score;
  EXPECT_EQ(EntriesIn(score, 0, 0, 0), 4u); // quarters kept, the half-note chord split
  EXPECT_EQ(EntriesIn(score, 0, 2, 0), 5u); // dotted quarter and half split, eighth kept
  EXPECT_EQ(EntriesIn(score, 0, 7, 0), 1u); // the whole note is longer than the maximum
}

TEST(CommandLine, BadInputsAndOutputsGiveOneLineAndNoFile) {
  fs::path dir = TempDir("bad");
  std::ofstream(dir / "broken.musicxml") << "<score-partwise>\n<part-list>\n</score-partwise>\n";
  std::string melody = Q(Example("melody-with-chords.musicxml"));
  struct Case {
    std::string args;
    int code;
    std::string says;
  };
  const Case cases[] = {
      {"subdivide " + Q(dir / "broken.musicxml") + " -o " + Q(dir / "o.musicxml") +
           " --divisions 2",
       1, "not well-formed XML at line 3"},
      {"subdivide " + Q(dir / "absent.musicxml") + " -o " + Q(dir / "o.musicxml") +
           " --divisions 2",
       1, "No such file or directory"},
      {"subdivide " + melody + " -o " + Q(dir / "o.musicxml") + " --divisions 2 --measures 7-9", 1,
       "the score has 8 measures"},
      {"subdivide " + melody + " -o " + Q(dir / "o.musicxml") + " --divisions 2 --staves 2", 1,
       "the score has 1 staves"},
      {"subdivide " + melody + " -o " + Q(dir / "no" / "o.musicxml") + " --divisions 2", 1,
       "does not exist"},
      {"subdivide " + melody + " -o " + Q(dir) + " --divisions 2", 1, "it is a folder"},
      {"subdivide " + melody + " -o " + Q(dir / "o.musicxml") + " --target banana", 64,
       "not a duration"},
      {"subdivide " + melody + " -o " + Q(dir / "o.musicxml"), 64, "--divisions N or --target"},
      {"subdivide " + melody + " -o " + Q(dir / "o.musicxml") + " --divisions 2 --measures 3-1", 64,
       "give a range"},
      {"subdivide " + melody + " -o " + melody + " --divisions 2", 64, "pass --in-place"},
  };
  for (const auto& c : cases) {
    HostRun run = RunHost(c.args);
    EXPECT_EQ(run.code, c.code) << c.args << "\n" << run.err;
    EXPECT_EQ(run.ErrLines(), 1) << c.args << "\n" << run.err;
    EXPECT_NE(run.err.find(c.says), std::string::npos) << c.args << "\n" << run.err;
    EXPECT_EQ(run.err.rfind("scribo-host: ", 0), 0u) << run.err;
  }
  EXPECT_FALSE(fs::exists(dir / "o.musicxml"));
  EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 1);
}

TEST(CommandLine, BundlesThatAreNotPluginsAreReportedNotCrashedOn) {
  fs::path dir = TempDir("bundles");
  fs::create_directories(dir / "Empty.bundle" / "Contents");
  std::string melody = Q(Example("melody-with-chords.musicxml"));
  std::string output = " -o " + Q(dir / "o.musicxml") + " --divisions 2 --plugin ";
  const std::pair<fs::path, std::string> cases[] = {
      {scribotest::BuildDir() / "NotationEngine.bundle", "exports no main"},
      {dir / "Empty.bundle", "has no executable"},
      {dir / "Missing.bundle", "no such bundle"}};
  for (const auto& [bundle, says] : cases) {
    HostRun run = RunHost("subdivide " + melody + output + Q(bundle));
    EXPECT_EQ(run.code, 3) << run.err;
    EXPECT_NE(run.err.find(says), std::string::npos) << run.err;
    EXPECT_EQ(run.ErrLines(), 1);
  }
  EXPECT_FALSE(fs::exists(dir / "o.musicxml"));
}

TEST(CommandLine, MenuInfoInPlaceCompressedAndTheTerminalDialog) {
  HostRun menu = RunHost("menu");
  ASSERT_EQ(menu.code, 0) << menu.err;
  EXPECT_EQ(menu.out.substr(0, menu.out.find('\n')), PluginString("20000,1"));

  HostRun info = RunHost("info " + Q(Example("existing-tuplets.musicxml")));
  ASSERT_EQ(info.code, 0) << info.err;
  EXPECT_NE(info.out.find("staves: 1, measures: 5"), std::string::npos);
  EXPECT_NE(info.out.find("layer 1: 19 entries (18 notes, 1 rests), 4 tuplets"), std::string::npos)
      << info.out;
  EXPECT_NE(info.out.find("measure 3, layer 1, position 0: 5 x 256 in the time of 4 x 256 TDU"),
            std::string::npos);

  fs::path dir = TempDir("cli");
  fs::copy_file(Example("melody-with-chords.musicxml"), dir / "copy.musicxml");
  HostRun inPlace = RunHost("subdivide " + Q(dir / "copy.musicxml") + " --in-place --divisions 2");
  ASSERT_EQ(inPlace.code, 0) << inPlace.err;
  EXPECT_EQ(EntriesIn(scribo::musicxml::ReadScoreFile(dir / "copy.musicxml").score, 0, 0, 0), 6u);

  HostRun packed = RunHost("subdivide " + Q(Example("existing-tuplets.musicxml")) + " -o " +
                           Q(dir / "t.mxl") + " --divisions 2 -q");
  ASSERT_EQ(packed.code, 0) << packed.err;
  EXPECT_EQ(packed.err, "");
  HostRun unpacked = RunHost("subdivide " + Q(dir / "t.mxl") + " -o " + Q(dir / "t.musicxml") +
                             " --divisions 2 --measures 5");
  ASSERT_EQ(unpacked.code, 0) << unpacked.err;
  EXPECT_EQ(EntriesIn(scribo::musicxml::ReadScoreFile(dir / "t.musicxml").score, 0, 4, 0), 4u);

  // The dialog in the terminal: divisions mode with 4 parts, then OK.
  HostRun dialog = RunHost("subdivide " + Q(Example("melody-with-chords.musicxml")) + " -o " +
                               Q(dir / "d.musicxml") + " --dialog --measures 8",
                           "click 13\ntype 14 4\nok\n");
  ASSERT_EQ(dialog.code, 0) << dialog.err;
  EXPECT_NE(dialog.err.find("13  (*)"), std::string::npos) << dialog.err;
  EXPECT_EQ(EntriesIn(scribo::musicxml::ReadScoreFile(dir / "d.musicxml").score, 0, 7, 0), 4u);
  HostRun cancelled = RunHost("subdivide " + Q(Example("melody-with-chords.musicxml")) + " -o " +
                                  Q(dir / "c.musicxml") + " --dialog",
                              "type 14 40\nok\ncancel\n");
  EXPECT_EQ(cancelled.code, 2);
  EXPECT_NE(cancelled.err.find("! " + PluginString("20128,4")), std::string::npos) << cancelled.err;
  EXPECT_FALSE(fs::exists(dir / "c.musicxml"));
}
