// Frame wrappers. For now they forward unchanged; the frame clean-up and the load counter
// come with the frame logic.
#include "HostFunctions.h"

EXTGF2005a* SX_LoadTGF(unsigned short source, short staff, short measure, short layer, short option,
                       uint32_t version) {
  return sxhost::SX_LoadTGF(source, staff, measure, layer, option, version);
}
short SX_InsertEXENTRY(EXTGF2005a* frame, short index, short count, uint32_t version) {
  return sxhost::SX_InsertEXENTRY(frame, index, count, version);
}
short SX_DeleteEXENTRY(EXTGF2005a* frame, short index, short count, uint32_t version) {
  return sxhost::SX_DeleteEXENTRY(frame, index, count, version);
}
short SX_SaveTGF(EXTGF2005a* frame, uint32_t version) { return sxhost::SX_SaveTGF(frame, version); }
short SX_FreeTGF(EXTGF2005a* frame, uint32_t version) { return sxhost::SX_FreeTGF(frame, version); }
void SX_ReduceEntries(EXTGF2005a* frame, uint32_t version) { sxhost::SX_ReduceEntries(frame, version); }
