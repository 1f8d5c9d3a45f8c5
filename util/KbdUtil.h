// The live keyboard: whether a key is held down now, and the user's cancel request
// (Command-period) during a long operation. Both read the keyboard state at the moment of the
// call, not the event queue, so they work inside a loop that handles no events.
// Thread: host's main thread (platform user-interface state).
#pragma once

// Virtual key code of the period key, the cancel key with Command.
constexpr char kKeyCodePeriod = 47;

// True when the key with that virtual key code (0..127) is down. A negative code (128 and
// above as an unsigned byte) is false without reading the keyboard.
bool KbdUtilKeyIsDown(char keyCode);

// True when the Command key and the period key are both down. The key map is read only when
// Command is down.
bool EventUtilCancelInQueue();
