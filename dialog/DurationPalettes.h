// The duration palettes of the options dialog: eight note-value buttons and a "dotted" box kept in
// step with a TDU field. Button k of a palette (item firstButton + k, k = 0..7) stands for
// 8192 >> k TDU, from the breve (8192) down to the 64th note (64); the dotted box adds half.
//
// No state: every call reads the controls afresh with SX_GetDlgCntlVal and writes them with
// SX_SetDlgCntlVal (null text, value 1 or 0 for buttons and boxes). Items are the dialog's signed
// 16-bit identifiers. Thread: host's main thread, inside the dialog handler.
#pragma once

#include <cstdint>

#include "HostTypes.h"

// Shows the field's value on the palette: the matching button on and the box set when the value
// is a plain or dotted note value from 64 to 12288 TDU; otherwise every button and the box off.
void MatchPalettesToTDUs(OpaqueCocoaWindow* dialog, int16_t field, int16_t firstButton,
                         int16_t dottedBox);

// Writes the palette's value into the field: the first button that is on (16384 when none is),
// plus half when the box is on. The field is written only when its value differs.
void MatchTDUsToPalettes(OpaqueCocoaWindow* dialog, int16_t firstButton, int16_t dottedBox,
                         int16_t field);

// Turns the eight buttons off in increasing order, then the box unless `dottedBox` is 0.
void ClearButtons(OpaqueCocoaWindow* dialog, int16_t firstButton, int16_t dottedBox);
