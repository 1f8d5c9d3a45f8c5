// The probe plug-in's dialog handler, running inside this bundle's image as a plug-in's would.
#include "ProbeBundle.h"

extern "C" __attribute__((visibility("default"))) unsigned char
ProbeDialogHandler(OpaqueCocoaWindow* dialog, unsigned int message, long item, long extra,
                   void* userData) {
  auto* probe = static_cast<ProbeDialog*>(userData);
  return probe && probe->handle ? probe->handle(dialog, message, item, extra) : 0;
}
