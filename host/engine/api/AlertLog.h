// The alert log: every SX_AlertMessage and SX_AlertMessage_UTF16, in order.
#pragma once

#include <cstdint>
#include <string>

namespace scribo::engine {

struct AlertRecord {
  uint16_t kind = 0;      // 0 plain notice, 16 rejected entry, 48 internal error
  int32_t identifier = 0; // localised-string identifier (table << 16 | index); 0: literal text
  std::string key;        // "table,index" for an identifier, "" for a literal
  std::string text;       // the literal text given (UTF-8); "" with an identifier
  std::string resolved;   // what the user saw: the localised text, the key when none was found,
                          // or the literal text
  int16_t dialog = 0;     // resource of the dialog that owned the alert; 0: none
};

} // namespace scribo::engine
