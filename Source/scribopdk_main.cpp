// The bundle's `main`, which the host calls once after loading it. Kept in its own object so
// that it is linked into plug-in bundles only, never into programs that have their own main.
#include "SDKCounters.h"
#include "scribopdk.h"

// Exported under the plain name "main"; the asm label keeps C++'s rules for the program's main
// function out of a shared object's entry point.
extern "C" __attribute__((visibility("default"))) int
ScriboBundleMain(int token, void* context) __asm__("main");

int ScriboBundleMain(int token, void* context) {
  return ScriboPluginMain(token, context);
}

// Every plug-in bundle exports the diagnostic counters, also one that never calls the wrappers
// that keep them: this reference pulls them into the link.
[[gnu::used]] static const void* const kDiagnosticCounters[] = {
    &LoadedTGFCounter, &CanAddNoteRecordToRests, &ScriboEditDepth, &MassEditDepth};
