#include "CFObject.h"

#include <cstdio>
#include <cstdlib>

namespace {
const CFObjectBase* Base(CFTypeRef object) {
  return static_cast<const CFObjectBase*>(object);
}
} // namespace

CFTypeRef CFRetain(CFTypeRef object) {
  if (object && !Base(object)->immortal)
    const_cast<CFObjectBase*>(Base(object))->refs.fetch_add(1, std::memory_order_relaxed);
  return object;
}

void CFRelease(CFTypeRef object) {
  if (!object || Base(object)->immortal)
    return;
  auto* base = const_cast<CFObjectBase*>(Base(object));
  if (base->refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
    delete base;
}

CFTypeID CFGetTypeID(CFTypeRef object) {
  return object ? Base(object)->type : 0;
}
CFTypeID CFStringGetTypeID(void) {
  return kTypeString;
}
CFTypeID CFURLGetTypeID(void) {
  return kTypeURL;
}
CFTypeID CFBundleGetTypeID(void) {
  return kTypeBundle;
}

extern "C" [[noreturn]] void __assert_rtn(const char* func, const char* file, int line,
                                          const char* expr) {
  std::fprintf(stderr, "Assertion failed: (%s), function %s, file %s, line %d.\n", expr, func, file,
               line);
  std::fflush(stderr);
  std::abort();
}
