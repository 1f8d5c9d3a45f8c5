// A test-only plug-in image: the options dialog as an invocation runs it, with what a test needs
// to play a host the reference engine is not (the open dialog window, the handler itself, the
// remembered state), and the window-system stand-in the dialog places itself with.
#include "ScriboWindowSystem.h"
#include "SubdivisionDialog.h"
#include "SubdivisionDialogState.h"

#define PROBE_EXPORT extern "C" __attribute__((visibility("default")))

namespace {
OpaqueCocoaWindow* sOpenDialog = nullptr;

// MyDlogHandler, noting the dialog window from set-up to closing.
unsigned char WindowNotingHandler(OpaqueCocoaWindow* dialog, unsigned int message, long item,
                                  long extra, void* userData) {
  sOpenDialog = message == kDialogMessageClose ? nullptr : dialog;
  return MyDlogHandler(dialog, message, item, extra, userData);
}
} // namespace

PROBE_EXPORT short ProbeRunDialog(tSubdivideParam* out) {
  sDlogHandlerUPP = WindowNotingHandler;
  return SpecifySubdivision(nullptr, out);
}
PROBE_EXPORT OpaqueCocoaWindow* ProbeOpenDialog() {
  return sOpenDialog;
}
PROBE_EXPORT SF_DialogHandlerProcPtr ProbeHandler() {
  return &MyDlogHandler;
}
PROBE_EXPORT tSubdivideParam* ProbeDialogState() {
  return &sDialogState;
}
PROBE_EXPORT void ProbeWinPos(int16_t* topLeft) {
  topLeft[0] = sWinPos.top;
  topLeft[1] = sWinPos.left;
}

PROBE_EXPORT bool ProbeMainScreenFrame(ScriboRect* frame) {
  return ScriboMainScreenFrame(frame);
}
PROBE_EXPORT ScriboRect ProbeWindowFrame(void* window) {
  return ScriboWindowFrame(window);
}
PROBE_EXPORT void ProbeWindowSetFrameTopLeftPoint(void* window, double x, double y) {
  ScriboWindowSetFrameTopLeftPoint(window, x, y);
}
