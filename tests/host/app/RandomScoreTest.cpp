// Random valid scores through random option sets, end to end through scribo-host: every output
// must keep what CompareSubdivision checks. SCRIBO_RANDOM_SCORES sets how many seeds run (200
// when unset); the test prints how many notes the runs made.
#include <gtest/gtest.h>

#include <iostream>

#include "ProgramRun.h"
#include "RandomScore.h"
#include "SchemaCheck.h"
#include "ScoreInvariants.h"

using namespace apptest;
using namespace scoretest;
namespace fs = std::filesystem;

TEST(RandomScores, EveryOutputIsAValidScoreWithTheSameMusic) {
  fs::path dir = TempDir("random");
  const char* count = std::getenv("SCRIBO_RANDOM_SCORES");
  uint32_t seeds = count ? static_cast<uint32_t>(std::stoul(count)) : 200;
  long before = 0, after = 0;
  for (uint32_t seed = 1; seed <= seeds; ++seed) {
    RandomScore score = MakeRandomScore(seed);
    std::string options = RandomOptions(seed, score);
    SCOPED_TRACE("seed " + std::to_string(seed) + ":" + options + "; files in " + dir.string());
    ASSERT_EQ(SchemaErrors(score.xml), "") << "the generator wrote an invalid score";
    std::ofstream(dir / "in.musicxml") << score.xml;
    HostRun run = RunHost("subdivide " + Q(dir / "in.musicxml") + " -o " + Q(dir / "out.musicxml") +
                          " -q" + options);
    ASSERT_EQ(run.code, 0) << run.err;
    Comparison result = CompareSubdivision(score.xml, Slurp(dir / "out.musicxml"));
    ASSERT_EQ(result.fault, "");
    before += result.notesBefore;
    after += result.notesAfter;
  }
  std::cout << seeds << " random scores: " << before << " notes and rests became " << after << "\n";
}
