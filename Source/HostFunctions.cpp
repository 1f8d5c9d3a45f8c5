// Definitions of the plain SX_ wrappers and of the forwarders behind the others, generated
// from the tables in hostcalls/.
#include "HostFunctions.h"

namespace sx::binding {
const char kBlankText[2] = " ";
}

#define SX_HOST(R, NAME, FALLBACK, ARGS)                                                           \
  R NAME(SXP_DECL(ARGS)) {                                                                         \
    using B = ::sx::binding::Binding<R ARGS>;                                                      \
    static const B::HostFn fpProc = B::Resolve(#NAME);                                             \
    if (!fpProc)                                                                                   \
      return ::sx::binding::Fallback<R>(FALLBACK);                                                 \
    return B::Invoke(fpProc, SXP_NAMES(ARGS));                                                     \
  }
#define SX_HOST_EXT(R, NAME, FALLBACK, ARGS)
#include "hostcalls/HostCalls.def"

namespace sxhost {
#define SX_HOST_EXT(R, NAME, FALLBACK, ARGS)                                                       \
  static ::sx::binding::Binding<R ARGS>::HostFn NAME##_Proc() {                                    \
    static const auto fpProc = ::sx::binding::Binding<R ARGS>::Resolve(#NAME);                     \
    return fpProc;                                                                                 \
  }                                                                                                \
  bool NAME##_Available() {                                                                        \
    return NAME##_Proc() != nullptr;                                                               \
  }                                                                                                \
  R NAME(SXP_DECL(ARGS)) {                                                                         \
    if (auto fpProc = NAME##_Proc())                                                               \
      return ::sx::binding::Binding<R ARGS>::Invoke(fpProc, SXP_NAMES(ARGS));                      \
    return ::sx::binding::Fallback<R>(FALLBACK);                                                   \
  }
#include "hostcalls/HostCalls.def"
} // namespace sxhost
