// The options dialog run by the reference engine as a host runs it: set-up, the user's actions,
// validation on OK, and what is remembered after OK and Cancel.
#include <cstdlib>

#include "DialogTestHost.h"

using namespace dialogtest;
using scribo::engine::AlertRecord;
using scribo::engine::ControlKind;
using scribo::engine::DialogEnd;
using scribo::engine::HostCall;

namespace {

constexpr tSubdivideParam kDefaults{64, 8192, 1024, 0, 1, 0};

bool SameParam(const tSubdivideParam& a, const tSubdivideParam& b) {
  return a.minDuration == b.minDuration && a.maxDuration == b.maxDuration &&
         a.targetDuration == b.targetDuration && a.divisions == b.divisions &&
         a.allDurations == b.allDurations && a.byDivisions == b.byDivisions;
}

DialogAction Type(int16_t item, std::string text) {
  return DialogAction::TypeText(item, std::move(text));
}
DialogAction Click(int16_t item) {
  return DialogAction::Click(item);
}
DialogAction Toggle(int16_t item) {
  return DialogAction::Toggle(item);
}

} // namespace

TEST_F(DialogHost, FirstOpeningShowsTheDefaultsAndCancelChangesNothing) {
  Init();
  tSubdivideParam out{-7, -7, -7, -7, -7, -7};
  EXPECT_EQ(RunScript({}, &out), 0);
  EXPECT_TRUE(SameParam(out, tSubdivideParam{-7, -7, -7, -7, -7, -7})) << "out must stay untouched";

  const DialogRecord& d = LastDialog();
  EXPECT_EQ(d.resource, 20256);
  EXPECT_EQ(d.end, DialogEnd::ByCancel);
  auto value = [&](int16_t item) { return FinalValue(d, item); };
  EXPECT_EQ(value(kMinField), 64);
  EXPECT_EQ(PaletteBits(value, kMinPalette), "00000001"); // the 64th note
  EXPECT_EQ(value(kMinDotted), 0);
  EXPECT_EQ(value(kMaxField), 8192);
  EXPECT_EQ(PaletteBits(value, kMaxPalette), "10000000"); // the breve
  EXPECT_EQ(value(kMaxDotted), 0);
  EXPECT_EQ(value(kTargetField), 1024);
  EXPECT_EQ(PaletteBits(value, kTargetPalette), "00010000"); // the quarter
  EXPECT_EQ(value(kTargetDotted), 0);
  EXPECT_EQ(d.finalState.Find(kPartsField)->text, "") << "no parts chosen: the field is empty";
  EXPECT_EQ(value(kAllDurations), 1);
  EXPECT_EQ(value(kDurationRange), 0);
  EXPECT_EQ(value(kByDivisions), 0);
  EXPECT_EQ(value(kByTarget), 1);

  // 272 answers 1, the host's Cancel 1, closing 0.
  ASSERT_EQ(d.messages.size(), 3u);
  EXPECT_EQ(d.messages[0].message, 272u);
  EXPECT_EQ(d.messages[0].result, 1);
  EXPECT_EQ(d.messages[1].item, kCancel);
  EXPECT_EQ(d.messages[1].result, 1);
  EXPECT_EQ(d.messages[2].message, 2u);
  EXPECT_EQ(d.messages[2].result, 0);
  EXPECT_TRUE(SameParam(probe_.State(), kDefaults));
}

TEST_F(DialogHost, ResourceDescribesEveryItemWithLocalisedLabels) {
  Init();
  tSubdivideParam out{};
  RunScript({}, &out);
  const auto& controls = LastDialog().finalState.controls;
  ASSERT_EQ(controls.size(), 48u);
  for (int16_t id = 1; id <= 48; ++id) {
    const DialogControl* c = LastDialog().finalState.Find(id);
    ASSERT_NE(c, nullptr) << "item " << id;
    EXPECT_EQ(c->labelKey, "20256," + std::to_string(id));
    EXPECT_NE(c->label, c->labelKey) << "no text for item " << id;
  }
  // b button, r radio, c check box, n number field, l label; items 1..48 in order.
  const std::string kinds = "bbrrlcnllcnlrnlrcnllllllbbbbbbbbbbbbbbbbbbbbbbbb";
  const std::string letters = "brcntl"; // in the order of ControlKind
  const auto& view = LastDialog().finalState;
  for (int16_t id = 1; id <= 48; ++id)
    EXPECT_EQ(letters[static_cast<size_t>(view.Find(id)->kind)], kinds[id - 1]) << "item " << id;
  EXPECT_EQ(view.Find(3)->group, view.Find(4)->group);
  EXPECT_EQ(view.Find(13)->group, view.Find(16)->group);
  EXPECT_NE(view.Find(3)->group, view.Find(13)->group);
  // Palette buttons name their note values, the same in all three palettes.
  EXPECT_EQ(view.Find(25)->label, "Breve");
  EXPECT_EQ(view.Find(36)->label, "Quarter note");
  EXPECT_EQ(view.Find(48)->label, "64th note");
  EXPECT_EQ(view.Find(6)->label, "Dotted");

  // The German table labels the same items.
  ::setenv("LC_ALL", "de_DE.UTF-8", 1);
  RunScript({}, &out);
  ::setenv("LC_ALL", "C", 1);
  EXPECT_EQ(LastDialog().finalState.Find(25)->label, "Brevis");
  EXPECT_EQ(LastDialog().finalState.Find(2)->label, "Abbrechen");
}

