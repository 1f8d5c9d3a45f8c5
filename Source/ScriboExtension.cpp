// The entry points every plug-in shares. They live in the SDK's entry library, not in the
// binding library, so that only bundles link them; nothing here throws.
#include "ScriboExtension.h"

#include <cstddef>
#include <cstring>

#include "HostFunctions.h"
#include "portable.h"

// Used only when the plug-in defines no PluginInitialize of its own.
__attribute__((weak)) int PluginInitialize() {
  return 1;
}

uint32_t ScriboExtensionVersion() {
  return kScriboHostVersion;
}

int32_t ScriboExtensionInit(void* hostData, uint32_t* initFlags) {
  if (initFlags)
    *initFlags = 0;
  return PluginInitialize() != 0 ? 1 : 0;
}

int32_t ScriboExtensionEnumerate_UTF16(void* hostData, short index, tExtensionMenuRecord* menu) {
  if (index > 0 || menu == nullptr) // one menu item only
    return 0;
  // Each text is fetched straight into its field: the lookup writes the text, its terminator and
  // the field's last unit, and every other byte of the host's record stays as the host left it.
  auto* record = reinterpret_cast<unsigned char*>(menu);
  const size_t offsets[3] = {offsetof(tExtensionMenuRecord, text1),
                             offsetof(tExtensionMenuRecord, text2),
                             offsetof(tExtensionMenuRecord, text3)};
  for (int i = 0; i < 3; ++i)
    PlugIn_GetStringResource(kPluginMenuTexts[i],
                             reinterpret_cast<unsigned short*>(record + offsets[i]),
                             kMenuTextUnits);
  const uint32_t itemValue = kMenuItemValue;
  std::memcpy(record + offsetof(tExtensionMenuRecord, itemValue), &itemValue, sizeof itemValue);
  return 1;
}

int32_t ScriboExtensionInvoke(OpaqueCocoaWindow* window, short index, EREGION* region) {
  if (index != 0)
    return 0;
  return PluginCommand(window, region);
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
