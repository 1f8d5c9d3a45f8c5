// Host functions exported by the test program itself: with no engine bundle loaded, the binding
// layer falls back to the main program, where these two are all it finds.
#include <cstdint>
#include <string>

#include "MainProgramHost.h"

namespace {
MainHostAlert gLastAlert;
int gAlertCount = 0;
} // namespace

extern "C" __attribute__((visibility("default"))) int SX_GetWindowCount(uint32_t) {
  return 9;
}

extern "C" __attribute__((visibility("default"))) int
SX_AlertMessage(void* owner, uint32_t kind, int32_t id, const char* text, uint32_t version) {
  gLastAlert = {owner, kind, id, text ? text : "", version};
  ++gAlertCount;
  return 1;
}

const MainHostAlert& LastMainHostAlert() {
  return gLastAlert;
}
int MainHostAlertCount() {
  return gAlertCount;
}
