// The options dialog run by the reference engine as a host runs it, in a fresh image of the
// dialog probe for every test (as if the host had just started): the first opening, the checks on
// OK, the palettes, what is remembered after OK and Cancel (settings and position), and what a
// host may send that this one never does.
#include <algorithm>
#include <cstdlib>
#include <tuple>

#include "CommandTestHost.h"
#include "SubdivisionDialogState.h"

using namespace commandtest;

namespace {

constexpr tSubdivideParam kUntouched{-7, -7, -7, -7, -7, -7};
using Values = std::vector<std::pair<int16_t, int32_t>>;

// Checks that the dialog's items hold these values.
void Expect(const DialogView& view, const Values& values) {
  for (auto [item, value] : values)
    EXPECT_EQ(view.Find(item) ? view.Find(item)->value : -1, value) << "item " << item;
}
// What a duration group's palette shows for button k (-1: none) and its dotted box.
Values Palette(const DurationGroup& group, int k, bool dotted) {
  Values values{{group.dottedBox, dotted ? 1 : 0}};
  for (int i = 0; i < kPaletteSize; ++i)
    values.emplace_back(int16_t(group.firstButton + i), i == k ? 1 : 0);
  return values;
}

class Dialog : public HostTest {
protected:
  void SetUp() override {
    HostTest::SetUp();
    const std::string name = ::testing::UnitTest::GetInstance()->current_test_info()->name();
    copy_ = scribotest::FreshBundleCopy(DIALOG_PROBE_BUNDLE, "dialog-" + name);
    // The image stays loaded, as in a host: its binding keeps the engine bundle for the process.
    void* image = LoadAndStart(copy_);
    run_ = Export<short (*)(tSubdivideParam*)>(image, "ProbeRunDialog");
    openDialog_ = Export<OpaqueCocoaWindow* (*)()>(image, "ProbeOpenDialog");
    handler_ = Export<SF_DialogHandlerProcPtr (*)()>(image, "ProbeHandler")();
    state_ = Export<tSubdivideParam* (*)()>(image, "ProbeDialogState")();
    winPos_ = Export<void (*)(int16_t*)>(image, "ProbeWinPos");
  }
  void TearDown() override {
    HostTest::TearDown();
    std::filesystem::remove_all(copy_.parent_path());
  }
  // Runs the dialog as an invocation does, with a script (none: the host presses Cancel at once);
  // what the user then sees is LastDialog().finalState.
  short Run(DialogScript script, tSubdivideParam* out = nullptr) {
    engine().QueueDialogScript(std::move(script));
    return run_(out);
  }
  // The remembered position: top, left.
  std::array<int16_t, 2> WinPos() const {
    std::array<int16_t, 2> topLeft{};
    winPos_(topLeft.data());
    return topLeft;
  }

