// Where the options dialog appears: the position it had when it last closed, measured from the
// top of the main screen, and left alone when the host's window system cannot tell.
#include "DialogTestHost.h"

using namespace dialogtest;

namespace {

// The dialog's frame in the engine's simulated window system.
ScreenRect FrameOf(const DialogMoment& m) {
  auto frame = Engine::Instance().windows().WindowFrame(m.window);
  EXPECT_TRUE(frame.has_value());
  return frame.value_or(ScreenRect{});
}

constexpr short kUnset = 32767;

} // namespace

TEST_F(DialogHost, PositionIsSavedAtCloseAndRestoredAtTheNextSetUp) {
  Init();
  probe_.noteDialogWindow();
  auto& windows = Engine::Instance().windows();
  windows.SetMainScreen(ScreenRect{0, 0, 1440, 900});
  EXPECT_EQ(probe_.WinPos(), std::make_pair(kUnset, kUnset));
  tSubdivideParam out{};

  // Nothing saved yet: the host's own placement (centred) stands.
  RunSteps({Check([](const DialogMoment& m) {
              const ScreenRect f = FrameOf(m);
              EXPECT_EQ(f.x, (1440 - f.width) / 2);
              EXPECT_EQ(f.y, (900 - f.height) / 2);
            }),
            Do(DialogAction::MoveTo(100, 850))},
           &out);
  EXPECT_EQ(probe_.WinPos(), std::make_pair(short(50), short(100))); // {top, left}

  // On a taller screen the dialog comes back 50 points below its top, at x = 100.
  windows.SetMainScreen(ScreenRect{0, 0, 1440, 1200});
  RunSteps({Check([](const DialogMoment& m) {
             const ScreenRect f = FrameOf(m);
             EXPECT_EQ(f.x, 100);
             EXPECT_EQ(f.y + f.height, 1150);
           })},
           &out);
  EXPECT_EQ(probe_.WinPos(), std::make_pair(short(50), short(100)));

  // Coordinates are truncated toward zero, and only their low 16 bits are kept.
  RunScript({DialogAction::MoveTo(-20.75, 1200 - 49.75)}, &out);
  EXPECT_EQ(probe_.WinPos(), std::make_pair(short(49), short(-20)));
  RunScript({DialogAction::MoveTo(70000.5, 1200 + 40000)}, &out);
  EXPECT_EQ(probe_.WinPos(), std::make_pair(short(-40000 + 65536), short(70000 - 65536)));

  // A half-saved position is no position.
  for (auto [top, left] : {std::pair<short, short>{kUnset, 100}, {50, kUnset}}) {
    probe_.setWinPos(top, left);
    RunSteps({Check([](const DialogMoment& m) {
               const ScreenRect f = FrameOf(m);
               EXPECT_EQ(f.x, (1440 - f.width) / 2);
               EXPECT_EQ(f.y, (1200 - f.height) / 2);
             })},
             &out);
  }
}

TEST_F(DialogHost, WithoutAMainScreenTheHeightCountsAsZero) {
  Init();
  probe_.noteDialogWindow();
  Engine::Instance().windows().SetMainScreen(std::nullopt);
  tSubdivideParam out{};

  probe_.setWinPos(50, 100);
  RunSteps({Check([](const DialogMoment& m) {
             const ScreenRect f = FrameOf(m);
             EXPECT_EQ(f.x, 100);
             EXPECT_EQ(f.y + f.height, -50);
           })},
           &out);
  EXPECT_EQ(probe_.WinPos(), std::make_pair(short(50), short(100)));

  // The host opens its dialogs at the origin without a screen; the top edge is then measured
  // from 0.
  probe_.setWinPos(kUnset, kUnset);
  RunScript({}, &out);
  EXPECT_EQ(probe_.WinPos(),
            std::make_pair(short(-scribo::engine::kDefaultDialogHeight), short(0)));
}

TEST_F(DialogHost, AWindowTheHostDoesNotCallACocoaDialogIsLeftAlone) {
  Init();
  auto& windows = Engine::Instance().windows();
  // A window the window system knows, but not one of the host's dialogs.
  int notADialog = 0;
  auto* window = reinterpret_cast<OpaqueCocoaWindow*>(&notADialog);
  const ScreenRect frame{10, 20, 300, 200};
  windows.SetWindowFrame(window, frame);
  probe_.setWinPos(50, 100);
  int16_t flag = 0;

  EXPECT_EQ(probe_.handler(window, 272, 0, 0, &flag), 1);
  EXPECT_EQ(windows.WindowFrame(window), frame) << "set-up must not move it";
  EXPECT_EQ(probe_.handler(window, 2, 0, 0, &flag), 0);
  EXPECT_EQ(probe_.WinPos(), std::make_pair(short(50), short(100))) << "closing must not save";
  // The controls are stored all the same; this host answers 0 for every one.
  const tSubdivideParam state = probe_.State();
  EXPECT_EQ(state.minDuration, 0);
  EXPECT_EQ(state.allDurations, 0);
  windows.ForgetWindow(window);
}
