// String comparison: unit by unit, optionally ignoring case and comparing digit runs by value.
//
// Case folding covers the scripts whose capitals differ by a fixed offset (Basic Latin, Latin-1,
// Greek, Cyrillic) and the alternating pairs of Latin Extended-A: enough for the texts a plug-in
// compares (keys, names, menu texts). Other characters compare by their code units.
#include "CFObject.h"

namespace {

char16_t FoldCase(char16_t u) {
  if (u >= u'A' && u <= u'Z')
    return u + 0x20;
  if (u < 0xC0)
    return u;
  if ((u >= 0xC0 && u <= 0xDE && u != 0xD7) || (u >= 0x391 && u <= 0x3AB && u != 0x3A2) ||
      (u >= 0x410 && u <= 0x42F))
    return u + 0x20;
  if (u >= 0x400 && u <= 0x40F)
    return u + 0x50;
  // Latin Extended-A pairs capital/small on even/odd units, except where the run shifts.
  if (u == 0x130 || u == 0x131)
    return u; // the dotted and dotless i of Turkish have no plain pair
  if ((u >= 0x100 && u <= 0x137) || (u >= 0x14A && u <= 0x177))
    return u | 1;
  if ((u >= 0x139 && u <= 0x148) || (u >= 0x179 && u <= 0x17E))
    return (u & 1) ? u + 1 : u;
  if (u == 0x178)
    return 0xFF;
  return u;
}

bool IsDigit(char16_t u) {
  return u >= u'0' && u <= u'9';
}

int Sign(long long v) {
  return v < 0 ? -1 : (v > 0 ? 1 : 0);
}

// Compares the digit runs starting at a[i] and b[j] by value (leading zeros ignored), moving
// both indices past their runs. Returns -1, 0 or 1.
int CompareDigitRuns(const std::u16string& a, size_t& i, const std::u16string& b, size_t& j) {
  while (i < a.size() && a[i] == u'0' && i + 1 < a.size() && IsDigit(a[i + 1]))
    ++i;
  while (j < b.size() && b[j] == u'0' && j + 1 < b.size() && IsDigit(b[j + 1]))
    ++j;
  const size_t startA = i, startB = j;
  while (i < a.size() && IsDigit(a[i]))
    ++i;
  while (j < b.size() && IsDigit(b[j]))
    ++j;
  // Without leading zeros the longer run is the larger number; equal lengths compare digit-wise.
  if (i - startA != j - startB)
    return i - startA < j - startB ? -1 : 1;
  for (size_t k = 0; k < i - startA; ++k)
    if (a[startA + k] != b[startB + k])
      return a[startA + k] < b[startB + k] ? -1 : 1;
  return 0;
}

} // namespace

CFComparisonResult CFStringCompare(CFStringRef first, CFStringRef second,
                                   CFStringCompareFlags options) {
  const std::u16string& a = cfstandin::Units(first);
  const std::u16string& b = cfstandin::Units(second);
  const bool ignoreCase = options & kCFCompareCaseInsensitive;
  const bool numeric = options & kCFCompareNumerically;
  size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    if (numeric && IsDigit(a[i]) && IsDigit(b[j])) {
      if (int order = CompareDigitRuns(a, i, b, j))
        return static_cast<CFComparisonResult>(order);
      continue;
    }
    const char16_t x = ignoreCase ? FoldCase(a[i]) : a[i];
    const char16_t y = ignoreCase ? FoldCase(b[j]) : b[j];
    if (x != y)
      return x < y ? kCFCompareLessThan : kCFCompareGreaterThan;
    ++i;
    ++j;
  }
  // The text that ran out first is a prefix of the other and sorts first.
  return static_cast<CFComparisonResult>(
      Sign(static_cast<long long>(a.size() - i) - static_cast<long long>(b.size() - j)));
}
