// The host's text blocks and the raw texts they refer to.
//
// Shared with the host bit for bit: little-endian, packed on 2-byte boundaries. Records only:
// the reference engine includes this header to store them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "RecordTags.h"

constexpr uint32_t kTagTextBlock = FourCharTag("SOTX"); // keys {block, 0}
// A raw text: the block's characters as UTF-16 units without a terminator, keys {text, 0}; its
// size in bytes varies and is reported by a load without a buffer.
constexpr uint32_t kTagRawText = FourCharTag("txbl");
#pragma pack(push, 2)

// Text block, 30 bytes.
struct EDTTextBlock25_4 {
  int16_t rawText; // number of the raw text ("txbl") that holds the block's characters
  uint8_t hostData2[28];
};

#pragma pack(pop)

static_assert(sizeof(EDTTextBlock25_4) == 30);
static_assert(offsetof(EDTTextBlock25_4, rawText) == 0);
static_assert(offsetof(EDTTextBlock25_4, hostData2) == 2);
