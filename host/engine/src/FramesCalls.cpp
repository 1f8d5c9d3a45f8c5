// Host functions over frames: load, insert, delete, save, free, rebeam.
#include <utility>

#include "EngineState.h"
#include "HostExport.h"

using namespace scribo::engine;

SX_EXPORT EXTGF2005a* SX_LoadTGF(uint32_t frameSource, int staff, int measure, int layer,
                                 int loadOption, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::LoadTGF);
  FrameAddress address{int16_t(staff), int16_t(measure), int16_t(layer)};
  if (s.Failing(HostCall::LoadTGF) || !s.data.IsValid(address))
    return nullptr;
  auto entries = s.data.Entries(address);
  LoadedFrame* loaded =
      NewLoadedFrame(address, uint16_t(frameSource), entries.data(), int32_t(entries.size()),
                     std::exchange(s.spareFrame, nullptr));
  if (!loaded)
    return nullptr;
  s.frames.push_back(loaded);
  return &loaded->frame;
}

SX_EXPORT int SX_InsertEXENTRY(EXTGF2005a* frame, int index, int count, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::InsertEXENTRY);
  LoadedFrame* loaded = s.Frame(frame);
  if (s.Failing(HostCall::InsertEXENTRY) || !loaded || !IsIntact(*loaded))
    return 0;
  return InsertSlots(*loaded, index, count) ? 1 : 0;
}

SX_EXPORT int SX_DeleteEXENTRY(EXTGF2005a* frame, int index, int count, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::DeleteEXENTRY);
  LoadedFrame* loaded = s.Frame(frame);
  if (!loaded || !IsIntact(*loaded))
    return 0;
  return DeleteSlots(*loaded, index, count) ? 1 : 0;
}

SX_EXPORT int SX_SaveTGF(EXTGF2005a* frame, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::SaveTGF);
  LoadedFrame* loaded = s.Frame(frame);
  // A frame whose staff or measure has gone (the document was reset or an edit cancelled
  // since it was loaded) has nowhere to go.
  if (s.Failing(HostCall::SaveTGF) || !loaded || !IsIntact(*loaded) ||
      !s.data.IsValid(loaded->address))
    return 0;
  std::span<EXENTRY> entries(loaded->buffer, size_t(loaded->frame.entryCount));
  for (const EXENTRY& e : entries)
    if (e.noteCount < 0 || e.noteCount > kMaxNotesPerEntry)
      return 0;
  s.data.StoreFrame(loaded->address, entries);
  return 1;
}

SX_EXPORT int SX_FreeTGF(EXTGF2005a* frame, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::FreeTGF);
  LoadedFrame* loaded = s.Frame(frame);
  if (!loaded)
    return 0;
  std::erase(s.frames, loaded);
  if (s.spareFrame)
    DeleteLoadedFrame(s.spareFrame);
  s.spareFrame = loaded;
  return 1;
}

SX_EXPORT int SX_RebeamRegion(EREGION* region, void* unused, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::RebeamRegion);
  if (!region)
    return 0;
  EREGION r = *region;
  s.document.Rebeam(r.startStaff, r.startMeasure, r.endStaff, r.endMeasure);
  return 1;
}
