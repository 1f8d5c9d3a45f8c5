#include "scribopdk.h"

CFBundleRef gScriboBundle = nullptr;

#ifndef SCRIBO_ENGINE_BUNDLE_ID
#error "SCRIBO_ENGINE_BUNDLE_ID must name the host engine's bundle identifier"
#endif

short InitializeGlobals() {
  if (gScriboBundle)
    return 0;
  gScriboBundle = CFBundleGetBundleWithIdentifier(CFSTR(SCRIBO_ENGINE_BUNDLE_ID));
  if (!gScriboBundle)
    gScriboBundle = CFBundleGetMainBundle(); // bind to the host application itself
  return gScriboBundle ? 0 : -1;
}

CFBundleRef GetScriboBundleRef() {
  return gScriboBundle;
}

short ScriboPluginMain(int32_t token, void* context) {
  if (token == 0 || context == nullptr)
    return 0;
  return InitializeGlobals() == 0 ? 1 : 0;
}

namespace sx::binding {

void* LookUpHostFunction(const char* name) {
  CFStringRef symbol =
      CFStringCreateWithCString(kCFAllocatorDefault, name, kCFStringEncodingMacRoman);
  void* proc = gScriboBundle ? CFBundleGetFunctionPointerForName(gScriboBundle, symbol) : nullptr;
  CFRelease(symbol);
  return proc;
}

} // namespace sx::binding
