// The host binding layer's core: finding the host engine bundle.
//
// `main` (exported by every plug-in bundle) calls InitializeGlobals, which looks the engine up by
// its bundle identifier among the loaded bundles and, failing that, binds to the host
// application's own bundle. Every SX_ wrapper then resolves its host function in that bundle.
// Thread: host's main thread; gScriboBundle is written without a lock.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "HostFunctions.h"

// The host engine bundle, null until InitializeGlobals succeeds; never released or cleared.
extern CFBundleRef gScriboBundle;

// Finds the host engine bundle once: 0 on success (also when it was already found), -1 when
// neither the engine nor the main bundle could be had.
short InitializeGlobals();

// gScriboBundle; performs no lookup.
CFBundleRef GetScriboBundleRef();

// What the exported `main` does: 1 when both arguments are non-zero and InitializeGlobals
// succeeds; 0 otherwise, without a lookup when an argument is zero.
short ScriboPluginMain(int32_t token, void* context);
