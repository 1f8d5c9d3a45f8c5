// The options dialog's handler: set-up, the user's actions, and closing.
#include <cstdint>

#include "DialogControls.h"
#include "DialogItems.h"
#include "DialogValidation.h"
#include "DialogWindowPosition.h"
#include "DurationPalettes.h"
#include "HostFunctions.h"
#include "SubdivisionDialogState.h"

using namespace dialog_items;

namespace {

// Notification codes of message 273 (bits 16..31 of `extra`).
constexpr uint16_t kNotifyClicked = 0;         // a button, radio, palette button or box was clicked
constexpr uint16_t kNotifyFieldEdited = 0x202; // a text field's value was changed

// Choosing a duration group's radio: always the other radio off first, then the group's on.
void SelectGroup(OpaqueCocoaWindow* dialog, const DurationGroup& group) {
  SetControl(dialog, group.radioOff, 0);
  SetControl(dialog, group.radioOn, 1);
}

// The duration group whose dotted box, field or palette button `item` is; null for other items.
const DurationGroup* GroupOf(int16_t item) {
  for (const DurationGroup* group : {&kMinimumGroup, &kMaximumGroup, &kTargetGroup}) {
    if (item == group->field || item == group->dottedBox ||
        (item >= group->firstButton && item < group->firstButton + kPaletteSize))
      return group;
  }
  return nullptr;
}

unsigned char SetUp(OpaqueCocoaWindow* dialog) {
  RestoreDialogPosition(dialog);

  SetControl(dialog, kMinimumField, sDialogState.minDuration);
  MatchPalettesToTDUs(dialog, kMinimumField, kMinimumPalette, kMinimumDotted);
  SetControl(dialog, kMaximumField, sDialogState.maxDuration);
  MatchPalettesToTDUs(dialog, kMaximumField, kMaximumPalette, kMaximumDotted);
  SetControl(dialog, kTargetField, sDialogState.targetDuration);
  MatchPalettesToTDUs(dialog, kTargetField, kTargetPalette, kTargetDotted);

  // No parts chosen yet: an empty field rather than a 0 the user would have to delete.
  static const char kEmptyText[] = "";
  SX_SetDlgCntlVal(dialog, kDivisionsField, sDialogState.divisions == 0 ? kEmptyText : nullptr,
                   sDialogState.divisions, kScriboHostVersion);

  const bool all = sDialogState.allDurations != 0;
  SetControl(dialog, kAllDurations, all ? 1 : 0);
  SetControl(dialog, kDurationRange, all ? 0 : 1);
  const bool byDivisions = sDialogState.byDivisions != 0;
  SetControl(dialog, kByDivisions, byDivisions ? 1 : 0);
  SetControl(dialog, kByTarget, byDivisions ? 0 : 1);
  return 1;
}

unsigned char Act(OpaqueCocoaWindow* dialog, int16_t item, uint16_t code, void* userData) {
  switch (item) {
  case kOK:
    ValidateAndAccept(dialog, static_cast<int16_t*>(userData));
    return 1;
  case kCancel:
    SX_EndDialog(dialog, kScriboHostVersion);
    return 1;
  case kAllDurations:
  case kDurationRange:
    SetControl(dialog, kAllDurations, item == kAllDurations ? 1 : 0);
    SetControl(dialog, kDurationRange, item == kDurationRange ? 1 : 0);
    return 1;
  case kByDivisions:
  case kByTarget:
    SetControl(dialog, kByDivisions, item == kByDivisions ? 1 : 0);
    SetControl(dialog, kByTarget, item == kByTarget ? 1 : 0);
    return 1;
  case kDivisionsField:
    // Typing a number of parts chooses divisions mode (this one sets the chosen radio first).
    if (code == kNotifyFieldEdited) {
      SetControl(dialog, kByDivisions, 1);
      SetControl(dialog, kByTarget, 0);
    }
    return 1;
  default:
    break;
  }

  const DurationGroup* group = GroupOf(item);
  if (!group)
    return 1; // labels: nothing to do

  if (item == group->field) {
    if (code == kNotifyFieldEdited) {
      SelectGroup(dialog, *group);
      MatchPalettesToTDUs(dialog, group->field, group->firstButton, group->dottedBox);
    }
    return 1;
  }

  // A palette button or the dotted box: only a plain click counts.
  if (code != kNotifyClicked)
    return 0;
  if (item != group->dottedBox) {
    ClearButtons(dialog, group->firstButton, 0); // the buttons only; the box keeps its state
    SetControl(dialog, item, 1);
  }
  SelectGroup(dialog, *group);
  MatchTDUsToPalettes(dialog, group->firstButton, group->dottedBox, group->field);
  return 1;
}

unsigned char Close(OpaqueCocoaWindow* dialog) {
  SaveDialogPosition(dialog);
  // Whether OK or Cancel ended the dialog, what was typed is shown again next time.
  sDialogState.allDurations = static_cast<int16_t>(ControlValue(dialog, kAllDurations));
  sDialogState.minDuration = ControlValue(dialog, kMinimumField);
  sDialogState.maxDuration = ControlValue(dialog, kMaximumField);
  sDialogState.byDivisions = static_cast<int16_t>(ControlValue(dialog, kByDivisions));
  sDialogState.targetDuration = ControlValue(dialog, kTargetField);
  sDialogState.divisions = static_cast<int16_t>(ControlValue(dialog, kDivisionsField));
  return 0;
}

} // namespace

unsigned char MyDlogHandler(OpaqueCocoaWindow* dialog, unsigned int message, long item, long extra,
                            void* userData) {
  switch (message) {
  case kDialogMessageSetUp:
    return SetUp(dialog);
  case kDialogMessageAction:
    // The range is checked on the full-width item: a stray 65537 must not pass as item 1.
    if (item < kFirstItem || item > kLastItem)
      return 1;
    return Act(dialog, static_cast<int16_t>(item), static_cast<uint16_t>((extra >> 16) & 0xFFFF),
               userData);
  case kDialogMessageClose:
    return Close(dialog);
  default:
    return 0;
  }
}