  std::filesystem::path copy_;
  short (*run_)(tSubdivideParam*) = nullptr;
  OpaqueCocoaWindow* (*openDialog_)() = nullptr;
  SF_DialogHandlerProcPtr handler_ = nullptr;
  tSubdivideParam* state_ = nullptr;
  void (*winPos_)(int16_t*) = nullptr;
};

TEST_F(Dialog, FirstOpeningShowsTheDefaultsLabelledInTheUsersLanguage) {
  tSubdivideParam out = kUntouched;
  EXPECT_EQ(Run({}, &out), 0);
  EXPECT_EQ(Fields(out), Fields(kUntouched)) << "a cancelled dialog hands out nothing";
  const DialogView& shown = LastDialog().finalState;
  Expect(shown, {{kMinimumField, 64}, {kMaximumField, 8192}, {kTargetField, 1024}});
  Expect(shown, {{kAllDurations, 1}, {kDurationRange, 0}, {kByDivisions, 0}, {kByTarget, 1}});
  Expect(shown, Palette(kMinimumGroup, 7, false)); // the 64th note
  Expect(shown, Palette(kMaximumGroup, 0, false)); // the breve
  Expect(shown, Palette(kTargetGroup, 3, false));  // the quarter
  EXPECT_EQ(shown.Find(kDivisionsField)->text, "") << "no parts chosen: an empty field";
  std::vector<std::tuple<unsigned, long, int>> answers;
  for (const DialogMessage& m : LastDialog().messages)
    answers.emplace_back(m.message, m.item, m.result);
  EXPECT_EQ(answers, (decltype(answers){{272, 0, 1}, {273, kCancel, 1}, {2, 0, 0}}));

  // Every item is labelled from the strings table, in the user's language.
  for (auto [locale, cancel] : {std::pair("C", "Cancel"), std::pair("de_DE.UTF-8", "Abbrechen")}) {
    ::setenv("LC_ALL", locale, 1);
    Run({});
    for (const DialogControl& c : LastDialog().finalState.controls)
      EXPECT_NE(c.label, std::to_string(kResourceID) + "," + std::to_string(c.id))
          << locale << ": no text for " << c.id;
    EXPECT_EQ(LastDialog().finalState.controls.size(), size_t(kLastItem));
    EXPECT_EQ(LastDialog().finalState.Find(kCancel)->label, cancel);
  }
  ::setenv("LC_ALL", "C", 1);
}

TEST_F(Dialog, OkChecksTheEntriesInOrderWithAlertAndFocus) {
  struct Case {
    DialogScript script; // played before OK, from the defaults
    int alert;           // n of alert 20128,n; 0: accepted
    int16_t focus;
  };
  const Case cases[] = {
      {{}, 0, 0},
      // The range: each end within 1..8192, the minimum reported first.
      {{Type(kMinimumField, 0)}, 1, kMinimumField},
      {{Type(kMinimumField, 8193)}, 1, kMinimumField},
      {{Type(kMinimumField, 0), Type(kMaximumField, 9000)}, 1, kMinimumField},
      {{Type(kMinimumField, 1), Type(kMaximumField, 8192)}, 0, 0},
      {{Type(kMaximumField, 0)}, 2, kMaximumField},
      {{Type(kMaximumField, 8193)}, 2, kMaximumField},
      {{Type(kMinimumField, 2048), Type(kMaximumField, 1024)}, 3, kMaximumField},
      {{Type(kMinimumField, 8192), Type(kMaximumField, 4096)}, 3, kMinimumField},
      // A bad minimum is ignored with all durations.
      {{Type(kMinimumField, 0), Click(kAllDurations)}, 0, 0},
      // The target: 4 .. 8192 and not above the maximum.
      {{Type(kTargetField, 0)}, 4, kDivisionsField},
      {{Type(kTargetField, 3)}, 4, kDivisionsField},
      {{Type(kTargetField, 4)}, 0, 0},
      {{Type(kTargetField, 8192)}, 0, 0},
      {{Type(kTargetField, 8193)}, 6, kMinimumField},
      {{Type(kMaximumField, 2048), Type(kTargetField, 4096)}, 6, kMinimumField},
      {{Type(kMaximumField, 2048), Type(kTargetField, 2048)}, 0, 0},
      // The parts field is not checked in target mode, nor the target in divisions mode.
      {{Type(kDivisionsField, 99), Click(kByTarget)}, 0, 0},
      {{Type(kTargetField, 0), Type(kDivisionsField, 2)}, 0, 0},
      // Divisions: 2 .. 32.
      {{Click(kByDivisions)}, 4, kDivisionsField},
      {{Type(kDivisionsField, 1)}, 4, kDivisionsField},
      {{Type(kDivisionsField, 33)}, 4, kDivisionsField},
      {{Type(kDivisionsField, 2)}, 0, 0},
      {{Type(kDivisionsField, 32)}, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(&c - cases);
    *state_ = kDefaultDialogState;
    tSubdivideParam out = kUntouched;
    DialogScript script = c.script;
    script.push_back(Click(kOK));
    const short result = Run(script, &out);

    const DialogRecord& d = LastDialog();
    const auto& alerts = d.finalState.alerts;
    EXPECT_EQ(result, c.alert == 0 ? 1 : 0);
    EXPECT_EQ(d.end, c.alert == 0 ? DialogEnd::ByHandler : DialogEnd::ByCancel)
        << "a rejected OK leaves the dialog open";
    EXPECT_EQ(out.targetDuration, c.alert == 0 ? state_->targetDuration : -7);
    EXPECT_EQ(out.divisions, c.alert == 0 ? state_->divisions : -7);
    EXPECT_EQ(d.focusChanges, c.alert == 0 ? std::vector<int16_t>{} : std::vector{c.focus});
    ASSERT_EQ(alerts.size(), c.alert == 0 ? 0u : 1u);
    if (c.alert != 0) {
      EXPECT_EQ(alerts[0].kind, 16);
      EXPECT_EQ(alerts[0].identifier, (20128 << 16) + c.alert);
      EXPECT_EQ(alerts[0].key, "20128," + std::to_string(c.alert));
      EXPECT_NE(alerts[0].resolved, alerts[0].key) << "the alert text is in the strings table";
    }
    const auto ok = std::ranges::find(d.messages, long(kOK), &DialogMessage::item);
    ASSERT_NE(ok, d.messages.end());
    EXPECT_EQ(ok->result, 1) << "OK answers 1, accepted or not";
  }
}

TEST_F(Dialog, EveryNoteValueRoundTripsThroughEachPalette) {
  for (const DurationGroup& g : {kMinimumGroup, kMaximumGroup, kTargetGroup}) {
    // Plays `script` after turning the group's radio off: the dialog then shows `values`, the
    // group's radio on again and, when given, `text` in the field; every action answers 1.
    auto expect = [&](DialogScript script, Values values, const std::string& text = "") {
      script.insert(script.begin(), Click(g.radioOff));
      Run(std::move(script));
      values.insert(values.end(), {{g.radioOn, 1}, {g.radioOff, 0}});
      Expect(LastDialog().finalState, values);
      EXPECT_TRUE(text.empty() || LastDialog().finalState.Find(g.field)->text == text) << text;
      for (const DialogMessage& m : LastDialog().messages)
        EXPECT_TRUE(m.message != 273 || m.result == 1) << "item " << m.item << " answered 0";
    };
    for (int k = 0; k < kPaletteSize; ++k) {
      SCOPED_TRACE(testing::Message() << "field " << g.field << " button " << k);
      const int next = (k + 1) % kPaletteSize;
      const int32_t base = 8192 >> k, dotted = base + base / 2;
      // A leading zero shows whether the field is written again: a write would drop it.
      const auto type = [&](int32_t v) {
        return DialogAction::TypeText(g.field, "0" + std::to_string(v));
      };
      const auto click = [&](int i) { return Click(int16_t(g.firstButton + i)); };
      auto shown = [&](int button, bool dot, int32_t value) {
        Values values = Palette(g, button, dot);
        values.emplace_back(g.field, value);
        return values;
      };
      expect({type(base)}, shown(k, false, base));
      expect({type(dotted)}, shown(k, true, dotted));
      // The same button again leaves the field as typed.
      expect({type(base), Click(g.radioOff), click(k)}, shown(k, false, base),
             "0" + std::to_string(base));
      // Another button keeps the dot; the box alone takes it off again.
      expect({type(dotted), Click(g.radioOff), click(next), Click(g.radioOff),
              DialogAction::Toggle(g.dottedBox)},
             shown(next, false, 8192 >> next));
    }
    // Values that are no note value turn the palette and the box off: 100 lies in range but is
    // neither 64 nor 96; 3000 has 2048 as its highest bit but is neither 2048 nor 3072; an empty
    // field reads 0.
    for (const char* value : {"63", "12289", "0", "100", "3000", "6145", "", "-1024"})
      expect({DialogAction::TypeText(g.field, "1536"), DialogAction::TypeText(g.field, value)},
             Palette(g, -1, false));
  }
  // A box without a button stands for 16384, dotted 24576: values OK rejects.
  Run({DialogAction::TypeText(kMinimumField, "3000"), DialogAction::Toggle(kMinimumDotted),
       Click(kOK)});
  Expect(LastDialog().finalState, {{kMinimumField, 24576}});
  ASSERT_EQ(LastDialog().finalState.alerts.size(), 1u);
  EXPECT_EQ(LastDialog().finalState.alerts[0].key, "20128,1");
  Run({DialogAction::Toggle(kMinimumDotted), DialogAction::Toggle(kMinimumDotted)});
  Expect(LastDialog().finalState, {{kMinimumField, 16384}});
}

TEST_F(Dialog, RadiosWorkInPairsAndWhatWasTypedIsShownAgain) {
  Run({Click(kByDivisions), Click(kDurationRange)});
  Expect(LastDialog().finalState,
         {{kByDivisions, 1}, {kByTarget, 0}, {kAllDurations, 0}, {kDurationRange, 1}});
  Run({Click(kByTarget), Click(kAllDurations)});
  Expect(LastDialog().finalState,
         {{kByDivisions, 0}, {kByTarget, 1}, {kAllDurations, 1}, {kDurationRange, 0}});

  tSubdivideParam out = kUntouched;
  EXPECT_EQ(Run({Type(kMinimumField, 3000), Click(kCancel)}, &out), 0);
  EXPECT_EQ(Fields(out), Fields(kUntouched));
  Run({Type(kDivisionsField, 7)});
  Run({});
  const DialogView& shown = LastDialog().finalState;
  Expect(shown, {{kMinimumField, 3000}, {kAllDurations, 0}, {kDurationRange, 1}});
  Expect(shown, {{kByDivisions, 1}, {kByTarget, 0}});
  Expect(shown, Palette(kMinimumGroup, -1, false));
  EXPECT_EQ(shown.Find(kDivisionsField)->text, "7");
  // With all durations the run gets every duration; the dialog keeps showing the typed range.
  EXPECT_EQ(Run({Type(kMinimumField, 256), Type(kMaximumField, 2048), Type(kTargetField, 512),
                 Click(kAllDurations), Click(kOK)},
                &out),
            1);
  EXPECT_EQ(Fields(out), (std::array<int32_t, 6>{1, kNoUpperBound, 512, 7, 1, 0}));
  Run({});
  Expect(LastDialog().finalState,
         {{kMinimumField, 256}, {kMaximumField, 2048}, {kAllDurations, 1}, {kByTarget, 1}});
}

// Each opening is seen in the position saved when it closes without being moved.
TEST_F(Dialog, PositionIsSavedAtCloseAndRestoredFromTheTopOfTheMainScreen) {
  using TopLeft = std::array<int16_t, 2>;
  auto& windows = engine().windows();
  const auto moveTo = [&](double left, double top) {
    Run({DialogAction::MoveTo(left, top)});
    return WinPos();
  };
  // Where the host puts a dialog on a screen of this size: centred.
  const auto centred = [](double width, double height) {
    return TopLeft{int16_t((height - kDefaultDialogHeight) / 2),
                   int16_t((width - kDefaultDialogWidth) / 2)};
  };
  const auto reopen = [&] {
    Run({});
    return WinPos();
  };
  windows.SetMainScreen(ScreenRect{0, 0, 1440, 900});
  EXPECT_EQ(WinPos(), (TopLeft{32767, 32767})) << "nothing saved yet";
  EXPECT_EQ(reopen(), centred(1440, 900)) << "the host centres it";
  EXPECT_EQ(moveTo(100, 850), (TopLeft{50, 100}));
  // On a taller screen the dialog comes back 50 points below its top, at x = 100.
  windows.SetMainScreen(ScreenRect{0, 0, 1440, 1200});
  EXPECT_EQ(reopen(), (TopLeft{50, 100}));
  // Coordinates are truncated toward zero, and only their low 16 bits are kept.
  EXPECT_EQ(moveTo(-20.75, 1200 - 49.75), (TopLeft{49, -20}));
  EXPECT_EQ(moveTo(70000.5, 1200 + 40000), (TopLeft{-40000 + 65536, 70000 - 65536}));
  EXPECT_EQ(reopen(), (TopLeft{-40000 + 65536, 70000 - 65536}));
  // A top or left of 32767 is no saved position: the host's placement stands.
  for (auto [left, top] : {std::pair(100.0, 1200.0 - 32767), std::pair(32767.0, 1000.0)}) {
    moveTo(left, top);
    EXPECT_EQ(reopen(), centred(1440, 1200));
  }
  // Without a main screen its height counts as 0 both ways.
  windows.SetMainScreen(std::nullopt);
  EXPECT_EQ(moveTo(100, -50), (TopLeft{50, 100}));
  EXPECT_EQ(reopen(), (TopLeft{50, 100}));

  // A window the window system knows but that is not one of the host's dialogs is neither moved
  // at set-up nor measured at closing; its controls (all 0 to this host) are stored all the same.
  int notADialog = 0;
  auto* window = reinterpret_cast<OpaqueCocoaWindow*>(&notADialog);
  const ScreenRect frame{10, 20, 300, 200};
  windows.SetWindowFrame(window, frame);
  EXPECT_EQ(handler_(window, 272, 0, 0, nullptr), 1);
  EXPECT_EQ(handler_(window, 2, 0, 0, nullptr), 0);
  EXPECT_EQ(windows.WindowFrame(window), frame);
  windows.ForgetWindow(window);
  EXPECT_EQ(WinPos(), (TopLeft{50, 100}));
  EXPECT_EQ(state_->minDuration, 0);
}

// Codes, items and messages the reference engine never sends, sent to the handler directly while
// its dialog is open: the dialog closes as it would have without them.
TEST_F(Dialog, OtherCodesItemsAndMessagesChangeNothing) {
  Run({});
  const auto shown = [] {
    std::vector<std::tuple<int16_t, int32_t, std::string>> all;
    for (const DialogControl& c : LastDialog().finalState.controls)
      all.emplace_back(c.id, c.value, c.text);
    return all;
  };
  const auto plain = shown();
  // Message, item, extra, answer. Palette buttons and dotted boxes act only on a plain click
  // (code 0 in bits 16..31), fields only on 0x202; items are seen at full width (65537 is not OK).
  const std::tuple<unsigned, long, long, unsigned char> sends[] = {
      {273, kMinimumPalette, 1L << 16, 0},
      {273, kTargetPalette + 7, 0x202L << 16, 0},
      {273, kMinimumDotted, 0xFFFFL << 16, 0},
      {273, kTargetDotted, 1L << 16, 0},
      {273, kMinimumField, 0, 1},
      {273, kTargetField, 0x201L << 16, 1},
      {273, kDivisionsField, 0, 1},
      {273, kFirstItem - 1, 0, 1},
      {273, kLastItem + 1, 0, 1},
      {273, 0x10000 + kOK, 0, 1},
      {273, 0x10000 + kCancel, 0, 1},
      {273, kMinimumLabel, 0, 1},
      {0, kOK, 0, 0},
      {274, kOK, 0, 0}};
  int16_t accepted = 0;
  engine().SetInteractiveDialogs([&](const DialogView&) -> std::optional<DialogAction> {
    for (const auto& [message, item, extra, answer] : sends)
      EXPECT_EQ(handler_(openDialog_(), message, item, extra, &accepted), answer) << item;
    return std::nullopt;
  });
  run_(nullptr);
  EXPECT_EQ(accepted, 0);
  EXPECT_EQ(LastDialog().end, DialogEnd::ByCancel) << "no stray item ended the dialog";
  EXPECT_EQ(shown(), plain);
}

} // namespace
