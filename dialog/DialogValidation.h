// Checking the options dialog's entries when the user presses OK.
#pragma once

#include "HostTypes.h"

// Checks the entries in a fixed order. The first failure raises its alert (kind 16, 20128,1..4 or
// 20128,6), moves the focus and returns false with the dialog left open. When every check passes
// it sets *accepted (if given) to 1, ends the dialog and returns true.
bool ValidateAndAccept(OpaqueCocoaWindow* dialog, int16_t* accepted);
