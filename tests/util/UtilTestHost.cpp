// A minimal host engine for the utilities' tests: the host functions the utilities call, with
// their wire signatures (16-bit arguments arrive widened to 32 bits), over the records, frames
// and keyboard of a State that the test sets up. Built as its own bundle with the engine's
// identifier; it shares only record headers with the SDK.
#include <cstring>

#include "EXTGF2005a.h"
#include "UtilTestHostState.h"

#define HOST_EXPORT extern "C" __attribute__((visibility("default")))

using utiltest::State;

namespace {

State gState;

constexpr uint32_t kTagGroupSpec = 0x53444e47;    // "SDNG"
constexpr uint32_t kTagGeneralPrefs = 0x70666770; // "pfgp"
constexpr uint32_t kTagStaffSpec = 0x534f4953;    // "SOIS"
constexpr uint32_t kTagRawText = 0x7478626c;      // "txbl"

int KeysUsed(uint32_t tag) {
  return tag == kTagGroupSpec ? 2 : tag == kTagGeneralPrefs ? 0 : 1;
}

void CopyKeyList(uint32_t tag, const unsigned short* keys, uint16_t out[3]) {
  out[0] = out[1] = out[2] = 0xEEEE; // never read: shows where the list ended
  for (int i = 0; i <= KeysUsed(tag); ++i)
    out[i] = keys[i];
}

utiltest::Record* Find(uint32_t tag, const unsigned short* keys) {
  for (int i = 0; i < gState.recordCount; ++i) {
    utiltest::Record& r = gState.records[i];
    bool match = r.tag == tag;
    for (int k = 0; match && k < KeysUsed(tag); ++k)
      match = r.keys[k] == keys[k];
    if (match)
      return &r;
  }
  return nullptr;
}

} // namespace

HOST_EXPORT State* UtilTestHost_State() {
  return &gState;
}

HOST_EXPORT int SX_LoadEData(uint32_t tag, unsigned short* keys, void* buffer, uint32_t* size,
                             uint32_t version) {
  if (gState.loadCount < utiltest::kMaxLogged) {
    utiltest::LoadCall& call = gState.loads[gState.loadCount++];
    call.tag = tag;
    CopyKeyList(tag, keys, call.keys);
    call.withBuffer = buffer != nullptr;
    call.capacity = *size;
    call.version = version;
  }
  if (tag == kTagStaffSpec && buffer)
    std::memcpy(gState.staffSpecSelector, static_cast<uint8_t*>(buffer) + 102, 12);
  const utiltest::Record* record = Find(tag, keys);
  if (!record)
    return 0;
  const uint32_t reported =
      tag == kTagRawText && gState.overrideRawTextSize ? gState.rawTextSize : record->size;
  if (!buffer) {
    *size = reported;
    return 1;
  }
  if (gState.failBufferedLoads)
    return 0;
  const uint32_t copied = *size < record->size ? *size : record->size;
  std::memcpy(buffer, record->data, copied);
  *size = reported;
  return 1;
}

HOST_EXPORT int SX_SaveEData(uint32_t tag, unsigned short* keys, void* buffer, uint32_t size,
                             uint32_t version) {
  if (gState.saveCount < utiltest::kMaxLogged) {
    utiltest::SaveCall& call = gState.saves[gState.saveCount++];
    call.tag = tag;
    CopyKeyList(tag, keys, call.keys);
    call.size = size;
    call.version = version;
  }
  if (size > utiltest::kMaxRecordBytes)
    return 0;
  utiltest::Record* record = Find(tag, keys);
  if (!record) {
    if (gState.recordCount == utiltest::kMaxRecords)
      return 0;
    record = &gState.records[gState.recordCount++];
    record->tag = tag;
    record->keys[0] = keys[0];
    record->keys[1] = KeysUsed(tag) > 1 ? keys[1] : 0;
  }
  record->size = size;
  std::memcpy(record->data, buffer, size);
  return 1;
}

HOST_EXPORT int SX_GetMaxLayers(uint32_t) {
  return gState.maxLayers;
}

HOST_EXPORT EXTGF2005a* SX_LoadTGF(uint32_t source, int32_t staff, int32_t measure, int32_t layer,
                                   int32_t option, uint32_t) {
  gState.lastFrameSource = source;
  if (layer < 0 || layer >= utiltest::kMaxLayers || !gState.layers[layer].present || option != 1)
    return nullptr;
  const utiltest::Layer& content = gState.layers[layer];
  auto* frame = new EXTGF2005a{};
  frame->entryCount = static_cast<int16_t>(content.entryCount);
  frame->entries = content.entryCount ? new EXENTRY[content.entryCount]{} : nullptr;
  for (int i = 0; i < content.entryCount; ++i)
    frame->entries[i].flags = content.flags[i];
  ++gState.framesLoaded;
  return frame;
}

HOST_EXPORT int SX_FreeTGF(EXTGF2005a* frame, uint32_t) {
  if (!frame)
    return 0;
  delete[] frame->entries;
  delete frame;
  ++gState.framesFreed;
  return 1;
}

HOST_EXPORT int SX_SlotToInst(int32_t slot, uint32_t set, uint32_t) {
  ++gState.slotQueries;
  gState.lastSlotSet = set;
  return slot >= 1 && slot <= gState.slotsInUse ? 100 + slot : 0;
}

HOST_EXPORT void* SX_StartMassEdit(void*, uint32_t total, uint32_t) {
  ++gState.massEditStarts;
  gState.massEditTotal = total;
  return gState.refuseMassEdit ? nullptr : &gState;
}

HOST_EXPORT int SX_MassEditProgress(void* massEdit, int32_t steps, int32_t, int32_t, int32_t,
                                    uint32_t) {
  if (massEdit != &gState || gState.progressCount == utiltest::kMaxLogged)
    return 0;
  gState.progress[gState.progressCount++] = static_cast<int16_t>(steps);
  return 1;
}

HOST_EXPORT void SX_EndMassEdit(void* massEdit, int32_t status, uint32_t) {
  if (massEdit != &gState)
    return;
  ++gState.massEditEnds;
  gState.massEditEndStatus = static_cast<int16_t>(status);
}

HOST_EXPORT int SX_GetCurERegions(void* place, EREGION* second, EREGION* first, uint32_t) {
  ++gState.regionQueries;
  std::memset(place, 0xAB, 8); // the caller's scratch place must hold 8 bytes
  *second = gState.intoSecondArgument;
  *first = gState.intoThirdArgument;
  return gState.regionResult;
}

HOST_EXPORT uint64_t PlatformModifierFlags() {
  return gState.modifierFlags;
}

HOST_EXPORT void PlatformKeyMap(unsigned char keyMap[16]) {
  ++gState.keyMapReads;
  std::memcpy(keyMap, gState.keyMap, 16);
}
