// The six functions through which the host drives the plug-in, and their Ext_ aliases. They are
// the bundle's only exported code besides `main`; nothing here throws.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "HostFunctions.h"
#include "SubdivisionDialog.h"
#include "SubdivisionPass.h"
#include "portable.h"
#include "tExtensionMenuRecord.h"
#include "tSubdivideParam.h"

#define SCRIBO_EXPORT extern "C" __attribute__((visibility("default")))

SCRIBO_EXPORT uint32_t ScriboExtensionVersion();
SCRIBO_EXPORT int32_t ScriboExtensionInit(void* hostData, uint32_t* initFlags);
SCRIBO_EXPORT int32_t ScriboExtensionEnumerate_UTF16(void* hostData, short index,
                                                     tExtensionMenuRecord* menu);
SCRIBO_EXPORT int32_t ScriboExtensionInvoke(OpaqueCocoaWindow* window, short index,
                                            EREGION* region);
SCRIBO_EXPORT void ScriboExtensionTerminate();
SCRIBO_EXPORT int32_t ScriboExtensionGetMenuStatus();

SCRIBO_EXPORT uint32_t Ext_getversion();
SCRIBO_EXPORT int32_t Ext_init(void* hostData, uint32_t* initFlags);
SCRIBO_EXPORT int32_t Ext_enumerate_UTF16(void* hostData, short index, tExtensionMenuRecord* menu);
SCRIBO_EXPORT int32_t Ext_invoke(OpaqueCocoaWindow* window, short index, EREGION* region);
SCRIBO_EXPORT void Ext_terminate();
SCRIBO_EXPORT int32_t Ext_getmenustatus();

uint32_t ScriboExtensionVersion() {
  return kScriboHostVersion;
}

int32_t ScriboExtensionInit(void* hostData, uint32_t* initFlags) {
  if (initFlags)
    *initFlags = 0;
  return InitSelectSubdivisionDialog() != 0 ? 1 : 0;
}

int32_t ScriboExtensionEnumerate_UTF16(void* hostData, short index, tExtensionMenuRecord* menu) {
  if (index > 0 || menu == nullptr) // one menu item only
    return 0;
  // Each text is fetched straight into its field: the lookup writes the text, its terminator and
  // the field's last unit, and every other byte of the host's record stays as the host left it.
  auto* record = reinterpret_cast<unsigned char*>(menu);
  const struct {
    int id;
    size_t offset;
  } texts[] = {{kMenuText1ID, offsetof(tExtensionMenuRecord, text1)},
               {kMenuText2ID, offsetof(tExtensionMenuRecord, text2)},
               {kMenuText3ID, offsetof(tExtensionMenuRecord, text3)}};
  for (const auto& text : texts)
    PlugIn_GetStringResource(text.id, reinterpret_cast<unsigned short*>(record + text.offset),
                             kMenuTextUnits);
  const uint32_t itemValue = kMenuItemValue;
  std::memcpy(record + offsetof(tExtensionMenuRecord, itemValue), &itemValue, sizeof itemValue);
  return 1;
}

int32_t ScriboExtensionInvoke(OpaqueCocoaWindow* window, short index, EREGION* region) {
  if (index != 0)
    return 0;
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

void ScriboExtensionTerminate() {}

int32_t ScriboExtensionGetMenuStatus() {
  return 1;
}

uint32_t Ext_getversion() {
  return ScriboExtensionVersion();
}
int32_t Ext_init(void* hostData, uint32_t* initFlags) {
  return ScriboExtensionInit(hostData, initFlags);
}
int32_t Ext_enumerate_UTF16(void* hostData, short index, tExtensionMenuRecord* menu) {
  return ScriboExtensionEnumerate_UTF16(hostData, index, menu);
}
int32_t Ext_invoke(OpaqueCocoaWindow* window, short index, EREGION* region) {
  return ScriboExtensionInvoke(window, index, region);
}
void Ext_terminate() {
  ScriboExtensionTerminate();
}
int32_t Ext_getmenustatus() {
  return ScriboExtensionGetMenuStatus();
}
