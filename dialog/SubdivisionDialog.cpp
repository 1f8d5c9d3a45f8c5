// Running the options dialog and handing its settings to the command.
#include "SubdivisionDialog.h"

#include "DialogItems.h"
#include "HostFunctions.h"
#include "SubdivisionDialogState.h"

tSubdivideParam sDialogState = kDefaultDialogState;
tWinPos sWinPos{kWinPosUnset, kWinPosUnset};
SF_DialogHandlerUPP sDlogHandlerUPP = nullptr;

namespace {
// The flags the command passes to SX_Dialog for its options dialog.
constexpr short kDialogFlags = 0x3001;
// The duration range that stands for "every duration".
constexpr int32_t kAnyMinimum = 1;
constexpr int32_t kAnyMaximum = 0x7FFFFFFF;
} // namespace

short InitSelectSubdivisionDialog() {
  if (sDlogHandlerUPP)
    return 1;
  sDlogHandlerUPP = NewSF_DialogHandlerProc(MyDlogHandler);
  return sDlogHandlerUPP ? 1 : 0;
}

short SpecifySubdivision(OpaqueCocoaWindow* parent, tSubdivideParam* out) {
  if (!sDlogHandlerUPP)
    return 0;
  // The handler sets the flag on an accepted OK; SX_Dialog's own result says nothing about it.
  int16_t accepted = 0;
  SX_Dialog(dialog_items::kResourceID, sDlogHandlerUPP, parent, kDialogFlags, &accepted,
            kScriboHostVersion);
  if (accepted == 0)
    return 0;
  if (out) {
    *out = sDialogState;
    // The widening is for this run only: the dialog keeps showing the typed range.
    if (sDialogState.allDurations != 0) {
      out->minDuration = kAnyMinimum;
      out->maxDuration = kAnyMaximum;
    }
  }
  return accepted;
}
