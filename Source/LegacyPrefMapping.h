// The table method: how SX_LoadEData and SX_SaveEData assemble an older preference record from
// the host's 12-byte other records and store it back, one table row per field.
//
// Other records are read and written through SX_LoadEData and SX_SaveEData themselves (size 12,
// version 0x19500000, keys {owner or 65534, index}); each other record is read once per call
// however many fields it feeds.
//
// An other record that fails to load: the scratch record is cleared before every load, so
// a record the host cannot supply reads as six zero words. A table load gives its fields the
// values of zero words (0, or 1 for an inverted flag) and still succeeds; a table save whose
// fields differ from those zero words writes the record back (its unmapped words as zeros), so
// no change is dropped while the save reports success.
//
// Thread: host's main thread; the done marks of a table make it usable by one call at a time.
// Re-entry through the inner loads and saves is safe: "ot" tags never reach a table.
#pragma once

#include <cstdint>

#include "LegacyPrefTables.h"

// Table load. Returns 0 when `size` is null. Otherwise a size query (null `buffer`) sets
// *size to the table's record size and returns 1 without calling the host. A capacity (*size
// on entry) below the record size returns 0 with *size, the buffer and the host untouched.
// Otherwise fills every field of the record, sets *size to the record size and returns 1.
short LoadPrefTable(tPrefMapTable& table, void* buffer, uint32_t* size);

// Table save. Returns 0, storing nothing, when `buffer` is null or `size` is below the table's
// record size. Otherwise writes back each other record one of whose fields differs from what
// the host holds or could not supply (records whose fields all match are not written) and
// returns 1.
short SavePrefTable(tPrefMapTable& table, const void* buffer, uint32_t size);
