// The state of the utilities' test host: the records, frames, slots, progress display,
// selection and keyboard it serves, and a log of what the SDK asked of it. A plain record, so
// that the test (plug-in side) and the test host (its own image) can share it by pointer.
#pragma once

#include <cstdint>

#include "EREGION.h"

namespace utiltest {

constexpr int kMaxRecords = 64;
constexpr int kMaxRecordBytes = 512;
constexpr int kMaxLogged = 64;
constexpr int kMaxLayers = 8;
constexpr int kMaxEntries = 8;

struct Record {
  uint32_t tag;
  uint16_t keys[2]; // compared as far as the tag uses keys ("SDNG" two, "pfgp" none, else one)
  uint32_t size;
  uint8_t data[kMaxRecordBytes];
};

struct LoadCall {
  uint32_t tag;
  uint16_t keys[3]; // the key list as far as the tag's list reaches, terminator included
  bool withBuffer;
  uint32_t capacity; // *size on entry
  uint32_t version;
};

struct SaveCall {
  uint32_t tag;
  uint16_t keys[3];
  uint32_t size;
  uint32_t version;
};

struct Layer {
  bool present;   // a frame can be loaded
  int entryCount; // entries in the frame
  uint32_t flags[kMaxEntries];
};

struct State {
  Record records[kMaxRecords];
  int recordCount;
  // Raw texts: report this size instead of the stored one when the flag is set.
  bool overrideRawTextSize;
  uint32_t rawTextSize;
  bool failBufferedLoads; // every load into a buffer fails
  LoadCall loads[kMaxLogged];
  int loadCount;
  SaveCall saves[kMaxLogged];
  int saveCount;
  uint8_t staffSpecSelector[12]; // bytes 102..113 of the last staff-spec buffer, as it arrived

  int maxLayers; // 0: SX_GetMaxLayers answers 0
  Layer layers[kMaxLayers];
  int framesLoaded, framesFreed;
  uint32_t lastFrameSource; // as it arrived on the wire

  int slotsInUse;       // SX_SlotToInst answers non-zero for slots 1..slotsInUse
  uint32_t lastSlotSet; // as it arrived on the wire
  int slotQueries;

  bool refuseMassEdit;
  int massEditStarts;
  uint32_t massEditTotal;
  int progressCount;
  int16_t progress[kMaxLogged];
  int massEditEnds;
  int16_t massEditEndStatus;

  EREGION intoSecondArgument; // what SX_GetCurERegions writes into its second argument
  EREGION intoThirdArgument;  // ... and into its third
  int regionQueries;
  int16_t regionResult;

  uint64_t modifierFlags;
  uint8_t keyMap[16];
  int keyMapReads;
};

} // namespace utiltest

// Exported by the test host: its state, for the test to set up and inspect.
using UtilTestHostStateFn = utiltest::State* (*)();
