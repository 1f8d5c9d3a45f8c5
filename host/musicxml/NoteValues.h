// Note values: MusicXML's type names, their lengths in TDU (quarter = 1024), dots, and the
// duration texts that users type on the command line.
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

// A duration typed by a user: a TDU number ("768") or a note name ("quarter", "dotted-eighth",
// "16th"). `paletteIndex` is the position of a named value among the eight palette values
// breve (0) .. 64th (7), or -1 for a number or a name outside the palette.
struct DurationText {
  int32_t tdu = 0;
  int paletteIndex = -1;
  bool dotted = false;
};
std::optional<DurationText> ParseDurationText(std::string_view text);

} // namespace scribo::musicxml
