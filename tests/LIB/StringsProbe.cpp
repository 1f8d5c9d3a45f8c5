// A minimal plug-in that serves its localised strings to the test program. Built twice: as
// StringsProbeTable.bundle (with an English strings table) and as StringsProbeBare.bundle (none).
#include "portable.h"

#define PROBE_EXPORT extern "C" __attribute__((visibility("default")))

PROBE_EXPORT char16_t* Probe_GetUTF16(int id, char16_t* dest, short destSize) {
  return reinterpret_cast<char16_t*>(
      PlugIn_GetStringResource(id, reinterpret_cast<unsigned short*>(dest), destSize));
}

PROBE_EXPORT char* Probe_GetBytes(int id, char* dest, short destSize) {
  return PlugIn_GetStringResource(id, dest, destSize);
}

PROBE_EXPORT short Probe_LoadIndString(short table, short index, char* dest, short destSize) {
  return LoadIndString(table, index, dest, destSize);
}