TEST_F(DialogHost, HandleIsMadeOnceAndWithoutItNoDialogRuns) {
  tSubdivideParam out{-7, -7, -7, -7, -7, -7};
  EXPECT_EQ(probe_.handlerHandle(), nullptr);
  EXPECT_EQ(probe_.specify(nullptr, &out), 0);
  EXPECT_EQ(Engine::Instance().CallCount(HostCall::Dialog), 0);
  EXPECT_EQ(out.minDuration, -7);

  EXPECT_EQ(probe_.init(), 1);
  void* handle = probe_.handlerHandle();
  EXPECT_EQ(handle, reinterpret_cast<void*>(probe_.handler));
  EXPECT_EQ(probe_.init(), 1);
  EXPECT_EQ(probe_.handlerHandle(), handle);
  EXPECT_TRUE(Engine::Instance().Alerts().empty()) << "the engine is a Mach-O-like host";
}

TEST_F(DialogHost, AcceptedRunWidensTheRangeOnItsCopyOnly) {
  Init();
  tSubdivideParam out{};
  EXPECT_EQ(RunScript({Click(kOK)}, &out), 1);
  EXPECT_EQ(LastDialog().end, DialogEnd::ByHandler);
  EXPECT_TRUE(SameParam(out, tSubdivideParam{1, 0x7FFFFFFF, 1024, 0, 1, 0}));
  EXPECT_TRUE(SameParam(probe_.State(), kDefaults)) << "the dialog keeps the typed range";

  // With the range selected the copy carries it unchanged.
  EXPECT_EQ(RunScript({Type(kMinField, "256"), Type(kMaxField, "2048"), Click(kOK)}, &out), 1);
  EXPECT_TRUE(SameParam(out, tSubdivideParam{256, 2048, 1024, 0, 0, 0}));
  EXPECT_EQ(RunScript({Type(kPartsField, "3"), Click(kOK)}, &out), 1);
  EXPECT_TRUE(SameParam(out, tSubdivideParam{256, 2048, 1024, 3, 0, 1}));
}

