// One-line access to the document records a plug-in keeps asking for, and the queries derived
// from them: key and time signatures, staff transpositions, staff names, empty measures and
// instrument slots in use.
//
// Every call goes through the SX_ wrappers with the host version stamp and reports the host's
// failure as its result (0 or false). Thread: host's main thread.
#pragma once

#include <cstdint>

#include "EDTDocumentSpecs.h"
#include "EDTGeneralPrefs2008.h"
#include "EDTTextBlock25_4.h"
#include "NotationTypes.h"

// Record loaders: each passes its record's size as the capacity and returns the host's result
// (non-zero on success). On failure the record holds whatever the host left in it.
short SXUtilGetMeasureSpec(short measure, EDTMeasureSpec2014* spec); // "SOMS" {measure, 0}
short SXUtilGetStaffSpec(short staff, EDTStaffSpec2014* spec);       // "SOIS" {staff, 0}
short SXUtilGetGroupSpec(short first, short second,
                         EDTGroupSpec* spec);           // "SDNG" {first, second, 0}
short SXUtilGetPageSpec(short page, EDTPageSpec* spec); // "SOPS" {page, 0}
// Clears the 30 bytes of `spec` first, so a failed load leaves a zero record.
short SXUtilGetTextBlock(short block, EDTTextBlock25_4* spec); // "SOTX" {block, 0}
short SXUtilGetGeneralPrefs(EDTGeneralPrefs2008* prefs);       // "pfgp" {0}

// Stores the measure spec ("SOMS" {measure, 0}, 30 bytes); the host's result.
short SXUtilPutMeasureSpec(short measure, EDTMeasureSpec2014* spec);

// The measure's key-signature word. False, with `keySig` untouched, when the measure spec cannot be
// loaded.
bool SXUtilGetKeySig(short measure, short* keySig);

// The measure's time signature, both words unchanged. False, with `timeSig` untouched, when the
// spec cannot be loaded.
bool SXUtilGetTimeSig(short measure, tTimeSig* timeSig);

// The staff's transposition word. False, with `staffTrans` untouched, when the staff spec cannot be
// loaded.
bool SXUtilGetStaffTrans(short staff, short* staffTrans);

// The staff's name as plain text (inline tags stripped): the first name, or the second when the
// first is missing or cannot be loaded. Copies at most nameSize - 1 units and a terminator into
// `name` and returns the number of units copied. Returns 0 with an empty `name` when no name can
// be found; 0 without touching anything when `name` is null or nameSize is below 1.
// `which` is kept for callers of the host's interface and not consulted.
long SXUtilGetStaffName(short staff, short which, unsigned short* name, int nameSize);

// True when no layer of the measure on that staff holds a note entry: rests alone, or no
// frames, count as empty. `source` is the frame source of the selection region. Every load is
// matched by SX_FreeTGF before it returns, a failed one too (the host is handed null then), so
// LoadedTGFCounter is back at its earlier value.
bool SXUtilIsEmptyMeasure(short source, short staff, short measure);

// The number of consecutive instrument slots from slot 1 for which SX_SlotToInst(slot, set)
// answers non-zero. Counting stops at slot 32767, the last slot a 16-bit number can name.
short SXUtilCountIUSlots(short set);
