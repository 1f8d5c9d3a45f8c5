// Host functions of the documents family: the selection and the layers.
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
