// Every host function, as an SX_ wrapper named like it, declared from the tables in hostcalls/.
//
// Contract of every wrapper: on its first call it looks its name up in the host engine bundle
// (gScriboBundle) exactly once, under a thread-safe one-time guard; the result, null included,
// is final for the process. When the host lacks the function the wrapper returns the fixed
// fallback of its table row (0, null or nothing, or the value the row names) and calls
// nothing. Otherwise it passes each argument at its declared width (see HostBinding.h), the
// version stamp last and unchanged, and returns the host's result.
// Thread: host's main thread; only the first-call lookup is guarded.
#pragma once

#include <cstdint>

#include "HostBinding.h"
#include "HostTypes.h"

#define SX_HOST(R, NAME, FALLBACK, ARGS) R NAME ARGS;
#include "hostcalls/HostCalls.def"

// Forwarders for the wrappers that add logic of their own: resolve (once) and call the host
// function, or give the table's fallback. `NAME_Available()` tells whether the host has it.
namespace sxhost {
#define SX_HOST_EXT(R, NAME, FALLBACK, ARGS)                                                       \
  R NAME ARGS;                                                                                     \
  bool NAME##_Available();
#include "hostcalls/HostCalls.def"
} // namespace sxhost

// Dialog handler handles. No host counterpart: the handle is the handler's own address.
// Both show the internal alert "Should not get here!" when SX_IsMachO answers 0.
SF_DialogHandlerUPP NewSF_DialogHandlerProc(SF_DialogHandlerProcPtr handler);
void DisposeSF_DialogHandlerProc(SF_DialogHandlerUPP handle);
