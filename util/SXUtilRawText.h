// The characters of the host's text blocks: raw texts as zero-terminated UTF-16 buffers, and
// the removal of the host's inline text tags.
// Thread: host's main thread.
#pragma once

#include <cstdint>

// The inline tag that stands for a flat sign; stripping turns it into "b".
extern const unsigned short caretFlat[8]; // "^flat()"

// The largest raw text accepted, in bytes (2M UTF-16 units). A host that reports more is
// refused: no text block holds that much, and a size near 4 GiB would overflow the allocation.
constexpr uint32_t kMaxRawTextBytes = 4u * 1024 * 1024;

// The raw text ("txbl" {text, 0}) as a new buffer from malloc of its byte size plus 2 bytes:
// its UTF-16 units and a 0 unit. An empty text (size 0) gives an empty string. Null when the
// host cannot report or deliver the text, when it reports more than kMaxRawTextBytes, or when
// memory runs out; nothing is left allocated then. Release the buffer with SXUtilFreeRawText.
unsigned short* SXUtilLoadRawTextUTF16(short text);

// Releases a buffer of SXUtilLoadRawTextUTF16; null is allowed.
void SXUtilFreeRawText(void* text);

// Removes the inline tags ("^name(arguments)") from a zero-terminated text in place, and turns
// each "^flat()" into "b": "^font(Times)Violin" becomes "Violin", "B^flat() Clarinet" becomes
// "Bb Clarinet". Stops at the first caret that no "(" and ")" follow, since no later tag can be
// complete ("A^b" stays as it is). Null is allowed.
void SXUtilStripTextTags(unsigned short* text);
