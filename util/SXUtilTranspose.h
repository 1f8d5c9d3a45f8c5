// Moving written pitches by intervals with correct letter names, reversing intervals, and
// converting between three views of a pitch: absolute (concert) pitch, the pitch relative to
// the tonic of a key signature (the key's own notes unaltered), and the written pitch of a
// transposing staff. All arithmetic is 16-bit. Thread: any.
#pragma once

#include <cstdint>

#include "NotationTypes.h"

// Result of the key-signature functions for a word they cannot use.
constexpr short kSXUtilBadKeySig = -101;

// Alteration corrections that keep an interval's size when it is laid on a note other than C,
// indexed [degree of the pitch - 1][degree of the interval - 1] (degrees 1..6 are D..B and
// second..seventh): semitones of the two degrees above C, less those of their sum.
extern const int8_t kTransposeUpAlts[6][6];

// Bits of the staff-transposition word.
constexpr uint16_t kStaffTransIntervalForm = 0x2000; // bit 13: interval form; clear: key form
constexpr uint16_t kStaffTransKeyAsIs = 0x4000;      // bit 14 (key form): no enharmonic respelling

// Moves `pitch` by `interval`: E + (2, 0) is G#, F + (3, 0) is B-flat, C + (-2, -1) is the
// A-flat below.
void SXUtilTranspose(tDiaPitch* pitch, const tInterval& interval);

// The same distance the other way: (2, 0) becomes (-2, -1), (3, +1) becomes (-3, -1).
void SXUtilInvertInterval(tInterval* interval);

// The offsets of a key-signature word (low byte: signed count of sharps or flats; high byte:
// 0 major, 1 minor). kSXUtilBadKeySig for words above 0x3fff or with another mode.
short KeySigToOffsets(short keySig, tKeySigOffsets* out);

// Relative pitch (steps from the key's tonic, the minor tonic in minor keys) to absolute, and
// back; each undoes the other. kSXUtilBadKeySig, with the pitch unchanged, for an unusable word.
short SXUtilRelToAbsTCD(tDiaPitch* pitch, short keySig);
short SXUtilAbsToRelTCD(tDiaPitch* pitch, short keySig);

// The interval from absolute to written pitch that a staff-transposition word stands for.
// `keySig` is consulted only by key-form words without bit 14, which are respelled so that the
// key that results from `keySig` keeps within six sharps or flats. Key words of 0x4000 and
// above (the host's non-standard keys) count as `keySig` sharps itself; the respelling is
// worked out in one step, so such words cost no more than any other.
void SXUtilStaffTransToInterval(short staffTrans, short keySig, tInterval* out);

// The staff-transposition word whose interval is the reverse of `interval`: an interval from
// written to sounding pitch becomes a transposition from absolute to written pitch. `byKey`
// non-zero gives the key form (bit 14 clear), 0 the interval form. The interval (0, 0) gives 0.
short SXUtilIntervalToStaffTrans(tInterval interval, short byKey);

// Written pitch of a transposing staff to absolute pitch, and back.
void SXUtilStaffToAbsTCD(tDiaPitch* pitch, short staffTrans, short keySig);
void SXUtilAbsToStaffTCD(tDiaPitch* pitch, short staffTrans, short keySig);
