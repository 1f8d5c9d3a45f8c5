// tools/preview: a before/after picture of the command's result. Needs node, Verovio and
// rsvg-convert; without them the test is skipped (the tool is optional at run time).
#include <gtest/gtest.h>

#include "ProgramRun.h"
#include "ScoreText.h"

namespace fs = std::filesystem;

TEST(Preview, DrawsBeforeAndAfterSideBySideOnWhite) {
  fs::path tool = scribotest::SourceDir() / "tools" / "preview";
  fs::path dir = scoretest::TempDir("preview");
  std::string env = "SCRIBO_HOST='" + (scribotest::BuildDir() / "scribo-host").string() + "' ";
  std::string probe = env + "'" + tool.string() + "' '" +
                      scoretest::Example("melody-with-chords.musicxml").string() + "' '" +
                      (dir / "p.png").string() + "' --target eighth >'" + (dir / "log").string() +
                      "' 2>&1";
  int status = std::system(probe.c_str());
  int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  std::string log = apptest::Slurp(dir / "log");
  if (code == 69)
    GTEST_SKIP() << log; // node, Verovio or rsvg-convert missing: the tool said which
  ASSERT_EQ(code, 0) << log;

  std::string png = apptest::Slurp(dir / "p.png");
  ASSERT_GT(png.size(), 24u);
  EXPECT_EQ(png.substr(0, 8), std::string("\x89PNG\r\n\x1a\n", 8));
  auto be32 = [&png](size_t at) {
    return (uint32_t(uint8_t(png[at])) << 24) | (uint32_t(uint8_t(png[at + 1])) << 16) |
           (uint32_t(uint8_t(png[at + 2])) << 8) | uint32_t(uint8_t(png[at + 3]));
  };
  uint32_t width = be32(16), height = be32(20);
  EXPECT_GT(width, 2 * height) << width << " x " << height; // two scores beside each other

  // A score the command rejects gives no picture.
  std::string rejected = env + "'" + tool.string() + "' '" +
                         scoretest::Example("melody-with-chords.musicxml").string() + "' '" +
                         (dir / "q.png").string() + "' --divisions 40 >/dev/null 2>&1";
  EXPECT_NE(std::system(rejected.c_str()), 0);
  EXPECT_FALSE(fs::exists(dir / "q.png"));
}
