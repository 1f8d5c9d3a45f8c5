#include "NoteValues.h"

#include <array>
#include <charconv>

namespace scribo::musicxml {

namespace {

struct TypeRow {
  std::string_view name;
  int32_t tdu;
};

// Longest first, so that a search from the front finds the largest value that fits.
constexpr std::array<TypeRow, 14> kTypes{{{"maxima", 32768},
                                          {"long", 16384},
                                          {"breve", 8192},
                                          {"whole", 4096},
                                          {"half", 2048},
                                          {"quarter", 1024},
                                          {"eighth", 512},
                                          {"16th", 256},
                                          {"32nd", 128},
                                          {"64th", 64},
                                          {"128th", 32},
                                          {"256th", 16},
                                          {"512th", 8},
                                          {"1024th", 4}}};

// Palette values in button order: breve first, 64th last.
constexpr std::array<int32_t, 8> kPalette{8192, 4096, 2048, 1024, 512, 256, 128, 64};

} // namespace

int32_t NoteTypeTDU(std::string_view type) {
  for (const auto& row : kTypes)
    if (row.name == type)
      return row.tdu;
  return 0;
}

int32_t DottedTDU(int32_t base, int dots) {
  int32_t total = base;
  int32_t add = base;
  for (int i = 0; i < dots; ++i) {
    add /= 2;
    total += add;
  }
  return total;
}

ShownValue ShowNotated(int32_t tdu) {
  ShownValue best{kTypes.back().name, 0, kTypes.back().tdu, false};
  bool found = false;
  for (const auto& row : kTypes) {
    for (int dots = 0; dots <= 3; ++dots) {
      int32_t value = DottedTDU(row.tdu, dots);
      if (value == tdu)
        return {row.name, dots, value, true};
      if (value < tdu && (!found || value > best.tdu)) {
        best = {row.name, dots, value, false};
        found = true;
      }
    }
  }
  return best;
}

std::optional<DurationText> ParseDurationText(std::string_view text) {
  if (text.empty())
    return std::nullopt;
  int32_t number = 0;
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (ec == std::errc() && end == text.data() + text.size())
    return DurationText{number, -1, false};

  DurationText result;
  constexpr std::string_view kDotted = "dotted-";
  if (text.starts_with(kDotted)) {
    result.dotted = true;
    text.remove_prefix(kDotted.size());
  }
  if (text == "8th")
    text = "eighth";
  int32_t base = NoteTypeTDU(text);
  if (base == 0)
    return std::nullopt;
  result.tdu = result.dotted ? DottedTDU(base, 1) : base;
  for (size_t i = 0; i < kPalette.size(); ++i)
    if (kPalette[i] == base)
      result.paletteIndex = static_cast<int>(i);
  return result;
}

} // namespace scribo::musicxml
