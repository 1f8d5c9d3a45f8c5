// The binding layer's probe plug-in: a bundle built like a plug-in whose table hands host-side
// tests every SX_ wrapper, generated from the host-function tables, and the few SDK functions
// that have no host counterpart. The counters are found by name in the bundle. Plain function
// pointers only, so that the test shares nothing but headers with the plug-in side.
#pragma once

#include "HostBinding.h"
#include "HostTypes.h"
#include "LegacyPrefTables.h"

struct SdkProbe {
#define SX_HOST(R, NAME, FALLBACK, ARGS) R(*NAME) ARGS;
#include "hostcalls/HostCalls.def"
  short (*initializeGlobals)();
  bool (*boundToMainBundle)();       // whether the SDK bound to the host application itself
  long (*lookups)();                 // host functions looked up by name so far
  tPrefMapTable* (*prefMapTables)(); // the legacy preference tables, kPrefMapTableCount of them
};

using SdkProbeFn = const SdkProbe* (*)();
