// Feeds arbitrary UTF-16 texts (the input's bytes in pairs, little-endian) to
// SXUtilStripTextTags and compares the result with the removal done the slow, literal way.
#include <cstdlib>
#include <string>

#include "SXUtilRawText.h"
#include "StripTextTagsReference.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::u16string text;
  for (size_t i = 0; i + 1 < size; i += 2) {
    const char16_t unit = static_cast<char16_t>(data[i] | (data[i + 1] << 8));
    if (unit == 0)
      break;
    text += unit;
  }
  const std::u16string expected = StripLiterally(text);
  std::u16string stripped = text;
  SXUtilStripTextTags(reinterpret_cast<unsigned short*>(stripped.data()));
  if (std::u16string(stripped.c_str()) != expected)
    std::abort();
  return 0;
}
