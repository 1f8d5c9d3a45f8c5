// scribo-host's other paths end to end: what each command line does or why it refuses, with
// its exit code, the menu and info commands, in-place, compressed and streamed files, the
// options dialog in a terminal; and the note names a musician types.
#include <gtest/gtest.h>

#include "DurationNames.h"
#include "ProgramRun.h"
#include "ScoreFile.h"
#include "ScoreText.h"

using namespace apptest;
using namespace scoretest;
namespace fs = std::filesystem;

namespace {

fs::path NumberedMeasures() {
  return scribotest::SourceDir() / "tests" / "host" / "app" / "scores" /
         "numbered-measures.musicxml";
}

} // namespace

TEST(CommandLine, EachRunEndsInOneLineThatSaysWhatItDidOrWhyNot) {
  fs::path dir = TempDir("refusals");
  fs::create_directories(dir / "Empty.bundle" / "Contents");
  std::ofstream(dir / "broken.musicxml") << "<score-partwise>\n<part-list>\n</score-partwise>\n";
  std::string melody = Q(Example("melody-with-chords.musicxml"));
  std::string numbered = Q(NumberedMeasures()) + " -o - --divisions 2";
  std::string out = " -o " + Q(dir / "o.musicxml");
  std::string plugin = " --divisions 2 --plugin ";
  fs::path fakes = FAKE_BUNDLE_DIR;
  struct Case {
    std::string args;
    int code;
    std::string says;        // in the last line, which names scribo-host
    std::string before = ""; // the lines before it
  };
  const Case cases[] = {
      {Q(dir / "broken.musicxml") + out + " --divisions 2", 1, "not well-formed XML at line 3"},
      {Q(dir / "absent.musicxml") + out + " --divisions 2", 1, "No such file or directory"},
      {melody + out + " --divisions 2 --measures 7-9", 1,
       "no measure numbered 9 (its measures are numbered 1 to 8)"},
      {melody + out + " --divisions 2 --staves 2", 1, "the score has 1 staff"},
      {melody + " -o " + Q(dir / "no" / "o.musicxml") + " --divisions 2", 1, "does not exist"},
      {melody + " -o " + Q(dir) + " --divisions 2", 1, "it is a folder"},
      {melody + out + " --target banana", 64, "not a duration"},
      {melody + out, 64, "--divisions N or --target"},
      {melody + out + " --divisions 2.9", 64, "--divisions 2.9: give a whole number"},
      {melody + out + " --divisions 3abc", 64, "--divisions 3abc: give a whole number"},
      {melody + out + " --divisions 2 --measures 3-1", 64, "first measure first"},
      {melody + " -o " + melody + " --divisions 2", 64, "pass --in-place"},
      {"- --dialog" + out, 64, "cannot come from standard input"},
      {melody + out + " --divisions 33", 2, "rejected the options", PluginString("20128,4") + "\n"},
      {melody + out + " --divisions 2 --min half --max quarter", 2, "rejected the options",
       PluginString("20128,3") + "\n"},
      {melody + out + plugin + Q(scribotest::BuildDir() / "NotationEngine.bundle"), 3,
       "exports no main"},
      {melody + out + plugin + Q(dir / "Empty.bundle"), 3, "has no executable"},
      {melody + out + plugin + Q(dir / "Missing.bundle"), 3, "no such bundle"},
      {melody + out + plugin + Q(fakes / "WrongVersion.bundle"), 3,
       "the plug-in is built for host version 0x12345678, not 0x19500000"},
      {melody + out + plugin + Q(fakes / "MainFails.bundle"), 3, "the plug-in's main failed"},
      // Measures by their printed numbers; a split counted once in a measure of two parts.
      {numbered + " --measures 0", 0, "2 entries subdivided in 1 measure; wrote standard output"},
      {numbered + " --measures 2-2a --staves 1", 0,
       "1 tied note was split: its first part stays tied",
       "scribo-host: 2 entries subdivided in 2 measures; wrote standard output\n"},
      {numbered + " --measures 4", 1, "no measure numbered 4 (its measures are numbered 0 to 3)"},
      // --max alone has no lower bound: nothing is as short as 32 TDU.
      {melody + " -o - --divisions 2 --max 32", 0, "nothing in the selection was subdivided"},
  };
  for (const Case& c : cases) {
    HostRun run = RunHost("subdivide " + c.args);
    EXPECT_EQ(run.code, c.code) << c.args << "\n" << run.err;
    std::string last = run.err.substr(run.err.rfind('\n', run.err.size() - 2) + 1);
    EXPECT_EQ(last.rfind("scribo-host: ", 0), 0u) << run.err;
    EXPECT_NE(last.find(c.says), std::string::npos) << c.args << "\n" << run.err;
    EXPECT_EQ(run.err, c.before + last) << "one line per message";
  }
  // `run` writes only what the plug-in changed: its dialog cancelled, it changed nothing.
  HostRun run = RunHost("run " + melody + out + " --plugin " +
                        Q(scribotest::BuildDir() / "SubdivideNotes.bundle"));
  EXPECT_EQ(run.code, 0) << run.err;
  EXPECT_NE(run.err.find("returned 0 and left the score unchanged"), std::string::npos);
  HostRun badActions = RunHost("run " + melody + " --plugin x.bundle --actions '13; clik 3'");
  EXPECT_EQ(badActions.code, 64);
  EXPECT_NE(badActions.err.find("\"clik 3\": unknown command"), std::string::npos);
  EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 2);
}

