#include "DialogValidation.h"

#include <cstdint>

#include "DialogControls.h"
#include "DialogItems.h"
#include "HostFunctions.h"

using namespace dialog_items;

namespace {

// Alert texts in the strings table, table 20128.
constexpr int32_t kAlertMinimumOutOfRange = 0x4EA00001;   // 20128,1
constexpr int32_t kAlertMaximumOutOfRange = 0x4EA00002;   // 20128,2
constexpr int32_t kAlertMaximumBelowMinimum = 0x4EA00003; // 20128,3
constexpr int32_t kAlertBadPartsOrTarget = 0x4EA00004;    // 20128,4
constexpr int32_t kAlertTargetTooLong = 0x4EA00006;       // 20128,6

constexpr int32_t kLongestDuration = 8192; // a breve
constexpr int32_t kFewestParts = 2;
constexpr int32_t kMostParts = 32;
constexpr int32_t kShortestTarget = 4;

bool Reject(OpaqueCocoaWindow* dialog, int32_t alert, int16_t focus) {
  SX_AlertMessage(dialog, kAlertRejected, alert, nullptr, kScriboHostVersion);
  SX_SetDlgFocus(dialog, focus, kScriboHostVersion);
  return false;
}

} // namespace

bool ValidateAndAccept(OpaqueCocoaWindow* dialog, int16_t* accepted) {
  int32_t limit = kLongestDuration;
  if (ControlValue(dialog, kDurationRange) != 0) {
    const int32_t minimum = ControlValue(dialog, kMinimumField);
    const int32_t maximum = ControlValue(dialog, kMaximumField);
    if (minimum < 1 || minimum > kLongestDuration)
      return Reject(dialog, kAlertMinimumOutOfRange, kMinimumField);
    if (maximum < 1 || maximum > kLongestDuration)
      return Reject(dialog, kAlertMaximumOutOfRange, kMaximumField);
    if (maximum < minimum)
      return Reject(dialog, kAlertMaximumBelowMinimum,
                    maximum == 4096 ? kMinimumField : kMaximumField);
    limit = maximum;
  }
  if (ControlValue(dialog, kByDivisions) != 0) {
    const int32_t parts = ControlValue(dialog, kDivisionsField);
    if (parts < kFewestParts || parts > kMostParts)
      return Reject(dialog, kAlertBadPartsOrTarget, kDivisionsField);
  } else {
    const int32_t target = ControlValue(dialog, kTargetField);
    // The dialog has always put the focus here on the parts field for a too-short target and on
    // the minimum field for a too-long one, not on the target field; that is kept.
    if (target < kShortestTarget)
      return Reject(dialog, kAlertBadPartsOrTarget, kDivisionsField);
    if (target > limit)
      return Reject(dialog, kAlertTargetTooLong, kMinimumField);
  }
  if (accepted)
    *accepted = 1;
  SX_EndDialog(dialog, kScriboHostVersion);
  return true;
}
