// The six functions through which the host drives the plug-in, and their Ext_ aliases. They are
// the bundle's only exported code besides `main`; nothing here throws.
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
  // The texts are fetched into plain buffers and copied into the packed host record whole, so
  // each field holds its text and zeros after the terminator.
  unsigned short texts[3][kMenuTextUnits] = {};
  PlugIn_GetStringResource(kMenuText1ID, texts[0], kMenuTextUnits);
  PlugIn_GetStringResource(kMenuText2ID, texts[1], kMenuTextUnits);
  PlugIn_GetStringResource(kMenuText3ID, texts[2], kMenuTextUnits);
  tExtensionMenuRecord filled;
  std::memcpy(filled.text1, texts[0], sizeof filled.text1);
  std::memcpy(filled.text2, texts[1], sizeof filled.text2);
  std::memcpy(filled.text3, texts[2], sizeof filled.text3);
  filled.itemValue = kMenuItemValue;
  std::memcpy(menu, &filled, sizeof filled);
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