TEST_F(DialogHost, OkChecksTheEntriesInOrderWithAlertAndFocus) {
  Init();
  struct Case {
    const char* what;
    std::vector<DialogAction> script;
    int32_t alert; // 0: accepted
    int16_t focus;
  };
  const std::vector<Case> cases = {
      {"all durations, target 1024", {}, 0, 0},
      {"minimum 0", {Type(kMinField, "0")}, 0x4EA00001, kMinField},
      {"minimum 8193", {Type(kMinField, "8193")}, 0x4EA00001, kMinField},
      {"minimum and maximum both bad: the minimum is reported",
       {Type(kMinField, "0"), Type(kMaxField, "9000")},
       0x4EA00001,
       kMinField},
      {"range 1 .. 8192", {Type(kMinField, "1"), Type(kMaxField, "8192")}, 0, 0},
      {"maximum 0", {Type(kMaxField, "0")}, 0x4EA00002, kMaxField},
      {"maximum 8193", {Type(kMaxField, "8193")}, 0x4EA00002, kMaxField},
      {"maximum below minimum",
       {Type(kMinField, "2048"), Type(kMaxField, "1024")},
       0x4EA00003,
       kMaxField},
      {"maximum 4096 below minimum",
       {Type(kMinField, "8192"), Type(kMaxField, "4096")},
       0x4EA00003,
       kMinField},
      {"bad minimum ignored with all durations",
       {Type(kMinField, "0"), Click(kAllDurations)},
       0,
       0},
      {"target 0", {Type(kTargetField, "0")}, 0x4EA00004, kPartsField},
      {"target 3", {Type(kTargetField, "3")}, 0x4EA00004, kPartsField},
      {"target 4", {Type(kTargetField, "4")}, 0, 0},
      {"target 8192 with all durations", {Type(kTargetField, "8192")}, 0, 0},
      {"target 8193 with all durations", {Type(kTargetField, "8193")}, 0x4EA00006, kMinField},
      {"target above the maximum",
       {Type(kMinField, "64"), Type(kMaxField, "2048"), Type(kTargetField, "4096")},
       0x4EA00006,
       kMinField},
      {"target equal to the maximum",
       {Type(kMinField, "64"), Type(kMaxField, "2048"), Type(kTargetField, "2048")},
       0,
       0},
      {"parts field not checked in target mode", {Type(kPartsField, "99"), Click(kByTarget)}, 0, 0},
      {"no parts", {Click(kByDivisions)}, 0x4EA00004, kPartsField},
      {"1 part", {Type(kPartsField, "1")}, 0x4EA00004, kPartsField},
      {"33 parts", {Type(kPartsField, "33")}, 0x4EA00004, kPartsField},
      {"2 parts", {Type(kPartsField, "2")}, 0, 0},
      {"32 parts", {Type(kPartsField, "32")}, 0, 0},
      {"target field not checked in divisions mode",
       {Type(kTargetField, "0"), Type(kPartsField, "2")},
       0,
       0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    probe_.setState(&kDefaults);
    std::vector<DialogAction> script = c.script;
    script.push_back(Click(kOK));
    tSubdivideParam out{-7, -7, -7, -7, -7, -7};
    const short result = RunScript(script, &out);
    const DialogRecord& d = LastDialog();
    const auto& alerts = d.finalState.alerts;
    if (c.alert == 0) {
      EXPECT_EQ(result, 1);
      EXPECT_EQ(d.end, DialogEnd::ByHandler);
      EXPECT_TRUE(alerts.empty());
      EXPECT_TRUE(d.focusChanges.empty());
      EXPECT_EQ(out.targetDuration, probe_.State().targetDuration);
      EXPECT_EQ(out.divisions, probe_.State().divisions);
    } else {
      EXPECT_EQ(result, 0);
      EXPECT_EQ(out.minDuration, -7);
      EXPECT_EQ(d.end, DialogEnd::ByCancel) << "a rejected OK leaves the dialog open";
      ASSERT_EQ(alerts.size(), 1u);
      EXPECT_EQ(alerts[0].kind, 16);
      EXPECT_EQ(alerts[0].identifier, c.alert);
      EXPECT_EQ(alerts[0].key, "20128," + std::to_string(c.alert & 0xFFFF));
      EXPECT_NE(alerts[0].resolved, alerts[0].key) << "the alert text is in the strings table";
      EXPECT_EQ(d.focusChanges, std::vector<int16_t>{c.focus});
    }
    // OK answers 1 whether it was accepted or not.
    for (const auto& m : d.messages) {
      if (m.message == 273 && m.item == kOK) {
        EXPECT_EQ(m.result, 1);
      }
    }
  }
}

TEST_F(DialogHost, CancelKeepsWhatWasTypedForTheNextOpening) {
  Init();
  tSubdivideParam out{-7, -7, -7, -7, -7, -7};
  EXPECT_EQ(RunScript({Type(kMinField, "3000"), Click(kCancel)}, &out), 0);
  EXPECT_EQ(LastDialog().end, DialogEnd::ByHandler);
  EXPECT_EQ(out.minDuration, -7) << "a cancelled run hands out nothing";
  EXPECT_TRUE(SameParam(probe_.State(), tSubdivideParam{3000, 8192, 1024, 0, 0, 0}));

  RunScript({}, &out);
  auto value = [&](int16_t item) { return FinalValue(LastDialog(), item); };
  EXPECT_EQ(value(kMinField), 3000);
  EXPECT_EQ(PaletteBits(value, kMinPalette), "00000000");
  EXPECT_EQ(value(kMinDotted), 0);
  EXPECT_EQ(value(kAllDurations), 0);
  EXPECT_EQ(value(kDurationRange), 1);

  // Divisions typed before a Cancel come back in the parts field as a number.
  RunScript({Type(kPartsField, "7")}, &out);
  RunScript({}, &out);
  EXPECT_EQ(LastDialog().finalState.Find(kPartsField)->text, "7");
  EXPECT_EQ(value(kByDivisions), 1);
  EXPECT_EQ(value(kByTarget), 0);

  // A rejected entry can be corrected and then accepted.
  EXPECT_EQ(
      RunScript({Type(kTargetField, "2"), Click(kOK), Type(kTargetField, "512"), Click(kOK)}, &out),
      1);
  EXPECT_EQ(LastDialog().finalState.alerts.size(), 1u);
  EXPECT_EQ(out.targetDuration, 512);
  EXPECT_EQ(out.byDivisions, 0);
}

TEST_F(DialogHost, ActionsKeepRadiosFieldsAndPalettesInStep) {
  Init();
  probe_.noteDialogWindow();
  tSubdivideParam out{};
  RunSteps(
      {// A palette click sets the field and selects the range; another button keeps the dot.
       Do(Click(kMinPalette + 3)), Expect({{kMinField, 1024}, {3, 0}, {4, 1}}),
       ExpectPalette(kMinPalette, "00010000"), Do(Toggle(kMinDotted)), Expect({{kMinField, 1536}}),
       Do(Click(kMinPalette)), Expect({{kMinField, 12288}}), ExpectPalette(kMinPalette, "10000000"),
       Do(Toggle(kMinDotted)), Expect({{kMinField, 8192}}),
       // Radios.
       Do(Click(kAllDurations)), Expect({{3, 1}, {4, 0}}), Do(Click(kByDivisions)),
       Expect({{13, 1}, {16, 0}}),
       // The target palette and its box select target mode.
       Do(Click(kTargetPalette + 4)), Expect({{kTargetField, 512}, {13, 0}, {16, 1}}),
       Do(Click(kByDivisions)), Do(Toggle(kTargetDotted)),
       Expect({{kTargetField, 768}, {13, 0}, {16, 1}}),
       // Field edits: target and parts fields choose the mode, range fields the range.
       Do(Click(kByDivisions)), Do(Type(kTargetField, "1536")),
       Expect({{13, 0}, {16, 1}, {kTargetDotted, 1}}), ExpectPalette(kTargetPalette, "00010000"),
       Do(Type(kPartsField, "5")), Expect({{13, 1}, {16, 0}}), Do(Type(kMaxField, "512")),
       Expect({{3, 0}, {4, 1}, {kMaxDotted, 0}, {13, 1}}), ExpectPalette(kMaxPalette, "00001000")},
      &out);
  for (const auto& m : LastDialog().messages) {
    if (m.message == 273) {
      EXPECT_EQ(m.result, 1) << "item " << m.item;
    }
  }
}

TEST_F(DialogHost, OtherCodesItemsAndMessagesChangeNothing) {
  Init();
  probe_.noteDialogWindow();
  SF_DialogHandlerProcPtr handler = probe_.handler;
  std::vector<std::pair<int32_t, std::string>> before;
  int16_t flag = 0;
  auto send = [&](const DialogMoment& m, long item, long extra, unsigned char expected,
                  unsigned int message = 273) {
    before = m.Snapshot();
    EXPECT_EQ(handler(m.window, message, item, extra, &flag), expected)
        << "item " << item << " extra " << extra;
  };
  auto unchanged = Check([&](const DialogMoment& m) { EXPECT_EQ(m.Snapshot(), before); });
  std::vector<DialogStep> steps;
  auto add = [&](long item, long extra, unsigned char expected, unsigned int message = 273) {
    steps.push_back(
        Check([=, &send](const DialogMoment& m) { send(m, item, extra, expected, message); }));
    steps.push_back(unchanged);
  };
  // Palette buttons and dotted boxes act only on a plain click.
  for (long item : {25L, 32L, 33L, 40L, 41L, 48L, 6L, 10L, 17L})
    for (long code : {1L, 0x202L, 0xFFFFL})
      add(item, code << 16, 0);
  // Fields act only on 0x202.
  for (long item : {7L, 11L, 14L, 18L})
    for (long code : {0L, 0x201L, 0x203L})
      add(item, code << 16, 1);
  // Items outside 1..48, seen at full width (65537 is not OK, 65538 not Cancel), and labels.
  for (long item : {0L, -1L, 49L, 65537L, 65538L, 5L, 20L, 24L})
    add(item, 0, 1);
  // Messages the handler does not know.
  for (unsigned int message : {0u, 1u, 3u, 0x200u, 274u})
    add(kOK, 0, 0, message);
  // The code is bits 16..31 only: low bits and bits above 31 do not make a click a different one.
  steps.push_back(Check([&](const DialogMoment& m) {
    EXPECT_EQ(handler(m.window, 273, kMinPalette + 4, 0xFFFF, &flag), 1);
    EXPECT_EQ(handler(m.window, 273, kMaxPalette + 2, 1L << 32, &flag), 1);
  }));
  steps.push_back(Check([&](const DialogMoment& m) {
    EXPECT_EQ(m.Value(kMinField), 512);
    EXPECT_EQ(m.Value(kMaxField), 2048);
  }));
  tSubdivideParam out{};
  EXPECT_EQ(RunSteps(steps, &out), 0);
  EXPECT_EQ(flag, 0);
  EXPECT_EQ(LastDialog().end, DialogEnd::ByCancel) << "no stray item ended the dialog";
}
