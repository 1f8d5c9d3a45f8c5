// Note values: MusicXML's type names, their lengths in TDU (quarter = 1024) and dots.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace scribo::musicxml {

constexpr int32_t kQuarterTDU = 1024;

// TDU of an undotted MusicXML note type ("quarter" -> 1024); 0 for an unknown name. "maxima"
// gives 32768, one more than an entry's 16-bit notated duration holds.
int32_t NoteTypeTDU(std::string_view type);

// `base` with `dots` dots: 1024 with one dot is 1536, with two 1792.
int32_t DottedTDU(int32_t base, int dots);

// How a notated duration is shown: a type and its dots. `exact` is false when no type with up to
// three dots has exactly `tdu` (a truncated third of a quarter, 341); the largest value below it
// is then given. A `tdu` below the shortest type (4) gives the shortest type, not exact.
struct ShownValue {
  std::string_view type;
  int dots = 0;
  int32_t tdu = 0;
  bool exact = false;
};
ShownValue ShowNotated(int32_t tdu);

} // namespace scribo::musicxml
