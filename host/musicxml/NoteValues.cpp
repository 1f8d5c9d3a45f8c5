#include "NoteValues.h"

#include <array>

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

} // namespace scribo::musicxml
