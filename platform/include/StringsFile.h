// Strings files (Localizable.strings): the old-style property-list grammar
//   "key" = "value";   /* comments */   // comments   unquoted simple keys
// with the escapes \" \\ \n \t \r \Uxxxx, in UTF-8 or in UTF-16 with a byte-order mark.
// A pure parser with no state: shared by the CoreFoundation stand-in and host-side tools.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace scribo {

// Parses a whole file's bytes. False (and `table` left empty) for a malformed file.
bool ParseStringsFile(std::string_view bytes, std::map<std::u16string, std::u16string>& table);

} // namespace scribo
