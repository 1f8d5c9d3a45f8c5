// Raw texts: a size query, then the load into a buffer one unit longer than the text.
#include "SXUtilRawText.h"

#include <cstdlib>

#include "EDTTextBlock25_4.h"
#include "HostFunctions.h"

unsigned short* SXUtilLoadRawTextUTF16(short text) {
  unsigned short keys[] = {static_cast<unsigned short>(text), 0};
  // Without a buffer the host reports the size and ignores what the word held; start at 0 so
  // that a host which does not fill it in reads as an empty text, not as garbage.
  uint32_t size = 0;
  if (!SX_LoadEData(kTagRawText, keys, nullptr, &size, kScriboHostVersion))
    return nullptr;
  if (size > kMaxRawTextBytes)
    return nullptr;

  // calloc: whatever the host leaves unwritten below the terminator reads as 0, never as
  // uninitialised memory.
  auto* buffer = static_cast<unsigned short*>(std::calloc(1, size + 2));
  if (!buffer)
    return nullptr;
  uint32_t loaded = size;
  // An empty text has nothing to load; its first load already told us it exists.
  if (size > 0 && !SX_LoadEData(kTagRawText, keys, buffer, &loaded, kScriboHostVersion)) {
    std::free(buffer);
    return nullptr;
  }
  // The host may answer a different size the second time; the buffer only holds `size`.
  const uint32_t end = loaded < size ? loaded : size;
  buffer[end / 2] = 0;
  return buffer;
}

void SXUtilFreeRawText(void* text) {
  std::free(text);
}
