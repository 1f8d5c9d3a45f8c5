#include "DurationNames.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>

namespace scribo::host {

namespace {

struct NoteValueNames {
  int32_t tdu;
  std::array<std::string_view, 3> names; // the first is the one MusicXML uses
};

constexpr NoteValueNames kNoteValues[] = {
    {16384, {"long"}},
    {8192, {"breve", "double-whole"}},
    {4096, {"whole", "semibreve"}},
    {2048, {"half", "minim"}},
    {1024, {"quarter", "crotchet"}},
    {512, {"eighth", "8th", "quaver"}},
    {256, {"16th", "sixteenth", "semiquaver"}},
    {128, {"32nd", "thirty-second", "demisemiquaver"}},
    {64, {"64th", "sixty-fourth", "hemidemisemiquaver"}},
    {32, {"128th"}},
    {16, {"256th"}},
    {8, {"512th"}},
    {4, {"1024th"}},
};

// The dialog's palettes hold breve (8192) down to the 64th note (64), halving at each button.
constexpr int32_t kFirstPaletteValue = 8192;
constexpr int kPaletteValues = 8;

// A modifier in front of a name, as a fraction of the plain value.
struct Modifier {
  std::string_view prefix;
  int32_t times;
  int32_t per;
};
constexpr Modifier kModifiers[] = {{"double-dotted-", 7, 4}, {"dotted-", 3, 2}, {"triplet-", 2, 3}};

int PaletteIndex(int32_t tdu) {
  for (int k = 0; k < kPaletteValues; ++k)
    if (kFirstPaletteValue >> k == tdu)
      return k;
  return -1;
}

int32_t NamedTDU(std::string_view name) {
  if (name.empty()) // the rows' unused names are empty
    return 0;
  for (const auto& value : kNoteValues)
    if (std::find(value.names.begin(), value.names.end(), name) != value.names.end())
      return value.tdu;
  return 0;
}

} // namespace

std::optional<DurationText> ParseDurationText(std::string_view text) {
  int32_t number = 0;
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (!text.empty() && ec == std::errc() && end == text.data() + text.size())
    return DurationText{number, -1, false};

  // "Dotted Quarter", "dotted_quarter" and "dotted-quarter" are the same name.
  std::string name(text);
  for (char& c : name)
    c = c == ' ' || c == '_' ? '-' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const Modifier* modifier = nullptr;
  for (const Modifier& m : kModifiers) {
    if (name.starts_with(m.prefix)) {
      modifier = &m;
      name.erase(0, m.prefix.size());
      break;
    }
  }
  int32_t base = NamedTDU(name);
  if (base == 0)
    return std::nullopt;
  if (!modifier)
    return DurationText{base, PaletteIndex(base), false};
  int32_t tdu = base * modifier->times / modifier->per;
  // A dotted palette value is the palette button with the dotted box; anything else is typed.
  bool dotted = modifier->prefix == "dotted-" && PaletteIndex(base) >= 0;
  return DurationText{tdu, dotted ? PaletteIndex(base) : -1, dotted};
}

std::string DurationNamesHelp() {
  std::string help = "Durations (--target, --min, --max) are numbers of TDU, where a quarter note "
                     "is 1024 TDU, or these note names (case does not matter):\n";
  for (const auto& value : kNoteValues) {
    std::string line = "  ";
    for (std::string_view name : value.names)
      if (!name.empty())
        line += std::string(line.size() > 2 ? ", " : "") + std::string(name);
    line.resize(std::max<size_t>(line.size() + 1, 48), ' ');
    help += line + std::to_string(value.tdu) + " TDU\n";
  }
  help += "with dotted- (x 3/2), double-dotted- (x 7/4) or triplet- (x 2/3, whole TDU) in front: "
          "dotted-quarter is 1536, double-dotted-half 3584, triplet-eighth 341, "
          "triplet-quarter 682.\n";
  return help;
}

} // namespace scribo::host
