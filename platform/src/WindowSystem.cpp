// The window system off macOS: the host process exports the screen and window calls as plain C
// functions. They are looked up on every call rather than cached, so a host that installs its
// window system after loading the plug-in is still found.
#include "ScriboWindowSystem.h"

#include <dlfcn.h>

namespace {

using MainScreenFrameFn = int (*)(ScriboRect* frame);
using WindowFrameFn = void (*)(void* window, ScriboRect* frame);
using SetFrameTopLeftPointFn = void (*)(void* window, double x, double y);

template <class Fn> Fn HostFunction(const char* name) {
  return reinterpret_cast<Fn>(dlsym(RTLD_DEFAULT, name));
}

} // namespace

bool ScriboMainScreenFrame(ScriboRect* frame) {
  *frame = ScriboRect{};
  auto mainScreenFrame = HostFunction<MainScreenFrameFn>("PlatformMainScreenFrame");
  if (!mainScreenFrame)
    return false;
  ScriboRect answer{};
  if (mainScreenFrame(&answer) == 0)
    return false;
  *frame = answer;
  return true;
}

ScriboRect ScriboWindowFrame(void* window) {
  ScriboRect frame{};
  if (!window)
    return frame;
  if (auto windowFrame = HostFunction<WindowFrameFn>("PlatformWindowFrame"))
    windowFrame(window, &frame);
  return frame;
}

void ScriboWindowSetFrameTopLeftPoint(void* window, double x, double y) {
  if (!window)
    return;
  if (auto setTopLeft = HostFunction<SetFrameTopLeftPointFn>("PlatformWindowSetFrameTopLeftPoint"))
    setTopLeft(window, x, y);
}
