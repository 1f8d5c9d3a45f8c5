// The menu record that ScriboExtensionEnumerate_UTF16 fills for the host.
//
// Host memory with a fixed layout: three UTF-16 texts of 128 code units each (terminator
// included), then the 32-bit value 1. Copy values in and out; never bind a pointer or reference
// to one of its fields.
#pragma once

#include <cstddef>
#include <cstdint>

constexpr int kMenuTextUnits = 128; // UTF-16 code units per text, terminator included

#pragma pack(push, 2)
struct tExtensionMenuRecord {
  uint16_t text1[kMenuTextUnits]; // the menu item's first localised text
  uint16_t text2[kMenuTextUnits]; // its second
  uint16_t text3[kMenuTextUnits]; // its third
  uint32_t itemValue;             // always 1
};
#pragma pack(pop)

static_assert(sizeof(tExtensionMenuRecord) == 772);
static_assert(offsetof(tExtensionMenuRecord, text1) == 0);
static_assert(offsetof(tExtensionMenuRecord, text2) == 256);
static_assert(offsetof(tExtensionMenuRecord, text3) == 512);
static_assert(offsetof(tExtensionMenuRecord, itemValue) == 768);

constexpr uint32_t kMenuItemValue = 1;