TEST(CommandLine, MenuAndInfoShowWhatThePluginAndTheScoreHold) {
  HostRun menu = RunHost("menu");
  ASSERT_EQ(menu.code, 0) << menu.err;
  EXPECT_EQ(menu.out, PluginString("20000,1") + "\n" + PluginString("20000,2") + "\n" +
                          PluginString("20000,3") + "\n");

  fs::path numbered = NumberedMeasures();
  HostRun info = RunHost("info " + Q(numbered));
  ASSERT_EQ(info.code, 0) << info.err;
  EXPECT_EQ(info.out, numbered.string() + R"(
2 staves, 14 entries in 5 measures
measures: 0-2 (positions 1-3), 2a (position 4), 3 (position 5)
staff 1: Flute
  layer 1: 8 entries (8 notes, 0 rests), 1 tuplet
staff 2: Cello
  layer 1: 6 entries (5 notes, 1 rest), 0 tuplets
tuplet: staff 1, measure 1, layer 1, position 0: 3 x 512 in the time of 2 x 512 TDU
)");
}

TEST(CommandLine, InPlaceCompressedAndStreamedFilesHoldTheSameResult) {
  fs::path dir = TempDir("files");
  std::string expected = CanonicalXml(Slurp(Golden("triplets.expected.musicxml")));
  fs::copy_file(Golden("triplets.musicxml"), dir / "copy.musicxml");
  HostRun inPlace = RunHost("subdivide " + Q(dir / "copy.musicxml") + " --in-place --divisions 3");
  ASSERT_EQ(inPlace.code, 0) << inPlace.err;
  EXPECT_EQ(CanonicalXml(Slurp(dir / "copy.musicxml")), expected);

  HostRun packed = RunHost("subdivide " + Q(Golden("triplets.musicxml")) + " -o " +
                           Q(dir / "t.mxl") + " --divisions 3 -q");
  ASSERT_EQ(packed.code, 0) << packed.err;
  auto archived = scribo::musicxml::ReadScoreFile(dir / "t.mxl");
  EXPECT_TRUE(archived.source.fromArchive);
  EXPECT_EQ(CanonicalXml(scribo::musicxml::SerializeScore(archived.source)), expected);
  // Read back from the archive, a run that splits nothing writes the score unchanged.
  HostRun unpacked = RunHost("subdivide " + Q(dir / "t.mxl") + " -o " + Q(dir / "t.musicxml") +
                             " --divisions 2 --min breve");
  ASSERT_EQ(unpacked.code, 0) << unpacked.err;
  EXPECT_NE(unpacked.err.find("nothing in the selection was subdivided"), std::string::npos);
  EXPECT_EQ(CanonicalXml(Slurp(dir / "t.musicxml")), expected);

  HostRun streamed =
      RunHost("subdivide - -o - --divisions 3 -q", Slurp(Golden("triplets.musicxml")));
  ASSERT_EQ(streamed.code, 0) << streamed.err;
  EXPECT_EQ(CanonicalXml(streamed.out), expected);
}

