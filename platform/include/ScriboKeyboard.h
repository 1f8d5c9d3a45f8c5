// Keyboard stand-in for platforms without Carbon and AppKit: the live keyboard map and the
// current modifier flags, with the shapes of the macOS calls that the SDK's keyboard utilities
// use.
//
// Both answers come from the host process, which may export
//   uint64_t PlatformModifierFlags(void);               // bit 20: Command
//   void     PlatformKeyMap(unsigned char keyMap[16]);  // key k: bit k%8 of byte k/8
// Each call looks the provider up by name (dlsym with RTLD_DEFAULT, so the provider must be in
// the process's global scope: the main program or an image loaded RTLD_GLOBAL) and asks it.
// When a provider is missing the answer is "no modifier" and "no key down".
// Thread: host's main thread (the answers describe user-interface state).
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Carbon's 128-bit keyboard snapshot. Read it as bytes (KeyMapByteArray): the key with virtual
// key code k is bit k%8 (bit 0 least significant) of byte k/8.
typedef uint32_t KeyMap[4];
typedef uint8_t KeyMapByteArray[16];

// Fills `keys` with the keys held down at the moment of the call; all zero without a provider.
void GetKeys(KeyMap keys);

// The modifier keys held down at the moment of the call, as the class property
// `modifierFlags` of NSEvent answers them; 0 without a provider.
uint64_t NSEvent_modifierFlags(void);

#ifdef __cplusplus
}
#endif
