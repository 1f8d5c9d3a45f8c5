// A host session in process: the engine linked, the plug-in bundle loaded with dlopen, the
// options given as dialog actions, the result exported.
#include <gtest/gtest.h>

#include "Commands.h"
#include "DialogActions.h"
#include "DialogItems.h"
#include "Engine.h"
#include "EngineBridge.h"
#include "HostError.h"
#include "MusicXmlExport.h"
#include "PluginHost.h"
#include "ProgramRun.h"
#include "ScoreFile.h"
#include "ScoreText.h"

using namespace scribo;
using namespace scribo::host;
using namespace scoretest;

namespace {

PluginHost& LoadedHost() {
  static PluginHost host;
  static bool loaded = false;
  if (!loaded) {
    host.Load(DefaultEngineBundle(), scribotest::BuildDir() / "SubdivideNotes.bundle");
    loaded = true;
  }
  return host;
}

EREGION Everything(const musicxml::Score& score) {
  EREGION region{};
  region.startStaff = 1;
  region.startMeasure = 1;
  region.endStaff = static_cast<int16_t>(score.staves.size());
  region.endMeasure = static_cast<int16_t>(score.measures.size());
  region.endPosition = 0x7FFFFFFF;
  return region;
}

const engine::DialogControl* Control(const engine::DialogRecord& record, int16_t item) {
  return record.finalState.Find(item);
}

} // namespace

// Runs first in this process: the dialog still has its first-opening state (dotted boxes clear).
TEST(HostSession, NamedDurationsArePickedFromThePalettes) {
  PluginHost& host = LoadedHost();
  engine::Engine& engine = engine::Engine::Instance();
  engine.Reset();
  engine.SetAlertEcho(false);
  auto imported = musicxml::ReadScoreFile(Example("melody-with-chords.musicxml"));
  EngineBridge bridge;
  bridge.Load(imported.score, engine.document());

  SubdivideOptions options;
  options.minimum = musicxml::ParseDurationText("dotted-eighth");
  options.maximum = musicxml::ParseDurationText("half");
  options.target = musicxml::ParseDurationText("16th");
  engine.QueueDialogScript(BuildDialogScript(options));
  EXPECT_EQ(host.Invoke(Everything(imported.score)), 1);

  ASSERT_FALSE(engine.DialogHistory().empty());
  const auto& record = engine.DialogHistory().back();
  EXPECT_EQ(Control(record, dialog_items::kMinimumField)->value, 768);
  EXPECT_EQ(Control(record, dialog_items::kMinimumDotted)->value, 1);
  EXPECT_EQ(Control(record, dialog_items::kMinimumPalette + 4)->value, 1); // eighth
  EXPECT_EQ(Control(record, dialog_items::kMaximumField)->value, 2048);
  EXPECT_EQ(Control(record, dialog_items::kTargetField)->value, 256);
  EXPECT_EQ(Control(record, dialog_items::kDurationRange)->value, 1);
  EXPECT_EQ(Control(record, dialog_items::kByTarget)->value, 1);
  EXPECT_TRUE(engine.Alerts().empty());

  // Quarters (1024) become four sixteenths; the whole notes are longer than the maximum.
  musicxml::Score edited = bridge.Read(imported.score, engine.document());
  EXPECT_EQ(edited.At(0, 0, 0).entries.size(), 4u + 4u + 8u);
  EXPECT_EQ(edited.At(0, 7, 0).entries.size(), 1u);
}

TEST(HostSession, VoiceTwoEntriesAreLeftAloneWithOneWarning) {
  PluginHost& host = LoadedHost();
  engine::Engine& engine = engine::Engine::Instance();
  engine.Reset();
  engine.SetAlertEcho(false);
  auto imported = musicxml::ReadScoreFile(Example("piano-two-voices.musicxml"));
  EngineBridge bridge;
  bridge.Load(imported.score, engine.document());

  // In two frames the upper voice's second entry becomes voice-2 material of the first.
  for (int16_t measure : {1, 2}) {
    engine::FrameAddress frame{1, measure, 0};
    auto entries = engine.document().Entries(frame);
    ASSERT_GE(entries.size(), 2u);
    entries[entries.size() - 2].flags |= kEntryVoiceTwoLaunch;
    entries.back().flags |= kEntryVoiceTwo;
    ASSERT_TRUE(engine.document().ReplaceEntries(frame, entries));
  }
  SubdivideOptions options;
  options.divisions = "2";
  engine.QueueDialogScript(BuildDialogScript(options));
  EXPECT_EQ(host.Invoke(Everything(imported.score)), 1);

  ASSERT_EQ(engine.Alerts().size(), 1u);
  EXPECT_EQ(engine.Alerts()[0].kind, 0);
  EXPECT_EQ(engine.Alerts()[0].resolved,
            "The current selection contains some voice 2 entries.  These entries will not be "
            "changed.");

  musicxml::Score edited = bridge.Read(imported.score, engine.document());
  EXPECT_EQ(edited.At(0, 0, 0).entries.size(), 2u); // the launch entry and its voice-2 entry
  EXPECT_EQ(edited.At(0, 0, 1).entries.size(), 6u); // MusicXML voice 2 is layer 2: split
  EXPECT_EQ(edited.At(0, 2, 0).entries.size(), 2u); // measure 3 had no voice-2 material

  pugi::xml_document before;
  before.append_copy(imported.source.parts[0].measures[0]);
  musicxml::ApplyScore(imported.source, edited);
  int upper = 0;
  for (auto note : imported.source.parts[0].measures[0].children("note"))
    if (std::string_view(note.child_value("voice")) == "1") {
      ++upper;
      EXPECT_TRUE(note.child("type").text().as_string() == std::string("half") ||
                  note.child("type").text().as_string() == std::string("quarter"));
    }
  EXPECT_EQ(upper, 2);
}

TEST(HostSession, BundlesThatMisbehaveAreRefusedWithTheirReason) {
  auto refusal = [](const std::filesystem::path& bundle) {
    try {
      PluginHost host;
      host.Load(DefaultEngineBundle(), bundle);
    } catch (const HostError& e) {
      return std::to_string(e.exitCode()) + " " + e.what();
    }
    return std::string("loaded");
  };
  std::filesystem::path fakes = FAKE_BUNDLE_DIR;
  EXPECT_NE(refusal(fakes / "WrongVersion.bundle")
                .find("3 " + (fakes / "WrongVersion.bundle").string() +
                      ": the plug-in is built for host version 0x12345678, not 0x19500000"),
            std::string::npos);
  EXPECT_NE(refusal(fakes / "MainFails.bundle").find("the plug-in's main failed"),
            std::string::npos);
}
