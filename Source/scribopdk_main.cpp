// The bundle's `main`, which the host calls once after loading it. Kept in its own object so
// that it is linked into plug-in bundles only, never into programs that have their own main.
#include "scribopdk.h"

// Exported under the plain name "main"; the asm label keeps C++'s rules for the program's main
// function out of a shared object's entry point.
extern "C" __attribute__((visibility("default"))) int
ScriboBundleMain(int token, void* context) __asm__("main");

int ScriboBundleMain(int token, void* context) {
  return ScriboPluginMain(token, context);
}
