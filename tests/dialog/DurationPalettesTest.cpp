// The duration palettes as the user sees them: typed values shown on the buttons and the dotted
// box, and clicks written back into the field.
#include "DialogTestHost.h"

using namespace dialogtest;

namespace {

struct Group {
  const char* name;
  int16_t field, firstButton, dottedBox;
};
constexpr Group kGroups[] = {{"minimum", kMinField, kMinPalette, kMinDotted},
                             {"maximum", kMaxField, kMaxPalette, kMaxDotted},
                             {"target", kTargetField, kTargetPalette, kTargetDotted}};

std::string Bits(const DialogMoment& m, int16_t firstButton) {
  return PaletteBits([&](int16_t item) { return m.Value(item); }, firstButton);
}

std::string OnlyButton(int k) {
  std::string bits(8, '0');
  bits[k] = '1';
  return bits;
}

} // namespace

TEST_F(DialogHost, EveryNoteValueAndItsDottedValueRoundTrip) {
  Init();
  probe_.noteDialogWindow();
  for (const Group& g : kGroups) {
    SCOPED_TRACE(g.name);
    std::vector<DialogStep> steps;
    for (int k = 0; k < 8; ++k) {
      for (bool dotted : {false, true}) {
        const int32_t base = 8192 >> k;
        const int32_t value = dotted ? base + base / 2 : base;
        // A leading zero shows whether the field is written again: a write would drop it.
        const std::string typed = "0" + std::to_string(value);
        steps.push_back(Do(DialogAction::TypeText(g.field, typed)));
        steps.push_back(Check([=](const DialogMoment& m) {
          EXPECT_EQ(Bits(m, g.firstButton), OnlyButton(k)) << value;
          EXPECT_EQ(m.Value(g.dottedBox), dotted ? 1 : 0) << value;
        }));
        steps.push_back(Do(DialogAction::Click(static_cast<int16_t>(g.firstButton + k))));
        steps.push_back(Check([=](const DialogMoment& m) {
          EXPECT_EQ(m.Text(g.field), typed) << "the field already held the value";
          EXPECT_EQ(Bits(m, g.firstButton), OnlyButton(k)) << value;
        }));
      }
    }
    tSubdivideParam out{};
    RunSteps(steps, &out);
  }
}

TEST_F(DialogHost, ValuesThatAreNoNoteValueTurnThePaletteOff) {
  Init();
  probe_.noteDialogWindow();
  for (const Group& g : kGroups) {
    SCOPED_TRACE(g.name);
    std::vector<DialogStep> steps;
    // 100 lies in range but is neither 64 nor 96; 3000 has 2048 as its highest bit but is neither
    // 2048 nor 3072; an empty field reads 0.
    for (const char* typed : {"63", "12289", "0", "100", "3000", "6145", "", "-1024"}) {
      steps.push_back(Do(DialogAction::TypeText(g.field, "1536"))); // quarter, dotted
      steps.push_back(Do(DialogAction::TypeText(g.field, typed)));
      steps.push_back(Check([=](const DialogMoment& m) {
        EXPECT_EQ(Bits(m, g.firstButton), "00000000") << '"' << typed << '"';
        EXPECT_EQ(m.Value(g.dottedBox), 0) << '"' << typed << '"';
      }));
    }
    // The ends of the range and plain against dotted.
    struct Shown {
      const char* typed;
      int k;
      int dotted;
    };
    for (Shown s : {Shown{"12288", 0, 1}, Shown{"8192", 0, 0}, Shown{"96", 7, 1}, Shown{"64", 7, 0},
                    Shown{"1536", 3, 1}, Shown{"1024", 3, 0}}) {
      steps.push_back(Do(DialogAction::TypeText(g.field, s.typed)));
      steps.push_back(Check([=](const DialogMoment& m) {
        EXPECT_EQ(Bits(m, g.firstButton), OnlyButton(s.k)) << s.typed;
        EXPECT_EQ(m.Value(g.dottedBox), s.dotted) << s.typed;
      }));
    }
    tSubdivideParam out{};
    RunSteps(steps, &out);
  }
}

TEST_F(DialogHost, DottedBoxWithoutAButtonStandsForALongValueThatOkRejects) {
  Init();
  probe_.noteDialogWindow();
  tSubdivideParam out{};
  const short result = RunSteps(
      {
          Do(DialogAction::TypeText(kMinField, "3000")),
          Do(DialogAction::Toggle(kMinDotted)),
          Check([](const DialogMoment& m) { EXPECT_EQ(m.Value(kMinField), 24576); }),
          Do(DialogAction::Toggle(kMinDotted)),
          Check([](const DialogMoment& m) { EXPECT_EQ(m.Value(kMinField), 16384); }),
          // The quarter button with the box: 1536; the box off again: 1024.
          Do(DialogAction::Click(kTargetPalette + 3)),
          Do(DialogAction::Toggle(kTargetDotted)),
          Check([](const DialogMoment& m) { EXPECT_EQ(m.Value(kTargetField), 1536); }),
          Do(DialogAction::Toggle(kTargetDotted)),
          Check([](const DialogMoment& m) { EXPECT_EQ(m.Value(kTargetField), 1024); }),
          Do(DialogAction::Click(kOK)),
      },
      &out);
  EXPECT_EQ(result, 0);
  ASSERT_EQ(LastDialog().finalState.alerts.size(), 1u);
  EXPECT_EQ(LastDialog().finalState.alerts[0].identifier, 0x4EA00001);
  EXPECT_EQ(LastDialog().focusChanges, std::vector<int16_t>{kMinField});
}
