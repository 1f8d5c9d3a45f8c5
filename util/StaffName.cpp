// A staff's name as plain text: its first name block, else its second, with the tags stripped.
#include "SXUtilRawText.h"
#include "SXUtilRecords.h"
#include "StaffSpecLoad.h"

namespace {

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
