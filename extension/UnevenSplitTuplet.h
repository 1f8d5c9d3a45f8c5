// The tuplet step of the subdivision pass: a note whose notated duration does not divide into n
// equal parts becomes n notes of a power-of-two unit in the time of its own duration.
#pragma once

#include "EXTGF2005a.h"

// For `entry` (in its frame, with its parts-1 new slots already inserted after it), loads the
// document's "pfTP" preference record 0 afresh, creates the tuplet detail record keyed by the
// entry's number, and on success sets the entry's duration to unit * parts and its tuplet-start
// bit. With no 30-byte preference record, or when the host refuses the detail record, the entry
// is left untouched (its run is then notated with truncated durations).
// Thread: host's main thread.
void MakeUnevenSplitTuplet(EXENTRY* entry, int parts);
