#include "UtilModDiv.h"

void UtilModDiv(short value, short divisor, short* remainder, short* quotient) {
  int q = 0;
  int r = value;
  if (divisor != 0) {
    // In int: -32768 / -1 would overflow a short.
    q = value / divisor;
    r = value % divisor;
    if (r < 0) {
      r += divisor;
      q -= 1;
    }
  }
  *remainder = static_cast<short>(r);
  *quotient = static_cast<short>(q);
}
