// Where the options dialog appears: the position it had when it last closed, measured from the
// top of the main screen, and left alone when the host's window system cannot tell.
#include "DialogTestHost.h"

using namespace dialogtest;
using scribo::engine::ScreenRect;

namespace {

constexpr short kUnset = 32767;

WinPos TopLeft(int top, int left) {
  return {static_cast<int16_t>(top), static_cast<int16_t>(left)};
}

// Checks the dialog's frame in the engine's simulated window system as it opens.
DialogStep ExpectFrame(std::function<void(const ScreenRect&)> check) {
  return Check([check](const DialogMoment& m) {
    auto frame = Engine::Instance().windows().WindowFrame(m.window);
    ASSERT_TRUE(frame.has_value());
    check(*frame);
  });
}
DialogStep ExpectCentred(int screenWidth, int screenHeight) {
  return ExpectFrame([=](const ScreenRect& f) {
    EXPECT_EQ(f.x, (screenWidth - f.width) / 2);
    EXPECT_EQ(f.y, (screenHeight - f.height) / 2);
  });
}
DialogStep ExpectAt(int x, int bottom) {
  return ExpectFrame([=](const ScreenRect& f) {
    EXPECT_EQ(f.x, x);
    EXPECT_EQ(f.y + f.height, bottom);
  });
}

} // namespace

TEST_F(DialogHost, PositionIsSavedAtCloseAndRestoredAtTheNextSetUp) {
  Init(true);
  auto& windows = Engine::Instance().windows();
  windows.SetMainScreen(ScreenRect{0, 0, 1440, 900});
  EXPECT_EQ(*probe_.winPos(), TopLeft(kUnset, kUnset));
  tSubdivideParam out{};

  // Nothing saved yet: the host's own placement (centred) stands.
  RunSteps({ExpectCentred(1440, 900), Do(DialogAction::MoveTo(100, 850))}, &out);
  EXPECT_EQ(*probe_.winPos(), TopLeft(50, 100));

  // On a taller screen the dialog comes back 50 points below its top, at x = 100.
  windows.SetMainScreen(ScreenRect{0, 0, 1440, 1200});
  RunSteps({ExpectAt(100, 1150)}, &out);
  EXPECT_EQ(*probe_.winPos(), TopLeft(50, 100));

  // Coordinates are truncated toward zero, and only their low 16 bits are kept.
  RunScript({DialogAction::MoveTo(-20.75, 1200 - 49.75)}, &out);
  EXPECT_EQ(*probe_.winPos(), TopLeft(49, -20));
  RunScript({DialogAction::MoveTo(70000.5, 1200 + 40000)}, &out);
  EXPECT_EQ(*probe_.winPos(), TopLeft(-40000 + 65536, 70000 - 65536));

  // A half-saved position is no position.
  for (WinPos half : {TopLeft(kUnset, 100), TopLeft(50, kUnset)}) {
    *probe_.winPos() = half;
    RunSteps({ExpectCentred(1440, 1200)}, &out);
  }
}

TEST_F(DialogHost, WithoutAMainScreenTheHeightCountsAsZero) {
  Init(true);
  Engine::Instance().windows().SetMainScreen(std::nullopt);
  tSubdivideParam out{};
  *probe_.winPos() = TopLeft(50, 100);
  RunSteps({ExpectAt(100, -50)}, &out);
  EXPECT_EQ(*probe_.winPos(), TopLeft(50, 100));

  // The host opens its dialogs at the origin without a screen; the top edge is then measured
  // from 0.
  *probe_.winPos() = TopLeft(kUnset, kUnset);
  RunScript({}, &out);
  EXPECT_EQ(*probe_.winPos(), TopLeft(-scribo::engine::kDefaultDialogHeight, 0));
}

TEST_F(DialogHost, AWindowTheHostDoesNotCallACocoaDialogIsLeftAlone) {
  Init();
  auto& windows = Engine::Instance().windows();
  // A window the window system knows, but not one of the host's dialogs.
  int notADialog = 0;
  auto* window = reinterpret_cast<OpaqueCocoaWindow*>(&notADialog);
  const ScreenRect frame{10, 20, 300, 200};
  windows.SetWindowFrame(window, frame);
  *probe_.winPos() = TopLeft(50, 100);
  int16_t flag = 0;

  EXPECT_EQ(probe_.handler()(window, 272, 0, 0, &flag), 1);
  EXPECT_EQ(windows.WindowFrame(window), frame) << "set-up must not move it";
  EXPECT_EQ(probe_.handler()(window, 2, 0, 0, &flag), 0);
  EXPECT_EQ(*probe_.winPos(), TopLeft(50, 100)) << "closing must not save";
  // The controls are stored all the same; this host answers 0 for every one.
  EXPECT_EQ(probe_.state()->minDuration, 0);
  EXPECT_EQ(probe_.state()->allDurations, 0);
  windows.ForgetWindow(window);
}
