// The probe plug-in that the engine tests load: a bundle with a dialog resource and strings
// tables whose code stands where a plug-in's would, so that the engine finds resources and
// texts by the caller's address. The behaviour comes from the test through these records.
#pragma once

#include <cstdint>

struct OpaqueCocoaWindow;

// User data of the probe's dialog handler: the test's handler and its own state.
struct ProbeDialog {
  unsigned char (*handle)(ProbeDialog* self, OpaqueCocoaWindow* dialog, unsigned int message,
                          long item, long extra);
  void* test; // the test's own state
};

extern "C" {
// The dialog handler the test passes to SX_Dialog; forwards to userData->handle.
typedef unsigned char (*ProbeDialogHandlerFn)(OpaqueCocoaWindow*, unsigned int, long, long, void*);
// Raises an alert from inside the bundle (SX_AlertMessage, or the UTF-16 form when `text16`).
typedef int (*ProbeAlertFn)(uint32_t kind, int32_t identifier, const char* text,
                            const uint16_t* text16);
// SX_LoadTGF as a plug-in binds it: the engine bundle found by identifier, the function by name.
typedef void* (*ProbeFindHostFunctionFn)(const char* name);
}
