// The simulated screen, windows and keyboard behind the five Platform* functions the engine
// exports (PlatformMainScreenFrame, PlatformWindowFrame, PlatformWindowSetFrameTopLeftPoint,
// PlatformModifierFlags, PlatformKeyMap). Coordinates are points with the origin at the bottom
// left of the screen and y upward, as the window system has them.
//
// Thread: host's main thread.
#pragma once

#include <cstdint>
#include <optional>

#include "EngineApi.h"

namespace scribo::engine {

struct ScreenRect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  friend bool operator==(const ScreenRect&, const ScreenRect&) = default;
};

constexpr uint64_t kModifierCommand = 1ull << 20;

// Size the engine gives a dialog window when it opens, centred on the main screen.
constexpr double kDefaultDialogWidth = 480;
constexpr double kDefaultDialogHeight = 360;

struct WindowSystemData;

class SCRIBO_ENGINE_API WindowSystem {
public:
  explicit WindowSystem(WindowSystemData& data) : data_(&data) {}

  // The main screen; 1440 x 900 at the origin by default; nullopt: no main screen.
  void SetMainScreen(std::optional<ScreenRect> frame);

  // Frames of known windows (dialog windows are registered while they are open). Unknown
  // windows read as all zero and do not move.
  void SetWindowFrame(const void* window, ScreenRect frame);
  std::optional<ScreenRect> WindowFrame(const void* window) const;
  void ForgetWindow(const void* window);

  // Keyboard state: modifier flags (bit 20: Command) and keys down (key k: bit k % 8 of byte k /
  // 8).
  void SetModifierFlags(uint64_t flags);
  void SetKeyDown(int key, bool down); // keys 0..127

private:
  WindowSystemData* data_;
};

} // namespace scribo::engine
