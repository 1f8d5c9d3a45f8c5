#include "DurationPalettes.h"

#include "DialogControls.h"
#include "DialogItems.h"

namespace {

constexpr int32_t kShortestNoteValue = 64;         // a 64th note
constexpr int32_t kLongestNoteValue = 8192 + 4096; // a dotted breve
constexpr int32_t kNoButtonValue = 16384;          // what an empty palette stands for

// The value of button k (0..7) of any palette, in TDU.
constexpr int32_t PaletteValue(int k) {
  return 8192 >> k;
}

} // namespace

void ClearButtons(OpaqueCocoaWindow* dialog, int16_t firstButton, int16_t dottedBox) {
  for (int k = 0; k < dialog_items::kPaletteSize; ++k)
    SetControl(dialog, static_cast<int16_t>(firstButton + k), 0);
  if (dottedBox != 0)
    SetControl(dialog, dottedBox, 0);
}

void MatchPalettesToTDUs(OpaqueCocoaWindow* dialog, int16_t field, int16_t firstButton,
                         int16_t dottedBox) {
  const int32_t value = ControlValue(dialog, field);
  if (value < kShortestNoteValue || value > kLongestNoteValue) {
    ClearButtons(dialog, firstButton, dottedBox);
    return;
  }
  // The longest note value whose bit is set; within 64..12288 there always is one.
  int k = 0;
  while (k < dialog_items::kPaletteSize - 1 && (value & PaletteValue(k)) == 0)
    ++k;
  const int32_t base = PaletteValue(k);
  bool dotted = false;
  if (value == base + base / 2) {
    dotted = true;
  } else if (value != base) {
    ClearButtons(dialog, firstButton, dottedBox);
    return;
  }
  ClearButtons(dialog, firstButton, dottedBox);
  SetControl(dialog, static_cast<int16_t>(firstButton + k), 1);
  SetControl(dialog, dottedBox, dotted ? 1 : 0);
}

void MatchTDUsToPalettes(OpaqueCocoaWindow* dialog, int16_t firstButton, int16_t dottedBox,
                         int16_t field) {
  int32_t base = kNoButtonValue;
  for (int k = 0; k < dialog_items::kPaletteSize; ++k) {
    if (ControlValue(dialog, static_cast<int16_t>(firstButton + k)) != 0) {
      base = PaletteValue(k);
      break;
    }
  }
  const int32_t value = ControlValue(dialog, dottedBox) != 0 ? base + base / 2 : base;
  if (ControlValue(dialog, field) != value)
    SetControl(dialog, field, value);
}
