#include "DialogActions.h"

#include "DialogItems.h"

namespace scribo::host {

using engine::DialogAction;
using namespace dialog_items;

namespace {

// The range the dialog accepts for the minimum and the maximum: the shortest note is 1 TDU,
// the longest a breve. "--max" alone has no lower bound, "--min" alone no upper bound.
constexpr const char* kShortestBound = "1";
constexpr const char* kLongestBound = "8192";

void AddDuration(engine::DialogScript& script, const DurationText& duration,
                 const DurationGroup& group) {
  if (duration.paletteIndex >= 0) {
    script.push_back(
        DialogAction::Click(static_cast<int16_t>(group.firstButton + duration.paletteIndex)));
    if (duration.dotted)
      script.push_back(DialogAction::Toggle(group.dottedBox));
  } else {
    script.push_back(DialogAction::TypeText(group.field, std::to_string(duration.tdu)));
  }
}

} // namespace

engine::DialogScript OptionActions(const SubdivideOptions& options) {
  engine::DialogScript script;
  if (options.minimum || options.maximum) {
    script.push_back(DialogAction::Click(kDurationRange));
    if (options.minimum)
      AddDuration(script, *options.minimum, kMinimumGroup);
    else
      script.push_back(DialogAction::TypeText(kMinimumField, kShortestBound));
    if (options.maximum)
      AddDuration(script, *options.maximum, kMaximumGroup);
    else
      script.push_back(DialogAction::TypeText(kMaximumField, kLongestBound));
  }
  if (options.divisions) {
    script.push_back(DialogAction::Click(kByDivisions));
    script.push_back(DialogAction::TypeText(kDivisionsField, *options.divisions));
  } else if (options.target) {
    script.push_back(DialogAction::Click(kByTarget));
    AddDuration(script, *options.target, kTargetGroup);
  }
  return script;
}

engine::DialogScript BuildDialogScript(const SubdivideOptions& options) {
  engine::DialogScript script = OptionActions(options);
  script.push_back(DialogAction::Click(kOK));
  return script;
}

} // namespace scribo::host
