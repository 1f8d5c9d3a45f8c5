// The host's selection region. Shared with the host: packed on 2-byte boundaries, little-endian.
#pragma once

#include <cstddef>
#include <cstdint>

#pragma pack(push, 2)
struct EREGION {
  uint16_t frameSource;  // passed unchanged as the first argument of SX_LoadTGF
  int16_t startStaff;    // first staff, inclusive
  int16_t startMeasure;  // first measure, inclusive
  int32_t startPosition; // TDU from the start of startMeasure where the selection begins
  uint8_t reserved[2];   // host data
  int16_t endStaff;      // last staff, inclusive
  int16_t endMeasure;    // last measure, inclusive
  int32_t endPosition;   // TDU from the start of endMeasure where the selection ends, inclusive
};
#pragma pack(pop)

static_assert(sizeof(EREGION) == 20);
static_assert(offsetof(EREGION, frameSource) == 0);
static_assert(offsetof(EREGION, startStaff) == 2);
static_assert(offsetof(EREGION, startMeasure) == 4);
static_assert(offsetof(EREGION, startPosition) == 6);
static_assert(offsetof(EREGION, reserved) == 10);
static_assert(offsetof(EREGION, endStaff) == 12);
static_assert(offsetof(EREGION, endMeasure) == 14);
static_assert(offsetof(EREGION, endPosition) == 16);
