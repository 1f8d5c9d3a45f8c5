// A frame the engine has handed to a plug-in: the EXTGF2005a the plug-in sees, followed by the
// engine's own bookkeeping. The entry array is the engine's allocation with room to grow.
#pragma once

#include <cstdint>
#include <type_traits>

#include "Document.h"
#include "EXTGF2005a.h"

namespace scribo::engine {

struct LoadedFrame {
  EXTGF2005a frame{};        // must stay first: the plug-in's pointer is the address of this
  FrameAddress address;      // where SX_SaveTGF stores it
  EXENTRY* buffer = nullptr; // the engine's array (frame.entries unless the plug-in changed it)
  int32_t capacity = 0;      // entries `buffer` has room for
};
static_assert(std::is_standard_layout_v<LoadedFrame>);

// Makes a loaded frame holding a copy of `entries`, in `spare` (a frame freed before, or null)
// and its array when given. Null when memory runs out (`spare` is then released).
LoadedFrame* NewLoadedFrame(FrameAddress address, uint16_t frameSource, const EXENTRY* entries,
                            int32_t count, LoadedFrame* spare = nullptr);
void DeleteLoadedFrame(LoadedFrame* frame);
// Whether the plug-in left the array and count in a state the engine can work on.
bool IsIntact(const LoadedFrame& frame);
// `count` zeroed slots before `index`; the tail moves once. False (nothing changed) when the
// count would pass 32767 or memory runs out.
bool InsertSlots(LoadedFrame& frame, int32_t index, int32_t count);
// Removes `count` entries from `index`; false for a range outside the frame.
bool DeleteSlots(LoadedFrame& frame, int32_t index, int32_t count);

} // namespace scribo::engine
