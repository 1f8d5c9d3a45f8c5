// A host process that exports no window-system calls: the plug-in's stand-in answers as a
// system without a screen would, and never fails.
#include <gtest/gtest.h>

#include <array>

#include "TestSupport.h"

TEST(WindowSystemFallback, MissingCallsMeanNoScreenZeroFramesAndNoMoves) {
  using Rect = std::array<double, 4>; // x, y, width, height
  void* image = scribotest::LoadBundle(DIALOG_PROBE_BUNDLE);
  auto screen = scribotest::Symbol<bool (*)(Rect*)>(image, "ProbeMainScreenFrame");
  auto frame = scribotest::Symbol<Rect (*)(void*)>(image, "ProbeWindowFrame");
  auto move =
      scribotest::Symbol<void (*)(void*, double, double)>(image, "ProbeWindowSetFrameTopLeftPoint");
  ASSERT_TRUE(screen && frame && move);
  Rect main{1, 2, 3, 4};
  EXPECT_FALSE(screen(&main));
  EXPECT_EQ(main, Rect{});
  int window = 0;
  move(&window, 100, 200); // nothing to ask: nothing happens
  EXPECT_EQ(frame(&window), Rect{});
}
