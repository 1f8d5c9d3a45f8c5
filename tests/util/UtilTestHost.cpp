// A minimal host for the utilities' tests where the reference engine cannot show what went on:
// record loads, the mass-edit start, the selection and the keyboard, with their wire signatures,
// logging every request, over a State the test sets up. Built as its own bundle with the
// engine's identifier; it shares only record headers with the SDK.
#include <cstring>

#include "UtilTestHostState.h"

#define HOST_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

utiltest::State gState;

// Words of a tag's key list before its closing 0: two for "SDNG", none for "pfgp", else one.
int KeyWords(uint32_t tag) {
  return tag == 0x53444e47 ? 2 : tag == 0x70666770 ? 0 : 1;
}

} // namespace

HOST_EXPORT utiltest::State* UtilTestHost_State() {
  return &gState;
}

HOST_EXPORT int SX_LoadEData(uint32_t tag, unsigned short* keys, void* buffer, uint32_t* size,
                             uint32_t version) {
  if (gState.loadCount < utiltest::kMaxLogged) {
    utiltest::LoadCall& call = gState.loads[gState.loadCount++];
    call = {tag, {0xEEEE, 0xEEEE, 0xEEEE}, buffer != nullptr, *size, version};
    for (int i = 0; i <= KeyWords(tag); ++i)
      call.keys[i] = keys[i];
  }
  if (tag == 0x534f4953 && buffer) // "SOIS"
    std::memcpy(gState.staffSpecTail, static_cast<uint8_t*>(buffer) + 102, 12);
  for (int i = 0; i < gState.recordCount; ++i) {
    const utiltest::Record& r = gState.records[i];
    if (r.tag != tag || r.key != keys[0])
      continue;
    if (buffer) {
      if (gState.failBufferedLoads)
        return 0;
      std::memcpy(buffer, r.data, *size < r.size ? *size : r.size);
    }
    *size = gState.misreportSize ? gState.reportedSize : r.size;
    return 1;
  }
  return 0;
}

HOST_EXPORT void* SX_StartMassEdit(void*, uint32_t, uint32_t) {
  ++gState.massEditStarts;
  return gState.refuseMassEdit ? nullptr : &gState;
}

HOST_EXPORT int SX_GetCurERegions(void* place, EREGION* second, EREGION* first, uint32_t) {
  ++gState.regionQueries;
  std::memset(place, 0, 8); // the caller's scratch place must hold 8 bytes
  *second = *first = gState.region;
  return 1;
}

HOST_EXPORT uint64_t PlatformModifierFlags() {
  return gState.modifierFlags;
}

HOST_EXPORT void PlatformKeyMap(unsigned char keyMap[16]) {
  ++gState.keyMapReads;
  std::memcpy(keyMap, gState.keyMap, 16);
}
