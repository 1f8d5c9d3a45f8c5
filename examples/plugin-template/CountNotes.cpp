// CountNotes: a minimal command on the SDK. It counts the note entries of the selection and
// reports the count, with the name of the selection's first staff, in an alert.
//
// What a plug-in provides: the six entry points with C linkage (and their Ext_ aliases), exported
// by scribopdk_add_plugin. Everything else comes from the SDK: SX_ host calls (HostFunctions.h),
// localised strings (portable.h), UTF-16 text (sx_string.h) and record accessors (SXUtilRecords.h).
#include "HostFunctions.h"
#include "SXUtilRecords.h"
#include "portable.h"
#include "sx_string.h"

#include <cstring>

#define PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

constexpr int StringID(int table, int index) {
  return (table << 16) | index;
}

// Note entries of the region, frame by frame: each frame is loaded, read and freed in turn.
int CountNoteEntries(const EREGION& region) {
  const short layers = SX_GetMaxLayers(kScriboHostVersion);
  int count = 0;
  for (short measure = region.startMeasure; measure <= region.endMeasure; ++measure) {
    const int32_t from = measure == region.startMeasure ? region.startPosition : 0;
    const int32_t to = measure == region.endMeasure ? region.endPosition : 0x7FFFFFFF;
    for (short staff = region.startStaff; staff <= region.endStaff; ++staff) {
      for (short layer = 0; layer < layers; ++layer) {
        if (!SX_GetShowLayer(layer, kScriboHostVersion))
          continue;
        EXTGF2005a* frame =
            SX_LoadTGF(region.frameSource, staff, measure, layer, 1, kScriboHostVersion);
        if (!frame)
          continue;
        for (int i = 0; i < frame->entryCount; ++i) {
          const EXENTRY& entry = frame->entries[i];
          if ((entry.flags & kEntryIsNote) && entry.position >= from && entry.position <= to)
            ++count;
        }
        SX_FreeTGF(frame, kScriboHostVersion);
      }
    }
  }
  return count;
}

} // namespace

PLUGIN_EXPORT uint32_t ScriboExtensionVersion() {
  return kScriboHostVersion;
}

PLUGIN_EXPORT int ScriboExtensionInit(void*, uint32_t* reserved) {
  *reserved = 0;
  return 1;
}

// The menu record: three 128-unit UTF-16 texts and the value 1.
struct MenuRecord {
  unsigned short texts[3][128];
  uint32_t one;
};
static_assert(sizeof(MenuRecord) == 772);

PLUGIN_EXPORT int ScriboExtensionEnumerate_UTF16(void*, short index, MenuRecord* menu) {
  if (index > 0)
    return 0;
  for (int i = 0; i < 3; ++i)
    PlugIn_GetStringResource(StringID(1, i + 1), menu->texts[i], 128);
  menu->one = 1;
  return 1;
}

PLUGIN_EXPORT int ScriboExtensionInvoke(OpaqueCocoaWindow*, short item, EREGION* region) {
  if (item != 0 || !region)
    return 0;
  const int notes = CountNoteEntries(*region);

  unsigned short staffName[64];
  SXUtilGetStaffName(region->startStaff, 0, staffName, 64);
  CFStringRef name =
      CFStringCreateWithCharacters(nullptr, staffName, static_cast<CFIndex>(sx_strlen(staffName)));

  unsigned short format[256], message[512];
  PlugIn_GetStringResource(StringID(1, 4), format, 256);
  sx_sprintf(message, 512, format, notes, name);
  CFRelease(name);
  SX_AlertMessage_UTF16(nullptr, kAlertPlain, 0, message, kScriboHostVersion);
  return 0; // the document is unchanged
}

PLUGIN_EXPORT void ScriboExtensionTerminate() {}
PLUGIN_EXPORT int ScriboExtensionGetMenuStatus() {
  return 1;
}

PLUGIN_EXPORT uint32_t Ext_getversion() {
  return ScriboExtensionVersion();
}
PLUGIN_EXPORT int Ext_init(void* a, uint32_t* b) {
  return ScriboExtensionInit(a, b);
}
PLUGIN_EXPORT int Ext_enumerate_UTF16(void* a, short b, MenuRecord* c) {
  return ScriboExtensionEnumerate_UTF16(a, b, c);
}
PLUGIN_EXPORT int Ext_invoke(OpaqueCocoaWindow* a, short b, EREGION* c) {
  return ScriboExtensionInvoke(a, b, c);
}
PLUGIN_EXPORT void Ext_terminate() {
  ScriboExtensionTerminate();
}
PLUGIN_EXPORT int Ext_getmenustatus() {
  return ScriboExtensionGetMenuStatus();
}
