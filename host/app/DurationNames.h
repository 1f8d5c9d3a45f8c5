// Durations as a musician types them on the command line: a number of TDU (a quarter note is
// 1024 TDU) or a note-value name. Names are case-insensitive, in American or British usage
// ("eighth", "8th", "quaver"), and may carry one modifier in front: "dotted-" (half as long
// again), "double-dotted-" (three quarters as long again) or "triplet-" (two thirds, truncated
// to whole TDU: a triplet eighth is 341).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace scribo::host {

struct DurationText {
  int32_t tdu = 0;
  // Position of an undotted or dotted palette value among the options dialog's eight palette
  // buttons, breve (0) .. 64th (7); -1 for a number or any other value, which is typed in.
  int paletteIndex = -1;
  bool dotted = false; // with paletteIndex: the palette's dotted box is checked too
};

// Nullopt for anything that is neither a whole number nor a known name.
std::optional<DurationText> ParseDurationText(std::string_view text);

// Every accepted name with its TDU, and the modifiers, for --help.
std::string DurationNamesHelp();

} // namespace scribo::host
