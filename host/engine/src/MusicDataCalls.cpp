// Host functions of the music-data family: instrument slots.
#include "EngineState.h"
#include "HostExport.h"

using namespace scribo::engine;

// The instrument in a slot (from 1); 0 past the last slot in use.
SX_EXPORT int SX_SlotToInst(int slot, uint32_t set, uint32_t version) {
  EngineState& s = State();
  if (s.instrumentSlots) {
    const auto& slots = *s.instrumentSlots;
    return slot >= 1 && size_t(slot) <= slots.size() ? slots[size_t(slot) - 1] : 0;
  }
  return slot >= 1 && slot <= s.data.staffCount ? slot : 0;
}
