// Host functions for edits (undo snapshots) and mass edits (progress display).
#include <new>

#include "EngineState.h"
#include "HostExport.h"
#include "ProgressBar.h"
#include "TextCodec.h"

using namespace scribo::engine;
using scribo::MacRomanToUtf8, scribo::Utf16ToUtf8;

SX_EXPORT intptr_t SX_StartScriboEdit(const char* description, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::StartScriboEdit);
  return Engine::Instance().BeginEdit(description ? MacRomanToUtf8(description) : std::string())
             ? 1
             : 0;
}

SX_EXPORT intptr_t SX_StartScriboEdit_UTF16(const uint16_t* description, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::StartScriboEdit);
  return Engine::Instance().BeginEdit(description ? Utf16ToUtf8(description) : std::string()) ? 1
                                                                                              : 0;
}

SX_EXPORT int SX_EndScriboEdit(uint32_t version) {
  ++State().Count(HostCall::EndScriboEdit);
  return Engine::Instance().EndEdit() ? 1 : 0;
}

SX_EXPORT void SX_CancelScriboEdit(uint32_t version) {
  ++State().Count(HostCall::CancelScriboEdit);
  Engine::Instance().CancelEdit();
}

SX_EXPORT void* SX_StartMassEdit(void* unused, uint32_t jobSize, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::StartMassEdit);
  auto* edit = new (std::nothrow) MassEdit{jobSize, 0, false};
  if (!edit)
    return nullptr;
  s.massEdits.insert(edit);
  DrawProgress(s, *edit);
  return edit;
}

SX_EXPORT int SX_MassEditProgress(void* handle, int steps, int, int, int, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::MassEditProgress);
  MassEdit* edit = s.Mass(handle);
  if (!edit)
    return 0;
  edit->done += steps;
  s.massEditSteps += steps;
  DrawProgress(s, *edit);
  return 1;
}

SX_EXPORT void SX_EndMassEdit(void* handle, int status, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::EndMassEdit);
  MassEdit* edit = s.Mass(handle);
  if (!edit)
    return;
  EraseProgress(s, *edit);
  s.massEdits.erase(edit);
  delete edit;
}
