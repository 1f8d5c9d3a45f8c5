// Questions about the music itself: whether a measure holds notes, how many instrument slots
// are in use.
#include "SXUtilRecords.h"

#include <climits>

#include "HostFunctions.h"

bool SXUtilIsEmptyMeasure(short source, short staff, short measure) {
  const short layers = SX_GetMaxLayers(kScriboHostVersion);
  for (short layer = 0; layer < layers; ++layer) {
    EXTGF2005a* frame = SX_LoadTGF(static_cast<unsigned short>(source), staff, measure, layer, 1,
                                   kScriboHostVersion);
    bool hasNote = false;
    if (frame) {
      const EXENTRY* entries = frame->entries;
      const int count = frame->entryCount;
      for (int i = 0; i < count && entries && !hasNote; ++i)
        hasNote = (entries[i].flags & kEntryIsNote) != 0;
    }
    // Every load is matched by a free, a failed one too (the host gets null), so the SDK's
    // count of loaded frames is back where it was when this returns.
    SX_FreeTGF(frame, kScriboHostVersion);
    if (hasNote)
      return false;
  }
  return true;
}

short SXUtilCountIUSlots(short set) {
  short count = 0;
  for (int slot = 1; slot <= SHRT_MAX; ++slot) {
    if (!SX_SlotToInst(static_cast<short>(slot), static_cast<unsigned short>(set),
                       kScriboHostVersion))
      break;
    ++count;
  }
  return count;
}
