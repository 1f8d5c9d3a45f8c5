// The options dialog run by the reference engine as a host runs it: set-up, the user's actions,
// validation on OK, and what is remembered after OK and Cancel.
#include <cstdlib>
#include <map>
#include <sstream>

#include "DialogTestHost.h"

using namespace dialogtest;
using scribo::engine::DialogEnd;
using scribo::engine::HostCall;

namespace {

constexpr tSubdivideParam kDefaults{64, 8192, 1024, 0, 1, 0};
constexpr tSubdivideParam kUntouched{-7, -7, -7, -7, -7, -7};

// A script in words: "min=0" types into a field, "all" clicks an item.
std::vector<DialogAction> Script(const std::string& words) {
  static const std::map<std::string, int16_t> kNames = {
      {"min", kMinField},       {"max", kMaxField},
      {"target", kTargetField}, {"parts", kPartsField},
      {"all", kAllDurations},   {"byDivisions", kByDivisions},
      {"byTarget", kByTarget},  {"ok", kOK},
      {"cancel", kCancel}};
  std::vector<DialogAction> script;
  std::istringstream in(words);
  for (std::string word; in >> word;) {
    const auto eq = word.find('=');
    const int16_t item = kNames.at(word.substr(0, eq));
    script.push_back(eq == std::string::npos ? Click(item) : Type(item, word.substr(eq + 1)));
  }
  return script;
}

void ExpectFinal(const DialogRecord& d, std::vector<std::pair<int16_t, int32_t>> values) {
  for (auto [item, value] : values)
    EXPECT_EQ(FinalValue(d, item), value) << "item " << item;
}

} // namespace

TEST_F(DialogHost, FirstOpeningShowsTheDefaultsAndCancelChangesNothing) {
  Init();
  tSubdivideParam out = kUntouched;
  EXPECT_EQ(RunScript({}, &out), 0);
  EXPECT_TRUE(SameParam(out, kUntouched)) << "out must stay untouched";

  const DialogRecord& d = LastDialog();
  EXPECT_EQ(d.resource, 20256);
  EXPECT_EQ(d.end, DialogEnd::ByCancel);
  ExpectFinal(d, {{kMinField, 64}, {kMaxField, 8192}, {kTargetField, 1024}});
  ExpectFinal(d, {{kMinDotted, 0}, {kMaxDotted, 0}, {kTargetDotted, 0}});
  ExpectFinal(d, {{kAllDurations, 1}, {kDurationRange, 0}, {kByDivisions, 0}, {kByTarget, 1}});
  auto value = [&](int16_t item) { return FinalValue(d, item); };
  EXPECT_EQ(PaletteBits(value, kMinPalette), "00000001");    // the 64th note
  EXPECT_EQ(PaletteBits(value, kMaxPalette), "10000000");    // the breve
  EXPECT_EQ(PaletteBits(value, kTargetPalette), "00010000"); // the quarter
  EXPECT_EQ(d.finalState.Find(kPartsField)->text, "") << "no parts chosen: the field is empty";

  // 272 answers 1, the host's Cancel 1, closing 0.
  ASSERT_EQ(d.messages.size(), 3u);
  EXPECT_EQ(d.messages[0].message, 272u);
  EXPECT_EQ(d.messages[0].result, 1);
  EXPECT_EQ(d.messages[1].item, kCancel);
  EXPECT_EQ(d.messages[1].result, 1);
  EXPECT_EQ(d.messages[2].message, 2u);
  EXPECT_EQ(d.messages[2].result, 0);
  EXPECT_TRUE(SameParam(*probe_.state(), kDefaults));
}

TEST_F(DialogHost, ResourceLabelsEveryItemInTheUsersLanguage) {
  Init();
  tSubdivideParam out{};
  RunScript({}, &out);
  const auto& view = LastDialog().finalState;
  ASSERT_EQ(view.controls.size(), 48u);
  for (int16_t id = 1; id <= 48; ++id) {
    const auto* c = view.Find(id);
    ASSERT_NE(c, nullptr) << "item " << id;
    EXPECT_EQ(c->labelKey, "20256," + std::to_string(id));
    EXPECT_NE(c->label, c->labelKey) << "no text for item " << id;
  }
  // The two radio pairs are separate groups.
  EXPECT_EQ(view.Find(3)->group, view.Find(4)->group);
  EXPECT_EQ(view.Find(13)->group, view.Find(16)->group);
  EXPECT_NE(view.Find(3)->group, view.Find(13)->group);
  // Palette buttons name their note values, the same in all three palettes.
  EXPECT_EQ(view.Find(25)->label, "Breve");
  EXPECT_EQ(view.Find(36)->label, "Quarter note");
  EXPECT_EQ(view.Find(48)->label, "64th note");
  EXPECT_EQ(view.Find(6)->label, "Dotted");

  ::setenv("LC_ALL", "de_DE.UTF-8", 1);
  RunScript({}, &out);
  ::setenv("LC_ALL", "C", 1);
  EXPECT_EQ(LastDialog().finalState.Find(25)->label, "Brevis");
  EXPECT_EQ(LastDialog().finalState.Find(2)->label, "Abbrechen");
}

