#include "MapPrefTag.h"

#include "RecordTags.h"

namespace {

constexpr uint16_t kAnyNumber = 0;

constexpr tPrefTagRule sPrefTagRules[] = {
    {FourCharTag("pfGD"), FourCharTag("ot79"), 1, kAnyNumber, false},
    {FourCharTag("pfGG"), FourCharTag("ot88"), 11, kAnyNumber, false},
    {FourCharTag("pfGb"), FourCharTag("ot98"), 1, 4, true},
    {FourCharTag("pfGd"), FourCharTag("ot80"), 1, kAnyNumber, false},
    {FourCharTag("pfGs"), FourCharTag("ot91"), 1, 1, false},
    {FourCharTag("pfMM"), FourCharTag("ot25"), 2, kAnyNumber, false},
    {FourCharTag("pfND"), FourCharTag("ot04"), 1, kAnyNumber, false},
    {FourCharTag("pfNd"), FourCharTag("ot66"), 1, kAnyNumber, false},
    // Page format 0 is the score's, assembled field by field from a table instead.
    {FourCharTag("pfPF"), FourCharTag("ot77"), 4, 1, false},
    {FourCharTag("pfSC"), FourCharTag("ot52"), 2, kAnyNumber, false},
    {FourCharTag("pfSN"), FourCharTag("ot40"), 1, 128, true},
    {FourCharTag("pfSP"), FourCharTag("ot94"), 3, kAnyNumber, false},
    {FourCharTag("pfSl"), FourCharTag("ot26"), 1, 15, true},
    {FourCharTag("pfTC"), FourCharTag("ot86"), 5, kAnyNumber, false},
    {FourCharTag("pfTI"), FourCharTag("ot84"), 4, kAnyNumber, false},
    {FourCharTag("pfTX"), FourCharTag("ot78"), 9, kAnyNumber, false},
    {FourCharTag("pfTp"), FourCharTag("ot85"), 4, kAnyNumber, false},
    {FourCharTag("pfTs"), FourCharTag("ot90"), 1, 9, true},
};
static_assert(sizeof(sPrefTagRules) / sizeof(sPrefTagRules[0]) == kPrefTagRuleCount);

constexpr bool RulesAreWellFormed() {
  for (int i = 0; i < kPrefTagRuleCount; ++i) {
    const tPrefTagRule& rule = sPrefTagRules[i];
    if (!SameTagFamily(rule.tag, FourCharTag("pfTP")) ||
        !SameTagFamily(rule.otherTag, FourCharTag("ot01")) || rule.count < 1)
      return false;
    // A run that starts at number - 1 is one record long; a fixed run needs no number.
    if (rule.firstFromNumber && (rule.count != 1 || rule.numberLimit == kAnyNumber))
      return false;
    for (int j = i + 1; j < kPrefTagRuleCount; ++j)
      if (sPrefTagRules[j].tag == rule.tag)
        return false;
  }
  return true;
}
static_assert(RulesAreWellFormed());

} // namespace

const tPrefTagRule* FindPrefTagRule(uint32_t tag) {
  for (const tPrefTagRule& rule : sPrefTagRules)
    if (rule.tag == tag)
      return &rule;
  return nullptr;
}

bool mapPrefTag(uint32_t tag, int16_t number, uint32_t* otherTag, int16_t* count, int16_t* first) {
  *otherTag = 0;
  *count = 0;
  *first = 0;
  const tPrefTagRule* rule = FindPrefTagRule(tag);
  if (!rule)
    return true;
  const uint16_t zeroBased = static_cast<uint16_t>(number - 1);
  if (rule->numberLimit != kAnyNumber && zeroBased >= rule->numberLimit)
    return false;
  *otherTag = rule->otherTag;
  *count = rule->count;
  *first = rule->firstFromNumber ? static_cast<int16_t>(zeroBased) : 0;
  return true;
}
