// The keyboard map and modifier flags, asked of the host process by name on every call: the
// host may load its keyboard provider after the plug-in, and a missing provider simply means
// that nothing is held down.
#include "ScriboKeyboard.h"

#include <dlfcn.h>

#include <cstring>

static_assert(sizeof(KeyMap) == 16 && sizeof(KeyMapByteArray) == 16);

namespace {

using ModifierFlagsProvider = uint64_t (*)();
using KeyMapProvider = void (*)(unsigned char*);

template <class Fn> Fn FindProvider(const char* name) {
  return reinterpret_cast<Fn>(dlsym(RTLD_DEFAULT, name));
}

} // namespace

extern "C" void GetKeys(KeyMap keys) {
  unsigned char bytes[sizeof(KeyMapByteArray)] = {};
  if (auto provider = FindProvider<KeyMapProvider>("PlatformKeyMap"))
    provider(bytes);
  std::memcpy(keys, bytes, sizeof bytes);
}

extern "C" uint64_t NSEvent_modifierFlags(void) {
  if (auto provider = FindProvider<ModifierFlagsProvider>("PlatformModifierFlags"))
    return provider();
  return 0;
}
