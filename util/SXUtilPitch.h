// Written pitches: a diatonic step plus an alteration (tDiaPitch), their semitone values, and
// their texts for dialogs and settings.
//
// The texts follow a process-wide formatting state: MIDI note numbers (at load), or note names
// with octave numbers whose number for middle C can be set. Parsing and formatting read the
// state on every call, so a text written under one state may read back differently under
// another. Thread: host's main thread; the formatting state is unguarded.
#pragma once

#include <cstdint>

#include "NotationTypes.h"

// Result codes of the pitch texts.
constexpr short kSXUtilBadPitchName = -13; // the text is not a valid note name
constexpr short kSXUtilBadMidiNote = -14;  // the MIDI note number is outside 0..127
constexpr short kSXUtilNoRangeSep = -101;  // the range text has no separator "/"
// A side of a range text is 32 characters or longer: no pitch text is that long, and it would
// not fit the parser's working buffer.
constexpr short kSXUtilRangeSideTooLong = -102;

// Semitones of each degree (C D E F G A B) above C.
extern const int8_t kMajorToChromatic[7];
// Written form (step, alteration) of each pitch class above C: C C# D D# E F F# G G# A Bb B.
extern const tDiaPitch kChromaticToMajor[12];

// Lowest and highest steps that a note-name text may give (C0 and G9 with middle C as C4).
constexpr short kLowestNameStep = -28;
constexpr short kHighestNameStep = 39;

// Modes of SXUtilSetPitchFormatting other than an octave number for middle C.
constexpr short kPitchFormatFromDocument = -32768;
constexpr short kPitchFormatMidi = 32767;

// kPitchFormatFromDocument: names or MIDI numbers as the document's general preferences say
// (middle C's octave number is 4 plus the preferences' octave shift in octaves);
// kPitchFormatMidi: MIDI numbers; any other mode: note names with middle C written in octave
// `mode`. Returns 0, or 1 with the state unchanged when the preferences cannot be read or their
// octave shift is not a whole number of octaves.
short SXUtilSetPitchFormatting(short mode);

// Reads a pitch text. Note names: a letter A-G (either case), an optional "#" or "b", one octave
// digit; anything after the digit is ignored; C0..G9 (middle C as C4) without accidentals at the
// ends, else kSXUtilBadPitchName. MIDI numbers: the leading decimal number (as atoi reads it) in
// 0..127, else kSXUtilBadMidiNote. A null text is kSXUtilBadPitchName. `out` is written only on
// success (result 0).
short SXUtilParsePitch(char* text, tDiaPitch* out);

// Writes the text of `pitch`: the letter, one "#" per sharp or one "b" per flat and the octave
// number, or the MIDI number (no range check). At most outSize bytes are written, the terminator
// included: a longer text is cut short and always terminated. Nothing is written when `out` is
// null or outSize is below 1.
void SXUtilFormatPitch(tDiaPitch pitch, char* out, short outSize);

// Reads "low/high" into `out`, lower pitch first whatever the order in the text (equal pitches
// keep the text's order). Returns 0; kSXUtilNoRangeSep when there is no "/" after the first
// character (an empty text included); kSXUtilRangeSideTooLong when a side is 32 characters or
// longer; or the first side's failure code of SXUtilParsePitch. On any failure `out` holds the
// full range, (-28, 0) to (39, 0). With a null `out` nothing is written and the result is
// kSXUtilNoRangeSep.
short SXUtilParseRange(char* text, tDiaRange* out);

// Writes "low/high" (each side at most 31 characters), bounded by outSize like
// SXUtilFormatPitch; returns `out`.
char* SXUtilFormatRange(const tDiaRange& range, char* out, short outSize);

// The written form of a semitone value from middle C (MIDI number - 60): sharps for the black
// keys except B-flat.
tDiaPitch SXUtilChromToAbsTCD(short chromatic);

// The semitone value from middle C of a written pitch, cut to 16 bits.
short SXUtilAbsTCDToChrom(const tDiaPitch& pitch);
