#include "KbdUtil.h"

#include <cstdint>
#include <cstring>

#if defined(__APPLE__)
#include <Carbon/Carbon.h>
// The same bits as NSEvent's modifierFlags (Command is bit 20), without Objective-C.
static uint64_t CurrentModifierFlags() {
  return CGEventSourceFlagsState(kCGEventSourceStateCombinedSessionState);
}
#else
#include "ScriboKeyboard.h"
static uint64_t CurrentModifierFlags() {
  return NSEvent_modifierFlags();
}
#endif

namespace {

constexpr uint64_t kModifierCommand = uint64_t{1} << 20;

bool KeyInMap(unsigned keyCode) {
  KeyMap keys;
  GetKeys(keys);
  unsigned char bytes[16];
  std::memcpy(bytes, keys, sizeof bytes);
  return (bytes[keyCode / 8] >> (keyCode % 8)) & 1;
}

} // namespace

bool KbdUtilKeyIsDown(char keyCode) {
  // `char` may be unsigned on some platforms: test the byte value.
  const unsigned code = static_cast<unsigned char>(keyCode);
  if (code >= 128)
    return false;
  return KeyInMap(code);
}

bool EventUtilCancelInQueue() {
  if (!(CurrentModifierFlags() & kModifierCommand))
    return false;
  return KeyInMap(static_cast<unsigned char>(kKeyCodePeriod));
}
