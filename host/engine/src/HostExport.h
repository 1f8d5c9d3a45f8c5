// How the engine exports a host function: C linkage, default visibility, wire widths (a 16-bit
// argument arrives as a 32-bit int, sign- or zero-extended; a 16-bit result is returned as int).
#pragma once

#include "HostExports.h"

#define SX_EXPORT extern "C" __attribute__((visibility("default")))
