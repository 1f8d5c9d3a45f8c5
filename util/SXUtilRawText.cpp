// Raw texts: a size query, then the load into a buffer one unit longer than the text. Inline
// text tags are removed in one forward pass: `read` walks the text as it was, `write` the text
// as it becomes, so a text with many tags costs no more than one copy.
#include "SXUtilRawText.h"

#include <cstddef>
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

const unsigned short caretFlat[8] = {'^', 'f', 'l', 'a', 't', '(', ')', 0};

namespace {

constexpr unsigned short kCaret = '^';

bool StartsWithCaretFlat(const unsigned short* text) {
  for (size_t i = 0; caretFlat[i]; ++i)
    if (text[i] != caretFlat[i])
      return false; // also stops at the terminator
  return true;
}

// Index of the first `unit` at or after `from`, or npos at the terminator.
constexpr size_t npos = static_cast<size_t>(-1);
size_t Find(const unsigned short* text, size_t from, unsigned short unit) {
  for (size_t i = from; text[i]; ++i)
    if (text[i] == unit)
      return i;
  return npos;
}

} // namespace

void SXUtilStripTextTags(unsigned short* text) {
  if (!text)
    return;
  size_t read = Find(text, 0, kCaret);
  if (read == npos)
    return;
  size_t write = read;
  for (;;) {
    // text[read] is a caret. The tag's name starts after it; for "^flat()" the caret itself
    // becomes the flat sign and the name starts one unit later.
    size_t tag = read;
    if (StartsWithCaretFlat(text + read)) {
      text[write++] = 'b';
      tag = read + 1;
    }
    const size_t open = Find(text, tag + 1, '(');
    const size_t close = open == npos ? npos : Find(text, open + 1, ')');
    if (close == npos) {
      // No complete tag can follow: keep the rest as it is, terminator included.
      read = tag;
      break;
    }
    read = close + 1;
    while (text[read] && text[read] != kCaret)
      text[write++] = text[read++];
    if (!text[read])
      break;
  }
  while ((text[write++] = text[read++]) != 0) {
  }
}
