// The options dialog's process-wide state and its handler. The state lives from load to unload of
// the bundle, is never written to disk and is not guarded: everything runs on the host's main
// thread while SX_Dialog runs modally.
#pragma once

#include <cstdint>

#include "HostTypes.h"
#include "tSubdivideParam.h"

// Where the dialog was when it last closed.
struct tWinPos {
  int16_t top;  // points from the top edge of the main screen down to the dialog's top edge
  int16_t left; // x of the dialog's left edge
};

// "No position saved yet", in either field.
constexpr int16_t kWinPosUnset = 32767;

// The remembered settings: the defaults until the dialog first closes, then whatever its controls
// held when it closed (by OK or by Cancel).
extern tSubdivideParam sDialogState;
// The remembered position; both fields kWinPosUnset until the dialog first closes in a host
// whose dialogs are window-system windows.
extern tWinPos sWinPos;
// The handler handle, made once by InitSelectSubdivisionDialog; null until then, never released.
extern SF_DialogHandlerUPP sDlogHandlerUPP;

// The settings the dialog starts from after the host starts.
constexpr tSubdivideParam kDefaultDialogState{
    .minDuration = 64,
    .maxDuration = 8192,
    .targetDuration = 1024,
    .divisions = 0,
    .allDurations = 1,
    .byDivisions = 0,
};

// The handler the host calls during SX_Dialog. `userData` points at SpecifySubdivision's signed
// 16-bit result flag, which is set to 1 when OK is accepted.
//   272 (set-up): restores the position, fills the controls from sDialogState; returns 1.
//   273 (action on `item`; bits 16..31 of `extra` are the notification code): keeps radios,
//       fields and palettes in step, validates on OK (alerts 20128,1..4 and 20128,6), ends the
//       dialog on OK or Cancel. Returns 1, or 0 for a palette button or dotted box acted on with
//       a non-zero code.
//   2 (closing): saves the position and every control into sDialogState; returns 0.
// Any other message: nothing, 0.
unsigned char MyDlogHandler(OpaqueCocoaWindow* dialog, unsigned int message, long item, long extra,
                            void* userData);
