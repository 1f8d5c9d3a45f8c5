// The utilities inside a plug-in, against the reference engine's document: the test plays host
// (it links the engine and sets up the document through its C++ API) and calls the utilities
// through the probe bundle, which binds to the engine by identifier like any plug-in.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "Engine.h"
#include "ProbeBundle.h"
#include "probe/UtilProbe.h"

using namespace scribo::engine;

namespace {

int64_t gNowNs = 0;
int64_t FakeClock() {
  return gNowNs;
}

class UtilInEngine : public testing::Test {
protected:
  static void SetUpTestSuite() {
    bundle = scribotest::LoadProbe<UtilProbeTable>(UTIL_PROBE_BUNDLE, "UtilProbe_Table");
    int context = 0;
    ASSERT_EQ(bundle.main(1, &context), 1) << "the probe did not find the engine";
    probe = bundle.table;
  }
  void SetUp() override {
    ASSERT_NE(probe, nullptr);
    engine().Reset();
    engine().SetProgressDisplay(ProgressDisplay::Off);
  }
  Engine& engine() { return Engine::Instance(); }
  Document& doc() { return engine().document(); }
  std::u16string Name(short staff, int size = 64) {
    uint16_t name[65]; // one unit more than the largest nameSize, to see overruns
    std::fill(std::begin(name), std::end(name), 0xAAAA);
    const long length =
        probe->getStaffName(staff, 0, reinterpret_cast<unsigned short*>(name), size);
    std::u16string text(reinterpret_cast<const char16_t*>(name));
    EXPECT_EQ(length, static_cast<long>(text.size()));
    EXPECT_EQ(name[size], 0xAAAA) << "written past nameSize";
    return text;
  }
  static int32_t frames() { return bundle.Exported<int32_t>("LoadedTGFCounter"); }
  static inline scribotest::ProbeBundle<UtilProbeTable> bundle{};
  static inline const UtilProbeTable* probe = nullptr;
};

} // namespace

TEST_F(UtilInEngine, SpecsAndNames) {
  const short violin = doc().AddStaff(u"^font(Times)Violin");
  const short clarinet = doc().AddStaff(u"", u"B^flat() Clarinet"); // second name only
  const short unnamed = doc().AddStaff();
  const short longName = doc().AddStaff(std::u16string(40, u'n'));
  ASSERT_TRUE(doc().SetStaffTransposition(clarinet, 0x2001));
  const short measure = doc().AddMeasure(0x0103, {2, 1536});

  EXPECT_EQ(Name(violin), u"Violin");
  EXPECT_EQ(Name(clarinet), u"Bb Clarinet");
  EXPECT_EQ(Name(unnamed), u"");
  EXPECT_EQ(Name(99), u"");
  EXPECT_EQ(Name(longName, 32), std::u16string(31, u'n'));

  short word = 0;
  ASSERT_TRUE(probe->getStaffTrans(clarinet, &word));
  EXPECT_EQ(word, 0x2001);

  short keySig = 0;
  tTimeSig time{};
  ASSERT_TRUE(probe->getKeySig(measure, &keySig));
  EXPECT_EQ(keySig, 0x0103);
  ASSERT_TRUE(probe->getTimeSig(measure, &time));
  EXPECT_EQ(time.beats, 2);
  EXPECT_EQ(time.beatValue, 1536);
  EXPECT_FALSE(probe->getKeySig(measure + 1, &keySig));
  ASSERT_TRUE(probe->putKeySig(measure, -4));
  EXPECT_EQ(doc().KeySignature(measure), -4);
  EXPECT_EQ(doc().TimeSig(measure), (TimeSignature{2, 1536}))
      << "the rest of the measure record survives";
}

TEST_F(UtilInEngine, EmptyMeasuresSlotsAndJobSize) {
  doc().AddStaff(u"A");
  doc().AddStaff(u"B");
  doc().AddMeasure();
  const int32_t loaded = frames();
  EXPECT_TRUE(probe->isEmptyMeasure(0, 1, 1)) << "no entries";
  doc().AddEntry({1, 1, 0}, EntrySpec{});
  doc().AddEntry({1, 1, 2}, EntrySpec{});
  EXPECT_TRUE(probe->isEmptyMeasure(0, 1, 1)) << "rests only";
  EXPECT_TRUE(probe->isEmptyMeasure(0, 1, 7)) << "no such measure: no frames";
  EntrySpec note;
  note.notes = {{0, 0}};
  doc().AddEntry({1, 1, 3}, note);
  EXPECT_FALSE(probe->isEmptyMeasure(0, 1, 1)) << "one note in layer 3";
  EXPECT_TRUE(probe->isEmptyMeasure(0, 2, 1));
  engine().SetMaxLayers(3);
  EXPECT_TRUE(probe->isEmptyMeasure(0, 1, 1)) << "layer 3 is not in use";
  EXPECT_EQ(frames(), loaded);
  EXPECT_EQ(engine().LoadedFrames(), 0);

  EREGION region{};
  region.startStaff = 2, region.endStaff = 4, region.startMeasure = 10, region.endMeasure = 19;
  EXPECT_EQ(probe->calcJobSize(&region, 3), 30);
  EXPECT_EQ(probe->calcJobSize(&region, 7), 90);
  EXPECT_EQ(probe->calcJobSize(&region, 0), 1);

  EXPECT_EQ(probe->countSlots(0), 2) << "one slot per staff";
  engine().SetInstrumentSlots({});
  EXPECT_EQ(probe->countSlots(0), 0);
}

