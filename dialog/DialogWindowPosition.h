// Keeping the options dialog where the user left it: the position is saved in sWinPos when the
// dialog closes and restored when it is next set up, both only for host dialogs that are
// window-system windows (SX_IsCocoaSXDLG non-zero).
#pragma once

#include "HostTypes.h"

// Moves the dialog to the saved position, if one was saved and the host allows it.
void RestoreDialogPosition(OpaqueCocoaWindow* dialog);

// Saves the dialog's current position in sWinPos, if the host allows it.
void SaveDialogPosition(OpaqueCocoaWindow* dialog);
