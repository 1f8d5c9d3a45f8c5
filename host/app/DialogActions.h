// The subdivide command's options as the actions a user would take in the options dialog
// (resource 20256): radios clicked, durations typed into their fields or picked from the
// palettes. The plug-in's own handler then validates them and raises its alerts.
#pragma once

#include <optional>
#include <string>

#include "DialogScript.h"
#include "DurationNames.h"

namespace scribo::host {

struct SubdivideOptions {
  std::optional<std::string> divisions; // divisions mode: the whole number of parts typed
  std::optional<DurationText> target;   // target mode
  std::optional<DurationText> minimum;  // either one selects the duration range; the other
  std::optional<DurationText> maximum;  // then takes the widest value the dialog accepts
};

// The actions that set the dialog to the options, for a dialog opened with its dotted boxes
// clear (the first opening in a process), without pressing OK. Options not given leave their
// controls as the dialog shows them. A named duration inside the palettes clicks its palette
// button (and the dotted box for a dotted value); anything else is typed into the field.
engine::DialogScript OptionActions(const SubdivideOptions& options);

// The same actions, then OK.
engine::DialogScript BuildDialogScript(const SubdivideOptions& options);

} // namespace scribo::host
