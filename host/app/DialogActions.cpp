#include "DialogActions.h"

namespace scribo::host {

using engine::DialogAction;

namespace {

void AddDuration(engine::DialogScript& script, const musicxml::DurationText& duration,
                 int16_t firstPaletteButton, int16_t dottedBox, int16_t field) {
  if (duration.paletteIndex >= 0) {
    script.push_back(
        DialogAction::Click(static_cast<int16_t>(firstPaletteButton + duration.paletteIndex)));
    if (duration.dotted)
      script.push_back(DialogAction::Toggle(dottedBox));
  } else {
    script.push_back(DialogAction::TypeText(field, std::to_string(duration.tdu)));
  }
}

} // namespace

engine::DialogScript BuildDialogScript(const SubdivideOptions& options) {
  engine::DialogScript script;
  if (options.minimum || options.maximum) {
    script.push_back(DialogAction::Click(item::kDurationRange));
    if (options.minimum)
      AddDuration(script, *options.minimum, item::kMinimumPalette, item::kMinimumDotted,
                  item::kMinimumField);
    if (options.maximum)
      AddDuration(script, *options.maximum, item::kMaximumPalette, item::kMaximumDotted,
                  item::kMaximumField);
  } else {
    script.push_back(DialogAction::Click(item::kAllDurations));
  }
  if (options.divisions) {
    script.push_back(DialogAction::Click(item::kDivisionsMode));
    script.push_back(DialogAction::TypeText(item::kPartsField, *options.divisions));
  } else if (options.target) {
    script.push_back(DialogAction::Click(item::kTargetMode));
    AddDuration(script, *options.target, item::kTargetPalette, item::kTargetDotted,
                item::kTargetField);
  }
  script.push_back(DialogAction::Click(item::kOK));
  return script;
}

} // namespace scribo::host
