// Floored division of 16-bit values: pitch arithmetic needs remainders that never go negative.
// Thread: any.
#pragma once

// value = quotient * divisor + remainder. The truncating quotient and remainder are taken; a
// negative remainder gets `divisor` added and the quotient 1 taken away, so for a positive
// divisor the remainder is 0..divisor-1 (UtilModDiv(-1, 7) gives 6 and -1). Both results are
// cut to 16 bits. A divisor of 0 gives quotient 0 and remainder `value` (there is no quotient
// to give) instead of dividing by zero.
void UtilModDiv(short value, short divisor, short* remainder, short* quotient);
