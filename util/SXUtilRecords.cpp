// The record accessors, each filling in its record's tag, key list and size, and the queries
// derived from them: key and time signatures, staff transpositions, staff names, empty measures
// and instrument slots.
#include "SXUtilRecords.h"

#include <climits>
#include <cstring>

#include "HostFunctions.h"
#include "SXUtilRawText.h"

namespace {

short LoadRecord(uint32_t tag, unsigned short* keys, void* record, uint32_t size) {
  uint32_t capacity = size;
  return SX_LoadEData(tag, keys, record, &capacity, kScriboHostVersion);
}

unsigned short Key(short value) {
  return static_cast<unsigned short>(value);
}

// Clears `spec` (the host reads bytes 102 to 113 of the buffer it is given, so they must not
// hold stale data) and loads the staff spec; the host's result.
short LoadClearedStaffSpec(short staff, EDTStaffSpec2014* spec) {
  *spec = EDTStaffSpec2014{};
  return SXUtilGetStaffSpec(staff, spec);
}

// The raw text of a name block, or null when the block is 0 or cannot be loaded.
unsigned short* LoadNameText(short block) {
  if (block == 0)
    return nullptr;
  EDTTextBlock25_4 textBlock;
  if (!SXUtilGetTextBlock(block, &textBlock))
    return nullptr;
  return SXUtilLoadRawTextUTF16(textBlock.rawText);
}

} // namespace

short SXUtilGetMeasureSpec(short measure, EDTMeasureSpec2014* spec) {
  unsigned short keys[] = {Key(measure), 0};
  return LoadRecord(kTagMeasureSpec, keys, spec, sizeof(EDTMeasureSpec2014));
}

short SXUtilPutMeasureSpec(short measure, EDTMeasureSpec2014* spec) {
  unsigned short keys[] = {Key(measure), 0};
  return SX_SaveEData(kTagMeasureSpec, keys, spec, sizeof(EDTMeasureSpec2014), kScriboHostVersion);
}

short SXUtilGetStaffSpec(short staff, EDTStaffSpec2014* spec) {
  unsigned short keys[] = {Key(staff), 0};
  return LoadRecord(kTagStaffSpec, keys, spec, sizeof(EDTStaffSpec2014));
}

short SXUtilGetGroupSpec(short first, short second, EDTGroupSpec* spec) {
  unsigned short keys[] = {Key(first), Key(second), 0};
  return LoadRecord(kTagGroupSpec, keys, spec, sizeof(EDTGroupSpec));
}

short SXUtilGetPageSpec(short page, EDTPageSpec* spec) {
  unsigned short keys[] = {Key(page), 0};
  return LoadRecord(kTagPageSpec, keys, spec, sizeof(EDTPageSpec));
}

short SXUtilGetTextBlock(short block, EDTTextBlock25_4* spec) {
  std::memset(spec, 0, sizeof(EDTTextBlock25_4));
  unsigned short keys[] = {Key(block), 0};
  return LoadRecord(kTagTextBlock, keys, spec, sizeof(EDTTextBlock25_4));
}

short SXUtilGetGeneralPrefs(EDTGeneralPrefs2008* prefs) {
  unsigned short keys[] = {0};
  return LoadRecord(kTagGeneralPrefs, keys, prefs, sizeof(EDTGeneralPrefs2008));
}

bool SXUtilGetKeySig(short measure, short* keySig) {
  EDTMeasureSpec2014 spec{};
  if (!SXUtilGetMeasureSpec(measure, &spec))
    return false;
  *keySig = spec.keySig;
  return true;
}

bool SXUtilGetTimeSig(short measure, tTimeSig* timeSig) {
  EDTMeasureSpec2014 spec{};
  if (!SXUtilGetMeasureSpec(measure, &spec))
    return false;
  timeSig->beats = spec.timeSigBeats;
  timeSig->beatValue = spec.timeSigBeatValue;
  return true;
}

bool SXUtilGetStaffTrans(short staff, short* staffTrans) {
  EDTStaffSpec2014 spec;
  if (!LoadClearedStaffSpec(staff, &spec))
    return false;
  *staffTrans = spec.staffTrans;
  return true;
}

long SXUtilGetStaffName(short staff, short which, unsigned short* name, int nameSize) {
  // With no room for even a terminator there is nothing to fill in.
  if (!name || nameSize < 1)
    return 0;
  name[0] = 0;

  EDTStaffSpec2014 spec;
  if (!LoadClearedStaffSpec(staff, &spec))
    return 0;
  unsigned short* text = LoadNameText(spec.firstNameBlock);
  if (!text)
    text = LoadNameText(spec.secondNameBlock);
  if (!text)
    return 0;

  SXUtilStripTextTags(text);
  long length = 0;
  while (length < nameSize - 1 && text[length]) {
    name[length] = text[length];
    ++length;
  }
  name[length] = 0;
  SXUtilFreeRawText(text);
  return length;
}

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
