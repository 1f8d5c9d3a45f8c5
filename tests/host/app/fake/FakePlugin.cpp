// A bundle that looks like a plug-in but misbehaves in one way, chosen at build time:
// FAKE_VERSION: reports another host version; FAKE_MAIN_FAILS: its main returns 0.
#include <cstdint>

#define EXPORT extern "C" __attribute__((visibility("default")))

EXPORT int ScriboFakeMain(int token, void* context) __asm__("main");
int ScriboFakeMain(int token, void* context) {
#ifdef FAKE_MAIN_FAILS
  return 0;
#else
  return token != 0 && context != nullptr;
#endif
}

EXPORT uint32_t ScriboExtensionVersion() {
#ifdef FAKE_VERSION
  return FAKE_VERSION;
#else
  return 0x19500000;
#endif
}

EXPORT int ScriboExtensionInit(void*, uint32_t* flag) {
  *flag = 0;
  return 1;
}
EXPORT int ScriboExtensionEnumerate_UTF16(void*, short, void*) {
  return 0;
}
EXPORT int ScriboExtensionInvoke(void*, short, void*) {
  return 0;
}
