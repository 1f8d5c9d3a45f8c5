// Entry-detail and preference record wrappers. For now they forward unchanged.
#include "HostFunctions.h"

short SX_LoadEData(uint32_t tag, unsigned short* keys, void* buffer, uint32_t* size, uint32_t version) {
  return sxhost::SX_LoadEData(tag, keys, buffer, size, version);
}
short SX_SaveEData(uint32_t tag, unsigned short* keys, void* buffer, uint32_t size, uint32_t version) {
  return sxhost::SX_SaveEData(tag, keys, buffer, size, version);
}
