// A test-only plug-in image: the options dialog with its state made reachable, so that a
// host-side test can run the dialog through the engine and check what it remembered.
#include "ScriboWindowSystem.h"
#include "SubdivisionDialog.h"
#include "SubdivisionDialogState.h"

#define PROBE_EXPORT extern "C" __attribute__((visibility("default")))

PROBE_EXPORT short ProbeInitSelectSubdivisionDialog() {
  return InitSelectSubdivisionDialog();
}

PROBE_EXPORT short ProbeSpecifySubdivision(OpaqueCocoaWindow* parent, tSubdivideParam* out) {
  return SpecifySubdivision(parent, out);
}

PROBE_EXPORT SF_DialogHandlerUPP ProbeHandlerHandle() {
  return sDlogHandlerUPP;
}
PROBE_EXPORT SF_DialogHandlerProcPtr ProbeHandler() {
  return &MyDlogHandler;
}

// The remembered settings and position, read and written in place.
PROBE_EXPORT tSubdivideParam* ProbeDialogState() {
  return &sDialogState;
}
PROBE_EXPORT tWinPos* ProbeWinPos() {
  return &sWinPos;
}

// Direct access to the open dialog window for tests that play a host sending what the reference
// engine never sends (other notification codes, other items): the handler handle is swapped for
// a forwarder that notes the window from set-up to closing and otherwise is MyDlogHandler.
namespace {
OpaqueCocoaWindow* sOpenDialog = nullptr;

unsigned char WindowNotingHandler(OpaqueCocoaWindow* dialog, unsigned int message, long item,
                                  long extra, void* userData) {
  if (message == kDialogMessageSetUp)
    sOpenDialog = dialog;
  const unsigned char result = MyDlogHandler(dialog, message, item, extra, userData);
  if (message == kDialogMessageClose)
    sOpenDialog = nullptr;
  return result;
}
} // namespace

PROBE_EXPORT void ProbeNoteDialogWindow() {
  sDlogHandlerUPP = WindowNotingHandler;
}
PROBE_EXPORT OpaqueCocoaWindow* ProbeOpenDialog() {
  return sOpenDialog;
}

// The window-system stand-in as the dialog uses it.
PROBE_EXPORT bool ProbeMainScreenFrame(ScriboRect* frame) {
  return ScriboMainScreenFrame(frame);
}
PROBE_EXPORT ScriboRect ProbeWindowFrame(void* window) {
  return ScriboWindowFrame(window);
}
PROBE_EXPORT void ProbeWindowSetFrameTopLeftPoint(void* window, double x, double y) {
  ScriboWindowSetFrameTopLeftPoint(window, x, y);
}
