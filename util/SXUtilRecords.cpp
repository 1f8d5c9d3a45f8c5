// The record accessors: each fills in its record's tag, key list and size.
#include "SXUtilRecords.h"

#include <cstring>

#include "HostFunctions.h"

namespace {

short LoadRecord(uint32_t tag, unsigned short* keys, void* record, uint32_t size) {
  uint32_t capacity = size;
  return SX_LoadEData(tag, keys, record, &capacity, kScriboHostVersion);
}

unsigned short Key(short value) {
  return static_cast<unsigned short>(value);
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
