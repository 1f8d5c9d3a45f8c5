// "3-5" or "4" on the command line: an inclusive range of measures or staves, numbered from 1.
#pragma once

#include <optional>
#include <string_view>

#include "EREGION.h"

namespace scribo::host {

struct NumberRange {
  int first = 1;
  int last = 1;
};

// Nullopt for text that is not "N" or "A-B" with 1 <= A <= B.
std::optional<NumberRange> ParseRange(std::string_view text);

// The region of whole measures `measures` of staves `staves`, as the host selects it.
EREGION MeasureRegion(NumberRange measures, NumberRange staves);

} // namespace scribo::host