TEST_F(UtilInEngine, PitchTextsFollowTheDocument) {
  std::vector<uint8_t> prefs(66, 0);
  prefs[38] = 1;
  prefs[40] = 12; // one octave up: middle C is C5
  ASSERT_TRUE(doc().PutPreference(kTagGeneralPrefs, 0, prefs));
  char out[8];
  probe->formatPitch({0, 0}, out, sizeof out); // no test before this one sets the state
  EXPECT_STREQ(out, "60") << "MIDI numbers at load";
  ASSERT_EQ(probe->setPitchFormatting(-32768), 0);
  probe->formatPitch({0, 0}, out, sizeof out);
  EXPECT_STREQ(out, "C5");
  prefs[40] = 6; // not a whole octave: refused, the state stays
  ASSERT_TRUE(doc().PutPreference(kTagGeneralPrefs, 0, prefs));
  EXPECT_EQ(probe->setPitchFormatting(-32768), 1);
  probe->formatPitch({0, 0}, out, sizeof out);
  EXPECT_STREQ(out, "C5");
  ASSERT_TRUE(doc().RemovePreference(kTagGeneralPrefs, 0));
  EXPECT_EQ(probe->setPitchFormatting(-32768), 1);
  ASSERT_EQ(probe->setPitchFormatting(32767), 0);
  probe->formatPitch({0, 0}, out, sizeof out);
  EXPECT_STREQ(out, "60");
}

TEST_F(UtilInEngine, ProgressSelectionAndCancel) {
  EREGION selection{};
  selection.startStaff = 2;
  engine().SetSelection(selection);
  EREGION first{}, second{};
  EXPECT_EQ(probe->getRegions(&first, &second), 1);
  EXPECT_EQ(first.startStaff + second.startStaff, 4);
  EXPECT_EQ(probe->getRegions(nullptr, nullptr), 1) << "scratch regions stand in for null ones";

  // Progress: nothing within the first 667 ms, then at most one report per 33 ms.
  probe->setClock(FakeClock);
  auto at = [](int ms) { gNowNs = 5'000'000'000 + int64_t{ms} * 1'000'000; };
  at(0);
  probe->progressStart(100);
  struct Update {
    int ms, done, open, reported;
  };
  for (Update u : {Update{666, 8, 0, 0},
                   {700, 10, 1, 10},
                   {710, 20, 1, 10},
                   {740, 25, 1, 25},
                   {800, 60, 1, 60}}) {
    at(u.ms);
    EXPECT_TRUE(probe->progressUpdate(static_cast<unsigned short>(u.done))) << u.ms;
    EXPECT_EQ(engine().OpenMassEdits(), u.open) << u.ms;
    EXPECT_EQ(engine().MassEditStepsReported(), u.reported) << u.ms;
  }
  probe->progressEnd(0);
  EXPECT_EQ(engine().OpenMassEdits(), 0);
  EXPECT_EQ(engine().MassEditStepsReported(), 100) << "the end sends the remaining 40";

  at(0);
  probe->progressStart(50); // more done than the job's size, then an end with nothing left
  at(700);
  EXPECT_TRUE(probe->progressUpdate(80));
  EXPECT_EQ(engine().MassEditStepsReported(), 150);
  probe->progressEnd(0);
  EXPECT_EQ(engine().MassEditStepsReported(), 150);

  // Key k is bit k % 8 of byte k / 8 of the host's key map.
  engine().windows().SetKeyDown(47, true);
  engine().windows().SetKeyDown(127, true);
  EXPECT_TRUE(probe->keyIsDown(47) && probe->keyIsDown(127));
  EXPECT_FALSE(probe->keyIsDown(46) || probe->keyIsDown(48) || probe->keyIsDown(-1));
  EXPECT_FALSE(probe->cancelRequested()) << "period without Command";
  engine().windows().SetModifierFlags(kModifierCommand);
  EXPECT_TRUE(probe->cancelRequested());
  at(0);
  probe->progressStart(100);
  at(700);
  EXPECT_FALSE(probe->progressUpdate(60)) << "cancel is tested first";
  EXPECT_EQ(engine().OpenMassEdits(), 0);
  engine().windows().SetModifierFlags(0);
  EXPECT_TRUE(probe->progressUpdate(60));
  engine().windows().SetModifierFlags(kModifierCommand);
  EXPECT_FALSE(probe->progressUpdate(90));
  probe->progressEnd(1);
  EXPECT_EQ(engine().OpenMassEdits(), 0);
  EXPECT_EQ(engine().MassEditStepsReported(), 210) << "a cancelled job is closed unfilled";
  probe->setClock(nullptr);
}
