// The SDK's diagnostic counters, exported as data by every plug-in bundle so that a host or a
// debugger can read them by name. Nothing in the SDK reads them back for decisions except
// ScriboEditDepth (the guard of SX_EndScriboEdit and SX_CancelScriboEdit) and
// CanAddNoteRecordToRests (read once by each CleanTGF run).
// Thread: host's main thread; plain integers, not atomic.
#pragma once

#include <cstdint>

#define SCRIBO_EXPORTED_DATA extern "C" __attribute__((visibility("default")))

// Frames loaded and not yet freed: +1 on every SX_LoadTGF call, -1 on every SX_FreeTGF call,
// whether or not the host has the function or succeeds. 0 at load.
SCRIBO_EXPORTED_DATA int32_t LoadedTGFCounter;

// While true, CleanTGF gives every entry without notes one placeholder note record. True at
// load; the SDK never changes it.
SCRIBO_EXPORTED_DATA bool CanAddNoteRecordToRests;

// Edits opened with SX_StartScriboEdit(_UTF16) and not yet ended or cancelled; never below 0.
SCRIBO_EXPORTED_DATA int32_t ScriboEditDepth;

// Mass edits opened with SX_StartMassEdit minus those closed with SX_EndMassEdit; it has no
// floor and may go below 0.
SCRIBO_EXPORTED_DATA int32_t MassEditDepth;

#undef SCRIBO_EXPORTED_DATA
