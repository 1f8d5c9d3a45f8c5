// What the subdivision command adds to the SDK's entry points (ScriboExtension.h): its menu
// texts, the options dialog's handler made at initialisation, and the command itself.
#include "HostFunctions.h"
#include "ScriboExtension.h"
#include "SubdivisionDialog.h"
#include "SubdivisionPass.h"
#include "tSubdivideParam.h"

// Table 20000 of the bundle's strings, indexes 1 to 3.
const int32_t kPluginMenuTexts[3] = {0x4E200001, 0x4E200002, 0x4E200003};

int PluginInitialize() {
  return InitSelectSubdivisionDialog();
}

int PluginCommand(OpaqueCocoaWindow* window, EREGION* region) {
  // Asked for before the region is checked, as the host expects of every invocation.
  const short layerCount = SX_GetMaxLayers(kScriboHostVersion);
  ArmVoiceTwoWarning();
  if (region == nullptr)
    return 0;
  tSubdivideParam param{};
  if (SpecifySubdivision(window, &param) == 0)
    return 0;
  return RunSubdivisionPass(region, param, layerCount);
}
