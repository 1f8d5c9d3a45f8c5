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

// The actions for a dialog opened with its dotted boxes clear (the first opening in a
// process). A named duration inside the palettes clicks its palette button (and the dotted box
// for a dotted value); a number is typed into the field.
engine::DialogScript BuildDialogScript(const SubdivideOptions& options);

} // namespace scribo::host