TEST(CommandLine, TheDialogInTheTerminalStartsFromTheOptionsAndShowsWhatChanged) {
  fs::path dir = TempDir("dialog");
  std::string input = Q(Golden("triplets.musicxml"));
  std::string alert = "! " + PluginString("20128,4") + "\n";
  HostRun dialog =
      RunHost("subdivide " + input + " -o " + Q(dir / "d.musicxml") + " --dialog --divisions 40",
              "ok\nhelp\n14 3\nok\n");
  ASSERT_EQ(dialog.code, 0) << dialog.err;
  EXPECT_EQ(CanonicalXml(Slurp(dir / "d.musicxml")),
            CanonicalXml(Slurp(Golden("triplets.expected.musicxml"))));
  // The palettes under their captions; 40 parts refused, the alert shown again after help;
  // typing 3 shows that one field again, nothing else.
  EXPECT_NE(dialog.err.find("  " + PluginString("20256,22") + "\n"), std::string::npos);
  size_t refused = dialog.err.find(alert);
  ASSERT_NE(refused, std::string::npos) << dialog.err;
  size_t again = dialog.err.find(alert, refused + 1);
  ASSERT_NE(again, std::string::npos) << dialog.err;
  EXPECT_EQ(dialog.err.substr(again + alert.size()),
            "> " + std::string("  14 ") + PluginString("20256,14") + ": [3] " +
                PluginString("20256,15") +
                "\n> scribo-host: 3 entries subdivided in 2 measures; "
                "wrote " +
                (dir / "d.musicxml").string() + "\n");

  // Cancel after a refused OK is a cancel.
  HostRun cancelled = RunHost("subdivide " + input + " -o " + Q(dir / "c.musicxml") + " --dialog",
                              "13\n14 40\nok\ncancel\n");
  EXPECT_EQ(cancelled.code, 2);
  EXPECT_NE(cancelled.err.find("the options dialog was cancelled"), std::string::npos);
  EXPECT_FALSE(fs::exists(dir / "c.musicxml"));
}

TEST(CommandLine, DurationsAreTDUOrTheNoteNamesMusiciansWrite) {
  using scribo::host::ParseDurationText;
  const struct {
    const char* text;
    int32_t tdu;
    int paletteIndex; // -1: typed as a number
    bool dotted;
  } cases[] = {
      {"768", 768, -1, false},
      {"Quarter", 1024, 3, false},
      {"dotted-eighth", 768, 4, true},
      {"dotted quarter", 1536, 3, true},
      {"breve", 8192, 0, false},
      {"64th", 64, 7, false},
      {"8th", 512, 4, false},
      {"SIXTEENTH", 256, 5, false},
      {"crotchet", 1024, 3, false},
      {"double-dotted-half", 3584, -1, false},
      {"triplet-eighth", 341, -1, false},
      {"triplet-quarter", 682, -1, false},
      {"128th", 32, -1, false},
      {"dotted-128th", 48, -1, false},
  };
  for (const auto& c : cases) {
    auto parsed = ParseDurationText(c.text);
    ASSERT_TRUE(parsed) << c.text;
    EXPECT_EQ(parsed->tdu, c.tdu) << c.text;
    EXPECT_EQ(parsed->paletteIndex, c.paletteIndex) << c.text;
    EXPECT_EQ(parsed->dotted, c.dotted) << c.text;
  }
  for (const char* text : {"banana", "dotted-", "triplet", "quarter-dotted", "12x", "2.5", ""})
    EXPECT_FALSE(ParseDurationText(text)) << text;
}
