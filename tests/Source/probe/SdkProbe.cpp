// The probe's table.
#include "SdkProbe.h"

#include "scribopdk.h"

namespace {

const SdkProbe kProbe = {
#define SX_HOST(R, NAME, FALLBACK, ARGS) &NAME,
#include "hostcalls/HostCalls.def"
    InitializeGlobals,
    [] { return GetScriboBundleRef() == CFBundleGetMainBundle(); },
    __CFBundleFunctionLookupCount,
    PrefMapTables,
};

} // namespace

extern "C" __attribute__((visibility("default"))) const SdkProbe* SdkProbe_Table() {
  return &kProbe;
}
