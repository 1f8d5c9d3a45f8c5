// Preference records that the host keeps as runs of consecutive other records: which run makes
// up which preference record.
#pragma once

#include <cstdint>

// One rule: preference records of `tag` are `count` other records of `otherTag` with keys
// {65534, first + i}. `numberLimit` 0 accepts every preference number; otherwise only numbers
// 1..numberLimit are accepted. With `firstFromNumber` the run starts at index number - 1,
// otherwise at index 0.
struct tPrefTagRule {
  uint32_t tag;
  uint32_t otherTag;
  int16_t count;
  uint16_t numberLimit;
  bool firstFromNumber;
};

constexpr int kPrefTagRuleCount = 18;

// The rule for `tag`, or null when the tag is not kept as a run of other records.
const tPrefTagRule* FindPrefTagRule(uint32_t tag);

// Sets all three outputs to 0, then:
//  - for a rule's tag with an accepted `number`: fills the outputs and returns true;
//  - for a rule's tag with a number outside its range: returns false (the caller fails without
//    calling the host); the range test reads number - 1 as unsigned 16-bit, so 0 and negative
//    numbers are outside every range;
//  - for any other tag: returns true with *otherTag 0 (no mapping applies).
// The three output pointers must not be null. Thread: any; no state.
bool mapPrefTag(uint32_t tag, int16_t number, uint32_t* otherTag, int16_t* count, int16_t* first);
