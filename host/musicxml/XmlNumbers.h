// MusicXML's numbers as text: divisions and durations are decimals ("1.5"), time-signature
// numerators may be sums ("3+2").
#pragma once

#include <string>
#include <string_view>

#include "Rational.h"

namespace scribo::musicxml {

// "12", "1.5", " 3 " -> exact value; throws ScoreError for anything else.
Rational ParseDecimal(std::string_view text);

// "3+2" -> 5, "6" -> 6; 0 when the text holds no number.
int SumOfNumbers(std::string_view text);

// The exact decimal text of `value` ("12", "1.5"); throws ScoreError when it has none (1/3).
std::string FormatDecimal(Rational value);

} // namespace scribo::musicxml
