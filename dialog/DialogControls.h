// The options dialog's controls as the handler and the palettes use them: numeric values only,
// read and written through the host, no text. Thread: host's main thread, inside the handler.
#pragma once

#include <cstdint>

#include "HostFunctions.h"

// The control's numeric value (0/1 for radios, boxes and palette buttons; a field's number).
inline int32_t ControlValue(OpaqueCocoaWindow* dialog, int16_t item) {
  return SX_GetDlgCntlVal(dialog, item, nullptr, 0, kScriboHostVersion);
}

// Sets the control's value; a field then shows the number.
inline void SetControl(OpaqueCocoaWindow* dialog, int16_t item, int32_t value) {
  SX_SetDlgCntlVal(dialog, item, nullptr, value, kScriboHostVersion);
}
