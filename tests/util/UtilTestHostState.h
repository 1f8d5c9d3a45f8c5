// The state of the utilities' test host, for what the reference engine cannot show: exactly
// what was asked of the host, sizes the host misreports, a refused progress display and how
// often the keyboard was read. A plain record shared by pointer between the test (plug-in side)
// and the test host (its own image).
#pragma once

#include <cstdint>

#include "EREGION.h"

namespace utiltest {

constexpr int kMaxRecords = 16;
constexpr int kMaxLogged = 16;

struct Record { // found by tag and first key
  uint32_t tag;
  uint16_t key;
  uint32_t size;
  uint8_t data[256];
};

struct LoadCall {
  uint32_t tag;
  uint16_t keys[3]; // as far as the tag's list reaches, its 0 included; 0xEEEE beyond
  bool withBuffer;
  uint32_t capacity; // *size on entry
  uint32_t version;
};

struct State {
  Record records[kMaxRecords];
  int recordCount;
  bool misreportSize; // report `reportedSize` for every record
  uint32_t reportedSize;
  bool failBufferedLoads; // every load into a buffer fails
  LoadCall loads[kMaxLogged];
  int loadCount;
  uint8_t staffSpecTail[12]; // bytes 102..113 of the last staff-spec buffer, as it arrived

  bool refuseMassEdit;
  int massEditStarts;

  EREGION region; // what SX_GetCurERegions writes into its second and third arguments
  int regionQueries;

  uint64_t modifierFlags;
  uint8_t keyMap[16];
  int keyMapReads;
};

} // namespace utiltest

// Exported by the test host: its state, for the test to set up and inspect.
using UtilTestHostStateFn = utiltest::State* (*)();
