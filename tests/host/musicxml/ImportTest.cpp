// MusicXML import refuses what it cannot read with one message naming the input, part and
// measure. What it reads is checked end to end by the golden files of tests/host/app.
#include <gtest/gtest.h>

#include "MusicXmlImport.h"
#include "ScoreError.h"
#include "ScoreText.h"

using namespace scribo::musicxml;
using namespace scoretest;

TEST(Import, BadInputGivesOneClearMessage) {
  const std::string noDuration = "<note><pitch><step>C</step><octave>4</octave></pitch></note>";
  const std::string backup = Note("C", 1, "quarter") + "<backup><duration>2</duration></backup>";
  const std::pair<std::string, std::string> cases[] = {
      {"<score-partwise>\n<part-list>\n<oops></score-partwise>",
       "in.musicxml: not well-formed XML at line 3"},
      {"<score-timewise/>", "score-timewise"},
      {"<html/>", "not a MusicXML score"},
      {OnePart(""), "no measures"},
      {OnePart(FirstMeasure(noDuration, 1, "7")),
       "measure 7 of part P1: <note> without a duration"},
      {OnePart(FirstMeasure(backup)), "back past the measure's start"},
      {R"(<score-partwise><part-list><score-part id="A"><part-name>A</part-name></score-part><score-part id="B"><part-name>B</part-name></score-part></part-list><part id="A"><measure number="1"/><measure number="2"/></part><part id="B"><measure number="1"/></part></score-partwise>)",
       "part B has 1 measures"},
  };
  for (const auto& [xml, says] : cases) {
    try {
      ImportMusicXml(xml, "in.musicxml");
      ADD_FAILURE() << "imported " << xml;
    } catch (const ScoreError& e) {
      EXPECT_NE(std::string(e.what()).find(says), std::string::npos) << e.what();
    }
  }
}
