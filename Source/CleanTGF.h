// The frame clean-up that every insertion, deletion, save and entry reduction runs first.
#pragma once

#include "EXTGF2005a.h"

// Brings every entry of `frame` into the form the host expects before it inserts, deletes or
// stores entries:
//  - note identifiers of each entry become non-zero and unique within the entry (a zero or
//    duplicated identifier gets the next number above the entry's greatest, the earlier of two
//    twins first), and bits 16..20 of each note's flags repeat the low five bits of its id;
//  - unused note records (past noteCount) are zeroed;
//  - while CanAddNoteRecordToRests is true, an entry without notes gets one placeholder note
//    (flags 0x80000000, id 0 until the next clean-up) and bit 24 of its flags.
// Changes only note records, noteCount and bit 24 of flags; never moves, adds or removes
// entries. A null frame, a frame without entries or with entryCount below 1 is left alone.
// Thread: host's main thread.
void CleanTGF(EXTGF2005a* frame);
