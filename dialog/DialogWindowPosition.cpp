#include "DialogWindowPosition.h"

#include <cmath>
#include <cstdint>

#include "HostFunctions.h"
#include "ScriboWindowSystem.h"
#include "SubdivisionDialogState.h"

namespace {

// The main screen's height, or 0 when there is no main screen.
double MainScreenHeight() {
  ScriboRect screen{};
  return ScriboMainScreenFrame(&screen) ? screen.height : 0.0;
}

// A coordinate truncated toward zero to a 32-bit integer, of which the low 16 bits are kept.
// Values a 32-bit integer cannot hold (and NaN) come out as the processor's "indefinite" integer
// 0x80000000, whose low 16 bits are 0.
int16_t CoordinateToShort(double value) {
  const double truncated = std::trunc(value);
  int32_t whole = INT32_MIN;
  if (truncated >= static_cast<double>(INT32_MIN) && truncated <= static_cast<double>(INT32_MAX))
    whole = static_cast<int32_t>(truncated);
  return static_cast<int16_t>(static_cast<uint16_t>(static_cast<uint32_t>(whole) & 0xFFFFu));
}

} // namespace

void RestoreDialogPosition(OpaqueCocoaWindow* dialog) {
  if (sWinPos.left == kWinPosUnset || sWinPos.top == kWinPosUnset)
    return;
  if (SX_IsCocoaSXDLG(dialog, kScriboHostVersion) == 0)
    return;
  const double screenHeight = MainScreenHeight();
  ScriboWindowSetFrameTopLeftPoint(dialog, static_cast<double>(sWinPos.left),
                                   screenHeight - static_cast<double>(sWinPos.top));
}

void SaveDialogPosition(OpaqueCocoaWindow* dialog) {
  if (SX_IsCocoaSXDLG(dialog, kScriboHostVersion) == 0)
    return;
  const ScriboRect window = ScriboWindowFrame(dialog);
  const double screenHeight = MainScreenHeight();
  sWinPos.left = CoordinateToShort(window.x);
  sWinPos.top = CoordinateToShort(screenHeight - (window.y + window.height));
}
