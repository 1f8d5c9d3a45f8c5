// Feeds arbitrary bytes to the strings-file parser: it must answer true or false, never crash,
// and leave no table behind when it answers false.
#include "StringsFile.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::map<std::u16string, std::u16string> table;
  const bool ok =
      scribo::ParseStringsFile(std::string_view(reinterpret_cast<const char*>(data), size), table);
  if (!ok && !table.empty())
    std::abort();
  return 0;
}
