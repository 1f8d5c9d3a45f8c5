// A host process that exports no window-system calls: the plug-in's stand-in answers as a
// system without a screen would, and never fails.
#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "TestSupport.h"

namespace {

struct WindowRect {
  double x, y, width, height;
};

std::vector<double> Fields(const WindowRect& r) {
  return {r.x, r.y, r.width, r.height};
}

} // namespace

TEST(WindowSystemFallback, MissingCallsMeanNoScreenZeroFramesAndNoMoves) {
  void* image = scribotest::LoadBundle(std::filesystem::path(DIALOG_PROBE_BUNDLE));
  auto mainScreenFrame = scribotest::Symbol<bool (*)(WindowRect*)>(image, "ProbeMainScreenFrame");
  auto windowFrame = scribotest::Symbol<WindowRect (*)(void*)>(image, "ProbeWindowFrame");
  auto setTopLeft =
      scribotest::Symbol<void (*)(void*, double, double)>(image, "ProbeWindowSetFrameTopLeftPoint");
  ASSERT_TRUE(mainScreenFrame && windowFrame && setTopLeft);

  WindowRect screen{1, 2, 3, 4};
  EXPECT_FALSE(mainScreenFrame(&screen));
  EXPECT_EQ(Fields(screen), std::vector<double>(4, 0.0));

  int window = 0;
  setTopLeft(&window, 100, 200); // nothing to ask: nothing happens
  EXPECT_EQ(Fields(windowFrame(&window)), std::vector<double>(4, 0.0));
  dlclose(image);
}
