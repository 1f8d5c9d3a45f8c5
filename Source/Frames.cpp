// Frame wrappers. Loads and frees keep LoadedTGFCounter; every call that lets the host insert,
// delete, store or reduce entries first brings the frame into the host's form with CleanTGF.
// Both happen before the host function is looked at, so also when the host lacks it.
#include "CleanTGF.h"
#include "HostFunctions.h"
#include "SDKCounters.h"

EXTGF2005a* SX_LoadTGF(unsigned short source, short staff, short measure, short layer, short option,
                       uint32_t version) {
  ++LoadedTGFCounter;
  return sxhost::SX_LoadTGF(source, staff, measure, layer, option, version);
}

short SX_InsertEXENTRY(EXTGF2005a* frame, short index, short count, uint32_t version) {
  CleanTGF(frame);
  return sxhost::SX_InsertEXENTRY(frame, index, count, version);
}

short SX_DeleteEXENTRY(EXTGF2005a* frame, short index, short count, uint32_t version) {
  CleanTGF(frame);
  return sxhost::SX_DeleteEXENTRY(frame, index, count, version);
}

short SX_SaveTGF(EXTGF2005a* frame, uint32_t version) {
  CleanTGF(frame);
  return sxhost::SX_SaveTGF(frame, version);
}

short SX_FreeTGF(EXTGF2005a* frame, uint32_t version) {
  --LoadedTGFCounter;
  return sxhost::SX_FreeTGF(frame, version);
}

void SX_ReduceEntries(EXTGF2005a* frame, uint32_t version) {
  CleanTGF(frame);
  sxhost::SX_ReduceEntries(frame, version);
}
