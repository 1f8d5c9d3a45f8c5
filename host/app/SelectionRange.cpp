#include "SelectionRange.h"

#include <charconv>

#include "HostError.h"

namespace scribo::host {

namespace {

std::optional<int> Number(std::string_view text) {
  int value = 0;
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size() || value < 1)
    return std::nullopt;
  return value;
}

// The first measure at or after `from` printed with `number`; -1 when there is none.
int FindMeasure(const musicxml::Score& score, std::string_view number, int from) {
  for (int m = from; m < static_cast<int>(score.measures.size()); ++m)
    if (MeasureNumber(score, m) == number)
      return m;
  return -1;
}

} // namespace

std::optional<NumberRange> ParseRange(std::string_view text) {
  size_t dash = text.find('-');
  auto first = Number(text.substr(0, dash));
  auto last = dash == std::string_view::npos ? first : Number(text.substr(dash + 1));
  if (!first || !last || *last < *first)
    return std::nullopt;
  return NumberRange{*first, *last};
}

EREGION MeasureRegion(NumberRange measures, NumberRange staves) {
  EREGION region{};
  region.startStaff = static_cast<int16_t>(staves.first);
  region.endStaff = static_cast<int16_t>(staves.last);
  region.startMeasure = static_cast<int16_t>(measures.first);
  region.endMeasure = static_cast<int16_t>(measures.last);
  region.startPosition = 0;
  region.endPosition = 0x7FFFFFFF; // to the end of the last measure
  return region;
}

std::string MeasureNumber(const musicxml::Score& score, int m) {
  const std::string& number = score.measures[m].number;
  return number.empty() ? std::to_string(m + 1) : number;
}

NumberRange MeasureRange(const musicxml::Score& score, std::string_view text, const char* option) {
  size_t dash = text.find('-', 1);
  std::string_view first = text.substr(0, dash);
  std::string_view last = dash == std::string_view::npos ? first : text.substr(dash + 1);
  std::string given = std::string(option) + " " + std::string(text);
  if (first.empty() || last.empty())
    throw HostError(kExitUsage, given + ": give the measure numbers printed in the score, such "
                                        "as 3-6 (or a single number)");
  int count = static_cast<int>(score.measures.size());
  auto missing = [&](std::string_view number) {
    std::string numbers = count == 0 ? "it has no measures"
                                     : "its measures are numbered " + MeasureNumber(score, 0) +
                                           " to " + MeasureNumber(score, count - 1);
    return HostError(kExitScoreError, given + ": the score has no measure numbered " +
                                          std::string(number) + " (" + numbers + ")");
  };
  int from = FindMeasure(score, first, 0);
  if (from < 0)
    throw missing(first);
  int to = FindMeasure(score, last, from);
  if (to < 0) {
    if (FindMeasure(score, last, 0) >= 0)
      throw HostError(kExitUsage, given + ": give a range such as 3-6, first measure first");
    throw missing(last);
  }
  return {from + 1, to + 1};
}

std::string Counted(long count, std::string_view one, std::string_view many) {
  return std::to_string(count) + " " + std::string(count == 1 ? one : many);
}

} // namespace scribo::host
