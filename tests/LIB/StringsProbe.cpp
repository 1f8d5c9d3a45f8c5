// A minimal plug-in that serves its localised strings to the test program. Built twice: as
// StringsProbeTable.bundle (with an English strings table) and as StringsProbeBare.bundle (none).
#include "portable.h"

#include <cstring>

#define PROBE_EXPORT extern "C" __attribute__((visibility("default")))

PROBE_EXPORT unsigned short* Probe_GetUTF16(int id, unsigned short* dest, short destSize) {
  return PlugIn_GetStringResource(id, dest, destSize);
}

PROBE_EXPORT char* Probe_GetBytes(int id, char* dest, short destSize) {
  return PlugIn_GetStringResource(id, dest, destSize);
}

PROBE_EXPORT short Probe_LoadIndString(short table, short index, char* dest, short destSize) {
  return LoadIndString(table, index, dest, destSize);
}

// CopyPlugInStringResource, its units copied out (at most `capacity` - 1 and a terminator).
// Returns -1 for a null result, else the string's reference count just before this probe
// releases it: 1 when the caller is its only owner.
PROBE_EXPORT long Probe_Copy(int id, unsigned short* out, int capacity) {
  CFStringRef text = CopyPlugInStringResource(id);
  if (!text)
    return -1;
  CFIndex n = CFStringGetLength(text);
  if (n > capacity - 1)
    n = capacity - 1;
  CFStringGetCharacters(text, CFRangeMake(0, n), out);
  out[n] = 0;
  const long count = CFGetRetainCount(text);
  CFRelease(text);
  return count;
}
