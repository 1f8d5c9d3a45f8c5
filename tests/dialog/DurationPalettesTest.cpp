// The duration palettes as the user sees them: typed values shown on the buttons and the dotted
// box, and clicks written back into the field.
#include "DialogTestHost.h"

using namespace dialogtest;

TEST_F(DialogHost, PalettesShowNoteValuesAndWriteThemBack) {
  Init(true);
  struct Group {
    int16_t field, firstButton, dottedBox;
  };
  for (Group g :
       {Group{kMinField, kMinPalette, kMinDotted}, Group{kMaxField, kMaxPalette, kMaxDotted},
        Group{kTargetField, kTargetPalette, kTargetDotted}}) {
    SCOPED_TRACE(g.field);
    std::vector<DialogStep> steps;
    // Every note value and its dotted value round trip.
    for (int k = 0; k < 8; ++k) {
      std::string only(8, '0');
      only[k] = '1';
      for (bool dotted : {false, true}) {
        const int32_t base = 8192 >> k, value = dotted ? base + base / 2 : base;
        // A leading zero shows whether the field is written again: a write would drop it.
        const std::string typed = "0" + std::to_string(value);
        steps.push_back(Do(Type(g.field, typed)));
        steps.push_back(Check([=](const DialogMoment& m) {
          EXPECT_EQ(m.Bits(g.firstButton), only) << value;
          EXPECT_EQ(m.Value(g.dottedBox), dotted ? 1 : 0) << value;
        }));
        steps.push_back(Do(Click(static_cast<int16_t>(g.firstButton + k))));
        steps.push_back(Check([=](const DialogMoment& m) {
          EXPECT_EQ(m.Text(g.field), typed) << "the field already held the value";
          EXPECT_EQ(m.Bits(g.firstButton), only) << value;
        }));
      }
    }
    // Values that are no note value turn the palette and the box off: 100 lies in range but is
    // neither 64 nor 96; 3000 has 2048 as its highest bit but is neither 2048 nor 3072; an empty
    // field reads 0.
    for (const char* typed : {"63", "12289", "0", "100", "3000", "6145", "", "-1024"}) {
      steps.push_back(Do(Type(g.field, "1536"))); // quarter, dotted
      steps.push_back(Do(Type(g.field, typed)));
      steps.push_back(Check([=](const DialogMoment& m) {
        EXPECT_EQ(m.Bits(g.firstButton), "00000000") << '"' << typed << '"';
        EXPECT_EQ(m.Value(g.dottedBox), 0) << '"' << typed << '"';
      }));
    }
    tSubdivideParam out{};
    RunSteps(steps, &out);
  }
}

TEST_F(DialogHost, DottedBoxWithoutAButtonStandsForALongValueThatOkRejects) {
  Init(true);
  tSubdivideParam out{};
  // 3000 lights no button, so the box works on the value of no button: 16384, dotted 24576.
  const short result =
      RunSteps({Do(Type(kMinField, "3000")), Do(Toggle(kMinDotted)), Expect({{kMinField, 24576}}),
                Do(Toggle(kMinDotted)), Expect({{kMinField, 16384}}), Do(Click(kOK))},
               &out);
  EXPECT_EQ(result, 0);
  ASSERT_EQ(LastDialog().finalState.alerts.size(), 1u);
  EXPECT_EQ(LastDialog().finalState.alerts[0].identifier, 0x4EA00001);
  EXPECT_EQ(LastDialog().focusChanges, std::vector<int16_t>{kMinField});
}
