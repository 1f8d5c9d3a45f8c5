// Inline text tags. The tags are removed in one forward pass: `read` walks the text as it was,
// `write` the text as it becomes, so a text with many tags costs no more than one copy.
#include "SXUtilRawText.h"

#include <cstddef>

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
