// Edit and mass-edit wrappers. For now they forward unchanged.
#include "HostFunctions.h"

intptr_t SX_StartScriboEdit(const char* text, uint32_t version) { return sxhost::SX_StartScriboEdit(text, version); }
intptr_t SX_StartScriboEdit_UTF16(const unsigned short* text, uint32_t version) {
  return sxhost::SX_StartScriboEdit_UTF16(text, version);
}
short SX_EndScriboEdit(uint32_t version) { return sxhost::SX_EndScriboEdit(version); }
void SX_CancelScriboEdit(uint32_t version) { sxhost::SX_CancelScriboEdit(version); }
void* SX_StartMassEdit(void* unused, uint32_t jobSize, uint32_t version) {
  return sxhost::SX_StartMassEdit(unused, jobSize, version);
}
void SX_EndMassEdit(void* massEdit, short status, uint32_t version) { sxhost::SX_EndMassEdit(massEdit, status, version); }