TEST_F(DialogHost, HandleIsMadeOnceAndWithoutItNoDialogRuns) {
  tSubdivideParam out = kUntouched;
  EXPECT_EQ(probe_.handlerHandle(), nullptr);
  EXPECT_EQ(probe_.specify(nullptr, &out), 0);
  EXPECT_EQ(Engine::Instance().CallCount(HostCall::Dialog), 0);
  EXPECT_EQ(out.minDuration, -7);

  EXPECT_EQ(probe_.init(), 1);
  const SF_DialogHandlerUPP handle = probe_.handlerHandle();
  EXPECT_EQ(handle, probe_.handler());
  EXPECT_EQ(probe_.init(), 1);
  EXPECT_EQ(probe_.handlerHandle(), handle);
  EXPECT_TRUE(Engine::Instance().Alerts().empty()) << "the engine is a Mach-O-like host";
}

TEST_F(DialogHost, AcceptedRunWidensTheRangeOnItsCopyOnly) {
  Init();
  tSubdivideParam out{};
  EXPECT_EQ(RunScript(Script("ok"), &out), 1);
  EXPECT_EQ(LastDialog().end, DialogEnd::ByHandler);
  EXPECT_TRUE(SameParam(out, tSubdivideParam{1, 0x7FFFFFFF, 1024, 0, 1, 0}));
  EXPECT_TRUE(SameParam(*probe_.state(), kDefaults)) << "the dialog keeps the typed range";

  // With the range selected the copy carries it unchanged.
  EXPECT_EQ(RunScript(Script("min=256 max=2048 ok"), &out), 1);
  EXPECT_TRUE(SameParam(out, tSubdivideParam{256, 2048, 1024, 0, 0, 0}));
  EXPECT_EQ(RunScript(Script("parts=3 ok"), &out), 1);
  EXPECT_TRUE(SameParam(out, tSubdivideParam{256, 2048, 1024, 3, 0, 1}));
}

