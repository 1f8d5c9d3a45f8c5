// Feeds arbitrary bytes to the readers of text. The strings-file parser must answer true or
// false, never crash, and leave no table behind when it answers false. Read as UTF-8, strict
// decoding must accept exactly the texts that the lenient conversions carry there and back
// unchanged (so an overlong form, an encoded surrogate, a value above U+10FFFF or a cut sequence
// is refused by both); read as Mac Roman, a text must survive a trip through UTF-8; read as
// UTF-16 units, it must become well-formed UTF-8.
#include "StringsFile.h"
#include "TextCodec.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  std::map<std::u16string, std::u16string> table;
  if (!scribo::ParseStringsFile(bytes, table) && !table.empty())
    std::abort();
  std::u16string strict;
  if (scribo::DecodeUtf8(bytes, strict) !=
      (scribo::Utf16ToUtf8(scribo::Utf8ToUtf16(bytes)) == bytes))
    std::abort();
  if (scribo::Utf8ToMacRoman(scribo::MacRomanToUtf8(bytes)) != bytes)
    std::abort();
  // Any UTF-16 units (lone surrogates too) become well-formed UTF-8 that reads back to itself.
  std::u16string units, back;
  for (size_t i = 0; i + 1 < size; i += 2)
    units.push_back(static_cast<char16_t>(data[i] | data[i + 1] << 8));
  const std::string utf8 = scribo::Utf16ToUtf8(units);
  if (!scribo::DecodeUtf8(utf8, back) || scribo::Utf16ToUtf8(back) != utf8)
    std::abort();
  return 0;
}
