// The probe plug-in's code: a dialog handler, an alert call and a by-identifier lookup of the
// engine, each running inside this bundle's image as a plug-in's would.
#include "ProbeBundle.h"

#include <CoreFoundation/CoreFoundation.h>
#include <dlfcn.h>

#define PROBE_EXPORT extern "C" __attribute__((visibility("default")))

PROBE_EXPORT unsigned char ProbeDialogHandler(OpaqueCocoaWindow* dialog, unsigned int message,
                                              long item, long extra, void* userData) {
  auto* probe = static_cast<ProbeDialog*>(userData);
  return probe && probe->handle ? probe->handle(probe, dialog, message, item, extra) : 0;
}

PROBE_EXPORT void* ProbeFindHostFunction(const char* name) {
  CFStringRef identifier =
      CFStringCreateWithCString(nullptr, "org.scribo.NotationEngine", kCFStringEncodingUTF8);
  CFBundleRef engine = CFBundleGetBundleWithIdentifier(identifier);
  CFRelease(identifier);
  if (!engine)
    return nullptr;
  CFStringRef function = CFStringCreateWithCString(nullptr, name, kCFStringEncodingUTF8);
  void* found = CFBundleGetFunctionPointerForName(engine, function);
  CFRelease(function);
  return found;
}

// The host finds the caller's bundle by the return address of its call, so the call must come
// from this image: the barrier after it keeps the compiler from turning it into a tail jump.
PROBE_EXPORT int ProbeAlert(uint32_t kind, int32_t identifier, const char* text,
                            const uint16_t* text16) {
  using Alert = int (*)(void*, uint32_t, int32_t, const char*, uint32_t);
  using Alert16 = int (*)(void*, uint32_t, int32_t, const uint16_t*, uint32_t);
  int result = -1;
  if (text16) {
    if (auto alert = reinterpret_cast<Alert16>(ProbeFindHostFunction("SX_AlertMessage_UTF16")))
      result = alert(nullptr, kind, identifier, text16, 0x19500000);
  } else if (auto alert = reinterpret_cast<Alert>(ProbeFindHostFunction("SX_AlertMessage"))) {
    result = alert(nullptr, kind, identifier, text, 0x19500000);
  }
  asm volatile("" ::: "memory");
  return result;
}
