#include "SelectionRange.h"

#include <charconv>

namespace scribo::host {

namespace {

std::optional<int> Number(std::string_view text) {
  int value = 0;
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size() || value < 1)
    return std::nullopt;
  return value;
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

} // namespace scribo::host
