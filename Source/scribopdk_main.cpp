// The bundle's `main`, which the host calls once after loading it. Kept in its own object so
// that it is linked into plug-in bundles only, never into programs that have their own main.
#include "SDKCounters.h"
#include "scribopdk.h"

// The assembler name of a C symbol: the platform's prefix for C names (an underscore on the
// original platform, none on Linux) and the name, so a by-name lookup of "main" finds it.
#define SCRIBO_STRINGIFY_(x) #x
#define SCRIBO_STRINGIFY(x) SCRIBO_STRINGIFY_(x)
#define SCRIBO_C_SYMBOL(name) SCRIBO_STRINGIFY(__USER_LABEL_PREFIX__) name

// Exported as the C function "main"; the asm label keeps C++'s rules for the program's main
// function out of a shared object's entry point.
extern "C" __attribute__((visibility("default"))) int
ScriboBundleMain(int token, void* context) __asm__(SCRIBO_C_SYMBOL("main"));

int ScriboBundleMain(int token, void* context) {
  return ScriboPluginMain(token, context);
}

// Every plug-in bundle exports the diagnostic counters, also one that never calls the wrappers
// that keep them: this reference pulls them into the link.
[[gnu::used]] static const void* const kDiagnosticCounters[] = {
    &LoadedTGFCounter, &CanAddNoteRecordToRests, &ScriboEditDepth, &MassEditDepth};
