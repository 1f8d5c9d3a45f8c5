// scribo-host's other paths end to end: refusals with their exit codes and messages, the menu
// and info commands, in-place and compressed files, the options dialog in a terminal.
#include <gtest/gtest.h>

#include "ProgramRun.h"
#include "ScoreFile.h"
#include "ScoreText.h"

using namespace apptest;
using namespace scoretest;
namespace fs = std::filesystem;

TEST(CommandLine, RefusalsSayWhyExitWithTheirCodeAndWriteNothing) {
  fs::path dir = TempDir("refusals");
  fs::create_directories(dir / "Empty.bundle" / "Contents");
  std::ofstream(dir / "broken.musicxml") << "<score-partwise>\n<part-list>\n</score-partwise>\n";
  std::string melody = Q(Example("melody-with-chords.musicxml"));
  std::string out = " -o " + Q(dir / "o.musicxml");
  std::string plugin = " --divisions 2 --plugin ";
  fs::path fakes = FAKE_BUNDLE_DIR;
  struct Case {
    std::string args;
    int code;
    std::string says; // in the last line, which names scribo-host
    std::string alert = "";
  };
  const Case cases[] = {
      {Q(dir / "broken.musicxml") + out + " --divisions 2", 1, "not well-formed XML at line 3"},
      {Q(dir / "absent.musicxml") + out + " --divisions 2", 1, "No such file or directory"},
      {melody + out + " --divisions 2 --measures 7-9", 1, "the score has 8 measures"},
      {melody + out + " --divisions 2 --staves 2", 1, "the score has 1 staves"},
      {melody + " -o " + Q(dir / "no" / "o.musicxml") + " --divisions 2", 1, "does not exist"},
      {melody + " -o " + Q(dir) + " --divisions 2", 1, "it is a folder"},
      {melody + out + " --target banana", 64, "not a duration"},
      {melody + out, 64, "--divisions N or --target"},
      {melody + out + " --divisions 2 --measures 3-1", 64, "give a range"},
      {melody + " -o " + melody + " --divisions 2", 64, "pass --in-place"},
      {melody + out + " --divisions 33", 2, "rejected the options", PluginString("20128,4")},
      {melody + out + " --divisions 2 --min half --max quarter", 2, "rejected the options",
       PluginString("20128,3")},
      {melody + out + plugin + Q(scribotest::BuildDir() / "NotationEngine.bundle"), 3,
       "exports no main"},
      {melody + out + plugin + Q(dir / "Empty.bundle"), 3, "has no executable"},
      {melody + out + plugin + Q(dir / "Missing.bundle"), 3, "no such bundle"},
      {melody + out + plugin + Q(fakes / "WrongVersion.bundle"), 3,
       "the plug-in is built for host version 0x12345678, not 0x19500000"},
      {melody + out + plugin + Q(fakes / "MainFails.bundle"), 3, "the plug-in's main failed"},
  };
  for (const Case& c : cases) {
    HostRun run = RunHost("subdivide " + c.args);
    EXPECT_EQ(run.code, c.code) << c.args << "\n" << run.err;
    std::string last = run.err.substr(run.err.rfind('\n', run.err.size() - 2) + 1);
    EXPECT_EQ(last.rfind("scribo-host: ", 0), 0u) << run.err;
    EXPECT_NE(last.find(c.says), std::string::npos) << c.args << "\n" << run.err;
    EXPECT_EQ(run.err, (c.alert.empty() ? "" : c.alert + "\n") + last) << "one line per message";
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 2);
}

TEST(CommandLine, MenuAndInfoShowWhatThePluginAndTheScoreHold) {
  HostRun menu = RunHost("menu");
  ASSERT_EQ(menu.code, 0) << menu.err;
  EXPECT_EQ(menu.out, PluginString("20000,1") + "\n" + PluginString("20000,2") + "\n" +
                          PluginString("20000,3") + "\n");

  fs::path tuplets = Example("existing-tuplets.musicxml");
  HostRun info = RunHost("info " + Q(tuplets));
  ASSERT_EQ(info.code, 0) << info.err;
  EXPECT_EQ(info.out, tuplets.string() + R"(
staves: 1, measures: 5
staff 1: Violin
  layer 1: 19 entries (18 notes, 1 rests), 4 tuplets
tuplet: staff 1, measure 2, layer 1, position 0: 3 x 512 in the time of 2 x 512 TDU
tuplet: staff 1, measure 3, layer 1, position 0: 5 x 256 in the time of 4 x 256 TDU
tuplet: staff 1, measure 3, layer 1, position 1024: 3 x 512 in the time of 2 x 512 TDU
tuplet: staff 1, measure 4, layer 1, position 0: 3 x 1024 in the time of 2 x 1024 TDU
)");
}

TEST(CommandLine, InPlaceAndCompressedFilesHoldTheSameResult) {
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
}

TEST(CommandLine, TheDialogInTheTerminalTakesActionsAndShowsAlerts) {
  fs::path dir = TempDir("dialog");
  HostRun dialog = RunHost("subdivide " + Q(Golden("triplets.musicxml")) + " -o " +
                               Q(dir / "d.musicxml") + " --dialog",
                           "click 13\ntype 14 40\nok\ntype 14 3\nok\n");
  ASSERT_EQ(dialog.code, 0) << dialog.err;
  EXPECT_NE(dialog.err.find("13  (*)"), std::string::npos) << dialog.err;
  EXPECT_NE(dialog.err.find("! " + PluginString("20128,4")), std::string::npos) << dialog.err;
  EXPECT_EQ(CanonicalXml(Slurp(dir / "d.musicxml")),
            CanonicalXml(Slurp(Golden("triplets.expected.musicxml"))));

  HostRun cancelled = RunHost("subdivide " + Q(Golden("triplets.musicxml")) + " -o " +
                                  Q(dir / "c.musicxml") + " --dialog",
                              "cancel\n");
  EXPECT_EQ(cancelled.code, 2);
  EXPECT_NE(cancelled.err.find("the options dialog was cancelled"), std::string::npos);
  EXPECT_FALSE(fs::exists(dir / "c.musicxml"));
}
