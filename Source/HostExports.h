// The host side of the host-function tables: for every row, the C function a host exports under
// that name, with the widths that reach it on the wire (see HostBinding.h): a 16-bit argument
// arrives as a 32-bit integer, sign-extended (`short`) or zero-extended (`unsigned short`,
// `unsigned char`), and a 16-bit result is returned in a 32-bit integer.
//
// A host includes this header before it defines its exports. Every row is then declared with C
// linkage and default visibility, so a hand-written definition whose result or arguments differ
// from its row is a conflicting declaration and stops the build. Rows a host does not define stay
// declarations only and are not exported.
//
// `sx::hostside::NAME` names the function type of a row, for hosts that keep pointers to them.
// Never include this header together with HostFunctions.h: the plug-in side's wrappers carry the
// same names.
#pragma once

#include <cstdint>

#include "HostBinding.h"
#include "HostTypes.h"

namespace sx::hostside {

template <class T> struct ResultOf { using type = T; };
template <> struct ResultOf<short> { using type = int32_t; };
template <> struct ResultOf<unsigned short> { using type = uint32_t; };

#define SX_HOSTSIDE_ARG(T) ::sx::binding::Wire<T>
#define SX_HOST(R, NAME, FALLBACK, ARGS)                                                           \
  using NAME = ResultOf<R>::type(SXP_DECLW(SX_HOSTSIDE_ARG, ARGS));
#include "hostcalls/HostCalls.def"
#undef SX_HOSTSIDE_ARG

} // namespace sx::hostside

#define SX_HOST(R, NAME, FALLBACK, ARGS)                                                           \
  extern "C" __attribute__((visibility("default"))) ::sx::hostside::NAME NAME;
#include "hostcalls/HostCalls.def"
