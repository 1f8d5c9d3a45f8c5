#include "HostFunctions.h"

namespace {
// The handle is only meaningful in a Mach-O host; any other host is told so.
void CheckMachOHost() {
  if (SX_IsMachO(kScriboHostVersion) == 0)
    SX_AlertMessage(nullptr, kAlertInternal, 0, "Should not get here!", kScriboHostVersion);
}
} // namespace

SF_DialogHandlerUPP NewSF_DialogHandlerProc(SF_DialogHandlerProcPtr handler) {
  CheckMachOHost();
  return handler;
}

void DisposeSF_DialogHandlerProc(SF_DialogHandlerUPP) {
  CheckMachOHost();
}
