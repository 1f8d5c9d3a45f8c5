// The subdivide command's options as the actions a user would take in the options dialog
// (resource 20256): radios clicked, durations typed into their fields or picked from the
// palettes, OK pressed. The plug-in's own handler then validates them and raises its alerts.
#pragma once

#include <optional>
#include <string>

#include "DialogScript.h"
#include "NoteValues.h"

namespace scribo::host {

struct SubdivideOptions {
  std::optional<std::string> divisions;          // divisions mode: the text typed for parts
  std::optional<musicxml::DurationText> target;  // target mode
  std::optional<musicxml::DurationText> minimum; // either one selects the duration range
  std::optional<musicxml::DurationText> maximum;
};

// Items of the options dialog.
namespace item {
constexpr int16_t kOK = 1;
constexpr int16_t kCancel = 2;
constexpr int16_t kAllDurations = 3;
constexpr int16_t kDurationRange = 4;
constexpr int16_t kMinimumDotted = 6;
constexpr int16_t kMinimumField = 7;
constexpr int16_t kMaximumDotted = 10;
constexpr int16_t kMaximumField = 11;
constexpr int16_t kDivisionsMode = 13;
constexpr int16_t kPartsField = 14;
constexpr int16_t kTargetMode = 16;
constexpr int16_t kTargetDotted = 17;
constexpr int16_t kTargetField = 18;
constexpr int16_t kMinimumPalette = 25; // breve .. 64th: 25..32
constexpr int16_t kMaximumPalette = 33; // 33..40
constexpr int16_t kTargetPalette = 41;  // 41..48
} // namespace item

// The actions for a dialog opened with its dotted boxes clear (the first opening in a
// process). A named duration inside the palettes clicks its palette button (and the dotted box
// for a dotted value); a number is typed into the field.
engine::DialogScript BuildDialogScript(const SubdivideOptions& options);

} // namespace scribo::host
