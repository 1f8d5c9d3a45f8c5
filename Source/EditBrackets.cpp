// Edit and mass-edit wrappers with their depth counters. Starts count before the host is
// called (a refused start still counts as open); an end or cancel reaches the host only when
// an edit is open, so an unmatched one can neither close the host's edit nor drive
// ScriboEditDepth below 0. MassEditDepth has no such floor.
#include "HostFunctions.h"
#include "SDKCounters.h"

intptr_t SX_StartScriboEdit(const char* text, uint32_t version) {
  ++ScriboEditDepth;
  return sxhost::SX_StartScriboEdit(text, version);
}

intptr_t SX_StartScriboEdit_UTF16(const unsigned short* text, uint32_t version) {
  ++ScriboEditDepth;
  return sxhost::SX_StartScriboEdit_UTF16(text, version);
}

short SX_EndScriboEdit(uint32_t version) {
  if (ScriboEditDepth < 1)
    return 1; // nothing open: succeed without effect
  --ScriboEditDepth;
  return sxhost::SX_EndScriboEdit(version);
}

void SX_CancelScriboEdit(uint32_t version) {
  if (ScriboEditDepth < 1)
    return;
  --ScriboEditDepth;
  sxhost::SX_CancelScriboEdit(version);
}

void* SX_StartMassEdit(void* unused, uint32_t jobSize, uint32_t version) {
  ++MassEditDepth;
  return sxhost::SX_StartMassEdit(unused, jobSize, version);
}

void SX_EndMassEdit(void* massEdit, short status, uint32_t version) {
  --MassEditDepth;
  sxhost::SX_EndMassEdit(massEdit, status, version);
}
