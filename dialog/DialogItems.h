// Every item of the options dialog (resource 20256), by identifier. The layout and labels live in
// resources/Dialogs/20256.xml; the texts in the bundle's Localizable.strings under "20256,<item>".
//
// Three durations (minimum, maximum, target) each have a TDU field, a palette of eight note-value
// buttons (breve down to 64th note, in increasing item order) and a "dotted" box. The handler
// reads and writes only the controls; items marked "label" are static texts it never touches.
#pragma once

#include <cstdint>

namespace dialog_items {

constexpr int16_t kResourceID = 20256; // the dialog resource
constexpr int16_t kFirstItem = 1;
constexpr int16_t kLastItem = 48;

enum : int16_t {
  kOK = 1,     // push button: validate, accept and close
  kCancel = 2, // push button: close without running

  // Which notes are split.
  kAllDurations = 3,   // radio (with 4): every duration
  kDurationRange = 4,  // radio (with 3): only minimum .. maximum
  kMinimumLabel = 5,   // label "Minimum:"
  kMinimumDotted = 6,  // check box: the minimum is dotted
  kMinimumField = 7,   // number: minimum duration, TDU
  kMinimumUnit = 8,    // label "TDU"
  kMaximumLabel = 9,   // label "Maximum:"
  kMaximumDotted = 10, // check box: the maximum is dotted
  kMaximumField = 11,  // number: maximum duration, TDU
  kMaximumUnit = 12,   // label "TDU"

  // How they are split.
  kByDivisions = 13,    // radio (with 16): into a number of equal parts
  kDivisionsField = 14, // number: how many parts, 2..32
  kDivisionsUnit = 15,  // label "equal parts"
  kByTarget = 16,       // radio (with 13): into parts of the target duration
  kTargetDotted = 17,   // check box: the target is dotted
  kTargetField = 18,    // number: target duration, TDU
  kTargetUnit = 19,     // label "TDU"

  // Static texts.
  kNotesHeading = 20,   // label "Notes to split"
  kSplitHeading = 21,   // label "Split"
  kMinimumCaption = 22, // label over the minimum palette
  kMaximumCaption = 23, // label over the maximum palette
  kTargetCaption = 24,  // label over the target palette

  // Palettes: eight buttons each, index k = item - first button stands for 8192 >> k TDU.
  kMinimumPalette = 25, // 25..32: breve, whole, half, quarter, 8th, 16th, 32nd, 64th
  kMaximumPalette = 33, // 33..40: the same values for the maximum
  kTargetPalette = 41,  // 41..48: the same values for the target
};

constexpr int16_t kPaletteSize = 8;

// A duration's controls: its field, the first of its eight palette buttons and its dotted box.
struct DurationGroup {
  int16_t field;
  int16_t firstButton;
  int16_t dottedBox;
  int16_t radioOff; // the radio that selecting this group turns off ...
  int16_t radioOn;  // ... and the one it turns on
};

constexpr DurationGroup kMinimumGroup{kMinimumField, kMinimumPalette, kMinimumDotted, kAllDurations,
                                      kDurationRange};
constexpr DurationGroup kMaximumGroup{kMaximumField, kMaximumPalette, kMaximumDotted, kAllDurations,
                                      kDurationRange};
constexpr DurationGroup kTargetGroup{kTargetField, kTargetPalette, kTargetDotted, kByDivisions,
                                     kByTarget};

} // namespace dialog_items
