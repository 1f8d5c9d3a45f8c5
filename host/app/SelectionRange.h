// The selection on the command line: staves by their place from the top ("1-2"), measures by
// the numbers printed in the score ("0-4" from a pickup numbered 0, "12a", "3-6").
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "EREGION.h"
#include "ScoreModel.h"

namespace scribo::host {

// An inclusive range of staves or measures, numbered from 1 in score order.
struct NumberRange {
  int first = 1;
  int last = 1;
};

// Nullopt for text that is not "N" or "A-B" with 1 <= A <= B.
std::optional<NumberRange> ParseRange(std::string_view text);

// The region of whole measures `measures` of staves `staves`, as the host selects it.
EREGION MeasureRegion(NumberRange measures, NumberRange staves);
// The number printed for measure `m` (0-based): its number attribute, or its place in the score
// when it has none.
std::string MeasureNumber(const musicxml::Score& score, int m);

// The measures "A-B" (or "A") names by their printed numbers: from the first measure numbered A
// to the first measure numbered B at or after it. Throws HostError for text that is not a range
// (kExitUsage) and for numbers the score does not have (kExitScoreError), naming `option`.
NumberRange MeasureRange(const musicxml::Score& score, std::string_view text, const char* option);

// "1 staff", "3 staves": a count with its noun in the right number.
std::string Counted(long count, std::string_view one, std::string_view many);

} // namespace scribo::host
