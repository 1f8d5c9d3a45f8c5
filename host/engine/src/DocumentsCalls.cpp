// Host functions over the view: selection, layers, instrument slots, the build kind.
#include <cstring>

#include "EngineState.h"
#include "HostExport.h"

using namespace scribo::engine;

// Both region records receive the current selection; the 8-byte place is cleared. 0 and
// nothing written when nothing is selected.
SX_EXPORT int SX_GetCurERegions(void* place, EREGION* second, EREGION* first, uint32_t version) {
  EngineState& s = State();
  if (!s.selection)
    return 0;
  if (place)
    std::memset(place, 0, 8);
  if (second)
    *second = *s.selection;
  if (first)
    *first = *s.selection;
  return 1;
}

SX_EXPORT void SX_SetCurERegionMac(EREGION* region, uint32_t version) {
  if (region)
    State().selection = *region;
}

SX_EXPORT int SX_GetMaxLayers(uint32_t version) {
  return State().maxLayers;
}

SX_EXPORT int SX_GetShowLayer(int layer, uint32_t version) {
  return Engine::Instance().LayerShown(int16_t(layer)) ? 1 : 0;
}

// The instrument in a slot (from 1); 0 past the last slot in use.
SX_EXPORT int SX_SlotToInst(int slot, uint32_t set, uint32_t version) {
  EngineState& s = State();
  if (s.instrumentSlots) {
    const auto& slots = *s.instrumentSlots;
    return slot >= 1 && size_t(slot) <= slots.size() ? slots[size_t(slot) - 1] : 0;
  }
  return slot >= 1 && slot <= s.data.staffCount ? slot : 0;
}

// The engine runs plug-ins as bundles with the host's calling conventions.
SX_EXPORT int SX_IsMachO(uint32_t version) {
  return 1;
}
