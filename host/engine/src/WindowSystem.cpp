// The simulated window system and keyboard, and the five C functions plug-ins ask it through.
#include "WindowSystem.h"

#include "EngineState.h"
#include "HostExport.h"
#include "ScriboWindowSystem.h"

namespace scribo::engine {

void WindowSystem::SetMainScreen(std::optional<ScreenRect> frame) {
  data_->mainScreen = frame;
}

void WindowSystem::SetWindowFrame(const void* window, ScreenRect frame) {
  if (window)
    data_->windows[window] = frame;
}

std::optional<ScreenRect> WindowSystem::WindowFrame(const void* window) const {
  auto it = data_->windows.find(window);
  if (it == data_->windows.end())
    return std::nullopt;
  return it->second;
}

void WindowSystem::ForgetWindow(const void* window) {
  data_->windows.erase(window);
}

void WindowSystem::SetModifierFlags(uint64_t flags) {
  data_->modifiers = flags;
}

void WindowSystem::SetKeyDown(int key, bool down) {
  if (key < 0 || key >= 128)
    return;
  unsigned char bit = static_cast<unsigned char>(1u << (key % 8));
  if (down)
    data_->keys[size_t(key / 8)] |= bit;
  else
    data_->keys[size_t(key / 8)] &= static_cast<unsigned char>(~bit);
}

} // namespace scribo::engine

using namespace scribo::engine;

SX_EXPORT int PlatformMainScreenFrame(ScriboRect* frame) {
  const auto& screen = State().windowData.mainScreen;
  if (!screen)
    return 0;
  if (frame)
    *frame = {screen->x, screen->y, screen->width, screen->height};
  return 1;
}

SX_EXPORT void PlatformWindowFrame(void* window, ScriboRect* frame) {
  if (!frame)
    return;
  *frame = {0, 0, 0, 0};
  auto& windows = State().windowData.windows;
  auto it = windows.find(window);
  if (it != windows.end())
    *frame = {it->second.x, it->second.y, it->second.width, it->second.height};
}

SX_EXPORT void PlatformWindowSetFrameTopLeftPoint(void* window, double x, double y) {
  auto& windows = State().windowData.windows;
  auto it = windows.find(window);
  if (it == windows.end())
    return;
  it->second.x = x;
  it->second.y = y - it->second.height;
}

SX_EXPORT uint64_t PlatformModifierFlags(void) {
  return State().windowData.modifiers;
}

SX_EXPORT void PlatformKeyMap(unsigned char keyMap[16]) {
  if (!keyMap)
    return;
  const auto& keys = State().windowData.keys;
  for (size_t i = 0; i < keys.size(); ++i)
    keyMap[i] = keys[i];
}
