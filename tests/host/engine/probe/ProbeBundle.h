// The probe plug-in that the engine's dialog tests load: a bundle with dialog resources whose
// handler stands where a plug-in's would, so that the engine finds the resources by the
// handler's address. The handler forwards to the test's function, given as the user data.
#pragma once

struct OpaqueCocoaWindow;

struct ProbeDialog {
  unsigned char (*handle)(OpaqueCocoaWindow* dialog, unsigned int message, long item, long extra);
};
