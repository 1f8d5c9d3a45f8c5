// CountNotes: a minimal command on the SDK. It counts the note entries of the selection and
// reports the count, with the name of the selection's first staff, in an alert.
//
// What a plug-in provides: its menu texts and its command (and, when it has dialogs, their
// set-up in PluginInitialize), declared in ScriboExtension.h. The SDK supplies `main` and the
// entry points the host calls, the SX_ host calls (HostFunctions.h), localised strings
// (portable.h), UTF-16 text (sx_string.h) and record accessors (SXUtilRecords.h).
#include "HostFunctions.h"
#include "SXUtilRecords.h"
#include "ScriboExtension.h"
#include "portable.h"
#include "sx_string.h"

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

// Table 1 of Resources/<lang>.lproj/Localizable.strings, indexes 1 to 3.
const int32_t kPluginMenuTexts[3] = {StringID(1, 1), StringID(1, 2), StringID(1, 3)};

int PluginCommand(OpaqueCocoaWindow*, EREGION* region) {
  if (!region)
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