TEST_F(DialogHost, OkChecksTheEntriesInOrderWithAlertAndFocus) {
  Init();
  struct Case {
    const char* script; // before OK, from the defaults
    int alert;          // 0x4EA0000n; 0: accepted
    int16_t focus;
  };
  const Case cases[] = {
      {"", 0, 0},
      // The range: each end within 1..8192, the minimum reported first.
      {"min=0", 1, kMinField},
      {"min=8193", 1, kMinField},
      {"min=0 max=9000", 1, kMinField},
      {"min=1 max=8192", 0, 0},
      {"max=0", 2, kMaxField},
      {"max=8193", 2, kMaxField},
      {"min=2048 max=1024", 3, kMaxField},
      {"min=8192 max=4096", 3, kMinField},
      {"min=0 all", 0, 0}, // a bad minimum is ignored with all durations
      // The target: 4 .. 8192 and not above the maximum.
      {"target=0", 4, kPartsField},
      {"target=3", 4, kPartsField},
      {"target=4", 0, 0},
      {"target=8192", 0, 0},
      {"target=8193", 6, kMinField},
      {"min=64 max=2048 target=4096", 6, kMinField},
      {"min=64 max=2048 target=2048", 0, 0},
      {"parts=99 byTarget", 0, 0}, // the parts field is not checked in target mode
      // Divisions: 2 .. 32.
      {"byDivisions", 4, kPartsField},
      {"parts=1", 4, kPartsField},
      {"parts=33", 4, kPartsField},
      {"parts=2", 0, 0},
      {"parts=32", 0, 0},
      {"target=0 parts=2", 0, 0}, // the target field is not checked in divisions mode
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.script);
    *probe_.state() = kDefaults;
    tSubdivideParam out = kUntouched;
    const short result = RunScript(Script(std::string(c.script) + " ok"), &out);
    const DialogRecord& d = LastDialog();
    const auto& alerts = d.finalState.alerts;
    if (c.alert == 0) {
      EXPECT_EQ(result, 1);
      EXPECT_EQ(d.end, DialogEnd::ByHandler);
      EXPECT_TRUE(alerts.empty());
      EXPECT_TRUE(d.focusChanges.empty());
      EXPECT_EQ(out.targetDuration, probe_.state()->targetDuration);
      EXPECT_EQ(out.divisions, probe_.state()->divisions);
    } else {
      EXPECT_EQ(result, 0);
      EXPECT_EQ(out.minDuration, -7);
      EXPECT_EQ(d.end, DialogEnd::ByCancel) << "a rejected OK leaves the dialog open";
      ASSERT_EQ(alerts.size(), 1u);
      EXPECT_EQ(alerts[0].kind, 16);
      EXPECT_EQ(alerts[0].identifier, 0x4EA00000 + c.alert);
      EXPECT_EQ(alerts[0].key, "20128," + std::to_string(c.alert));
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
  tSubdivideParam out = kUntouched;
  EXPECT_EQ(RunScript(Script("min=3000 cancel"), &out), 0);
  EXPECT_EQ(LastDialog().end, DialogEnd::ByHandler);
  EXPECT_EQ(out.minDuration, -7) << "a cancelled run hands out nothing";
  EXPECT_TRUE(SameParam(*probe_.state(), tSubdivideParam{3000, 8192, 1024, 0, 0, 0}));

  RunScript({}, &out);
  ExpectFinal(LastDialog(),
              {{kMinField, 3000}, {kMinDotted, 0}, {kAllDurations, 0}, {kDurationRange, 1}});
  EXPECT_EQ(PaletteBits([&](int16_t item) { return FinalValue(LastDialog(), item); }, kMinPalette),
            "00000000");

  // Divisions typed before a Cancel come back in the parts field as a number.
  RunScript(Script("parts=7"), &out);
  RunScript({}, &out);
  EXPECT_EQ(LastDialog().finalState.Find(kPartsField)->text, "7");
  ExpectFinal(LastDialog(), {{kByDivisions, 1}, {kByTarget, 0}});

  // A rejected entry can be corrected and then accepted.
  EXPECT_EQ(RunScript(Script("target=2 ok target=512 ok"), &out), 1);
  EXPECT_EQ(LastDialog().finalState.alerts.size(), 1u);
  EXPECT_EQ(out.targetDuration, 512);
  EXPECT_EQ(out.byDivisions, 0);
}

TEST_F(DialogHost, ActionsKeepRadiosFieldsAndPalettesInStep) {
  Init(true);
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
  Init(true);
  const SF_DialogHandlerProcPtr handler = probe_.handler();
  struct Send {
    long item, extra;
    unsigned char expected;
    unsigned int message = 273;
  };
  std::vector<Send> sends;
  // Palette buttons and dotted boxes act only on a plain click.
  for (long item : {25L, 32L, 33L, 40L, 41L, 48L, 6L, 10L, 17L})
    for (long code : {1L, 0x202L, 0xFFFFL})
      sends.push_back({item, code << 16, 0});
  // Fields act only on 0x202.
  for (long item : {7L, 11L, 14L, 18L})
    for (long code : {0L, 0x201L, 0x203L})
      sends.push_back({item, code << 16, 1});
  // Items outside 1..48, seen at full width (65537 is not OK, 65538 not Cancel), and labels.
  for (long item : {0L, -1L, 49L, 65537L, 65538L, 5L, 20L, 24L})
    sends.push_back({item, 0, 1});
  // Messages the handler does not know.
  for (unsigned int message : {0u, 1u, 3u, 0x200u, 274u})
    sends.push_back({kOK, 0, 0, message});

  int16_t flag = 0;
  tSubdivideParam out{};
  EXPECT_EQ(RunSteps({Check([&](const DialogMoment& m) {
                       for (const Send& s : sends) {
                         const auto before = m.Snapshot();
                         EXPECT_EQ(handler(m.window, s.message, s.item, s.extra, &flag), s.expected)
                             << "item " << s.item << " extra " << s.extra;
                         EXPECT_EQ(m.Snapshot(), before) << "item " << s.item;
                       }
                       // The code is bits 16..31 only: low bits and bits above 31 do not make a
                       // click a different one.
                       EXPECT_EQ(handler(m.window, 273, kMinPalette + 4, 0xFFFF, &flag), 1);
                       EXPECT_EQ(handler(m.window, 273, kMaxPalette + 2, 1L << 32, &flag), 1);
                       EXPECT_EQ(m.Value(kMinField), 512);
                       EXPECT_EQ(m.Value(kMaxField), 2048);
                     })},
                     &out),
            0);
  EXPECT_EQ(flag, 0);
  EXPECT_EQ(LastDialog().end, DialogEnd::ByCancel) << "no stray item ended the dialog";
}
