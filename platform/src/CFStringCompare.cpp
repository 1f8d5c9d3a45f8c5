// String comparison: unit by unit, as unsigned 16-bit values.
#include "CFObject.h"

CFComparisonResult CFStringCompare(CFStringRef first, CFStringRef second, CFStringCompareFlags) {
  const int order = cfstandin::Units(first).compare(cfstandin::Units(second));
  return order < 0 ? kCFCompareLessThan : (order > 0 ? kCFCompareGreaterThan : kCFCompareEqualTo);
}
