// The six functions through which the host drives a plug-in, with their Ext_ aliases, written
// once for every plug-in: a bundle built with scribopdk_add_plugin (or linked with
// `pkg-config --libs scribopdk`) gets all twelve, and `main`, from the SDK. The plug-in
// defines only what is its own:
//
//   const int32_t kPluginMenuTexts[3] = {...};    // its menu texts
//   int PluginCommand(OpaqueCocoaWindow* window, EREGION* region) { ... }   // its command
//   int PluginInitialize() { ... }                // optional: what its dialogs need
//
// A plug-in that defines the entry points itself keeps its own; the SDK's are then not linked.
//
// Thread: host's main thread, like every entry point.
#pragma once

#include <cstdint>

#include "EREGION.h"
#include "HostTypes.h"
#include "tExtensionMenuRecord.h"

// ----- Defined by the plug-in -----------------------------------------------------------------

// String identifiers (table << 16 | index, see portable.h) of the menu item's three texts, in
// the order of the menu record. Which one the host shows as the item is the host's business.
extern const int32_t kPluginMenuTexts[3];

// Called by ScriboExtensionInit, after it stored 0 for the host; makes what the command needs
// (dialog handlers). Returns non-zero when the plug-in is ready, 0 when it is not (the host may
// initialise again later). A plug-in without a definition gets the SDK's, which returns 1.
int PluginInitialize();

// The menu item's command, called by ScriboExtensionInvoke for item 0 with the host's document
// window (the parent of the plug-in's dialogs) and the selection, which may be null. Returns 1
// when it changed the document, 0 when it did not (cancelled, nothing to do, refused).
int PluginCommand(OpaqueCocoaWindow* window, EREGION* region);

// ----- Defined by the SDK, exported from the bundle --------------------------------------------

#define SCRIBO_ENTRY_POINT extern "C" __attribute__((visibility("default")))

SCRIBO_ENTRY_POINT uint32_t ScriboExtensionVersion(); // kScriboHostVersion
// Stores 0 through `initFlags`, then PluginInitialize(): 1 when ready, else 0.
SCRIBO_ENTRY_POINT int32_t ScriboExtensionInit(void* hostData, uint32_t* initFlags);
// Index 0 or below: the three texts of kPluginMenuTexts and the value 1 written into `menu`
// (nothing else of the record changes), returns 1. Index 1 and above: 0, nothing written.
SCRIBO_ENTRY_POINT int32_t ScriboExtensionEnumerate_UTF16(void* hostData, short index,
                                                          tExtensionMenuRecord* menu);
// Index 0: PluginCommand(window, region). Any other index: 0 at once.
SCRIBO_ENTRY_POINT int32_t ScriboExtensionInvoke(OpaqueCocoaWindow* window, short index,
                                                 EREGION* region);
SCRIBO_ENTRY_POINT void ScriboExtensionTerminate();        // nothing to release
SCRIBO_ENTRY_POINT int32_t ScriboExtensionGetMenuStatus(); // 1: the item is always available

// The same six under their older names; each gives its target's result unchanged.
SCRIBO_ENTRY_POINT uint32_t Ext_getversion();
SCRIBO_ENTRY_POINT int32_t Ext_init(void* hostData, uint32_t* initFlags);
SCRIBO_ENTRY_POINT int32_t Ext_enumerate_UTF16(void* hostData, short index,
                                               tExtensionMenuRecord* menu);
SCRIBO_ENTRY_POINT int32_t Ext_invoke(OpaqueCocoaWindow* window, short index, EREGION* region);
SCRIBO_ENTRY_POINT void Ext_terminate();
SCRIBO_ENTRY_POINT int32_t Ext_getmenustatus();
