// Selection, layers, instrument slots, the simulated screen, windows and keyboard, and what
// the engine image exports.
#include <cstring>
#include <functional>
#include <string>

#include "EngineTestSupport.h"
#include "probe/ProbeBundle.h"

using namespace enginetest;
using namespace scribo::engine;

namespace {

class ViewAndWindowsTest : public EngineTest {};

TEST_F(ViewAndWindowsTest, SelectionLayersAndSlots) {
  EREGION first{}, second{};
  first.startStaff = 77;
  uint8_t place[8] = {1, 1, 1, 1, 1, 1, 1, 1};
  EXPECT_EQ(host.GetCurERegions(place, &second, &first, kStamp), 0);
  EXPECT_EQ(first.startStaff, 77); // untouched without a selection

  EREGION region{};
  region.startStaff = 2;
  region.startMeasure = 3;
  region.startPosition = 512;
  region.endStaff = 4;
  region.endMeasure = 5;
  region.endPosition = 0x7FFFFFFF;
  host.SetCurERegionMac(&region, kStamp);
  EXPECT_EQ(host.GetCurERegions(place, &second, &first, kStamp), 1);
  EXPECT_EQ(std::memcmp(&first, &region, sizeof region), 0);
  EXPECT_EQ(std::memcmp(&second, &region, sizeof region), 0);
  EXPECT_EQ(engine().Selection()->endMeasure, 5);

  EXPECT_EQ(host.GetMaxLayers(kStamp), 4);
  engine().SetLayerShown(1, false);
  engine().SetMaxLayers(3);
  EXPECT_EQ(host.GetMaxLayers(kStamp), 3);
  std::string shown;
  for (int layer = -1; layer <= 4; ++layer)
    shown += host.GetShowLayer(layer, kStamp) ? '1' : '0';
  EXPECT_EQ(shown, "010100");

  doc().AddStaff();
  doc().AddStaff();
  EXPECT_EQ(host.SlotToInst(1, 0, kStamp), 1);
  EXPECT_EQ(host.SlotToInst(2, 0, kStamp), 2);
  EXPECT_EQ(host.SlotToInst(3, 0, kStamp), 0);
  engine().SetInstrumentSlots({40, 41, 42});
  EXPECT_EQ(host.SlotToInst(3, 0, kStamp), 42);
  EXPECT_EQ(host.SlotToInst(4, 0, kStamp), 0);
  EXPECT_EQ(host.IsMachO(kStamp), 1);
}

TEST_F(ViewAndWindowsTest, ScreenWindowsAndKeyboard) {
  auto mainScreen = reinterpret_cast<int (*)(PlatformRect*)>(Symbol("PlatformMainScreenFrame"));
  auto windowFrame =
      reinterpret_cast<void (*)(void*, PlatformRect*)>(Symbol("PlatformWindowFrame"));
  auto setTopLeft = reinterpret_cast<void (*)(void*, double, double)>(
      Symbol("PlatformWindowSetFrameTopLeftPoint"));
  auto modifiers = reinterpret_cast<uint64_t (*)()>(Symbol("PlatformModifierFlags"));
  auto keyMap = reinterpret_cast<void (*)(unsigned char*)>(Symbol("PlatformKeyMap"));
  ASSERT_TRUE(mainScreen && windowFrame && setTopLeft && modifiers && keyMap);

  PlatformRect frame{};
  EXPECT_EQ(mainScreen(&frame), 1);
  EXPECT_EQ(frame.height, 900);

  // A window's top-left point moves its origin down by its height (y grows upward).
  int window = 0;
  engine().windows().SetWindowFrame(&window, {10, 20, 300, 200});
  setTopLeft(&window, 100, 850);
  windowFrame(&window, &frame);
  EXPECT_EQ(frame.x, 100);
  EXPECT_EQ(frame.y, 650);
  int unknown = 0;
  setTopLeft(&unknown, 1, 1);
  windowFrame(&unknown, &frame);
  EXPECT_EQ(frame.width, 0);

  engine().windows().SetMainScreen(std::nullopt);
  EXPECT_EQ(mainScreen(&frame), 0);

  engine().windows().SetModifierFlags(kModifierCommand);
  EXPECT_EQ(modifiers(), 1ull << 20);
  engine().windows().SetKeyDown(55, true);
  engine().windows().SetKeyDown(0, true);
  unsigned char keys[16] = {};
  keyMap(keys);
  EXPECT_EQ(keys[6], 0x80); // key 55: bit 7 of byte 6
  EXPECT_EQ(keys[0], 0x01);
  engine().windows().ReleaseAllKeys();
  keyMap(keys);
  EXPECT_EQ(keys[6], 0);
}

TEST_F(ViewAndWindowsTest, DialogWindowsCanBePlacedAndDragged) {
  void* probe = scribotest::LoadBundle(ENGINE_PROBE_BUNDLE);
  auto handler = reinterpret_cast<ProbeDialogHandlerFn>(dlsym(probe, "ProbeDialogHandler"));
  auto windowFrame =
      reinterpret_cast<void (*)(void*, PlatformRect*)>(Symbol("PlatformWindowFrame"));
  auto setTopLeft = reinterpret_cast<void (*)(void*, double, double)>(
      Symbol("PlatformWindowSetFrameTopLeftPoint"));

  PlatformRect opened{}, closed{};
  std::function<unsigned char(OpaqueCocoaWindow*, unsigned int, long, long)> behaviour =
      [&](OpaqueCocoaWindow* dialog, unsigned int message, long, long) -> unsigned char {
    if (message == kDialogMessageSetUp) {
      windowFrame(dialog, &opened);
      setTopLeft(dialog, 100, 900 - 50); // 50 points below the top of the screen
    } else if (message == kDialogMessageClose) {
      windowFrame(dialog, &closed);
    }
    return 1;
  };
  ProbeDialog user{[](ProbeDialog* self, OpaqueCocoaWindow* d, unsigned int m, long i, long e) {
                     return (*static_cast<decltype(behaviour)*>(self->test))(d, m, i, e);
                   },
                   &behaviour};
  EXPECT_EQ(host.Dialog(900, handler, nullptr, 0, &user, kStamp), 1);
  // Opened centred on the 1440 x 900 screen, moved by the handler.
  EXPECT_EQ(opened.x, (1440 - kDefaultDialogWidth) / 2);
  EXPECT_EQ(opened.width, kDefaultDialogWidth);
  EXPECT_EQ(closed.x, 100);
  EXPECT_EQ(closed.y + closed.height, 850);

  // The user drags it elsewhere before closing.
  engine().QueueDialogScript({DialogAction::MoveTo(30, 700)});
  EXPECT_EQ(host.Dialog(900, handler, nullptr, 0, &user, kStamp), 1);
  EXPECT_EQ(closed.x, 30);
  EXPECT_EQ(closed.y + closed.height, 700);
  dlclose(probe);
}

TEST_F(ViewAndWindowsTest, EngineIsFoundByIdentifierAndLacksWhatItDoesNotImplement) {
  void* probe = scribotest::LoadBundle(ENGINE_PROBE_BUNDLE);
  auto find = reinterpret_cast<ProbeFindHostFunctionFn>(dlsym(probe, "ProbeFindHostFunction"));
  ASSERT_NE(find, nullptr);
  EXPECT_EQ(find("SX_LoadTGF"), reinterpret_cast<void*>(host.LoadTGF));
  for (const char* absent :
       {"SX_RebarRegion", "SX_GetPartName", "SX_CountParts", "SX_FontDialog", "main"})
    EXPECT_EQ(find(absent), nullptr) << absent;
  dlclose(probe);
}

} // namespace
