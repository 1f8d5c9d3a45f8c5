// The options dialog of the subdivision command (dialog resource 20256).
#pragma once

#include "HostTypes.h"
#include "tSubdivideParam.h"

// Makes the dialog handler handle once; 1 when it exists, else 0.
short InitSelectSubdivisionDialog();

// Runs the modal dialog with `parent` as its parent window. Non-zero when the user accepted; then
// `out` holds the settings (with the range widened to 1..0x7FFFFFFF when all durations are
// selected). 0 when cancelled or no dialog could be shown; `out` is then untouched.
short SpecifySubdivision(OpaqueCocoaWindow* parent, tSubdivideParam* out);
