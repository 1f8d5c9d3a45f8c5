#include "UnevenSplitTuplet.h"

#include <cstring>

#include "EDTTuplet.h"
#include "HostFunctions.h"

namespace {
constexpr int kLargestTupletUnit = 8192; // a breve

// The smallest power of two greater than `quotient`, at most a breve; 1 for a quotient below 1.
int16_t TupletUnitFor(int quotient) {
  int unit = 1;
  while (unit < kLargestTupletUnit && unit <= quotient)
    unit *= 2;
  return static_cast<int16_t>(unit);
}

} // namespace

void MakeUnevenSplitTuplet(EXENTRY* entry, int parts) {
  // The preferences are read for every tuplet: the user may change them between two splits.
  EDTTuplet prefs{};
  uint16_t prefsKey[1] = {0};
  uint32_t size = sizeof prefs;
  if (SX_LoadEData(kTupletPrefsTag, prefsKey, &prefs, &size, kScriboHostVersion) == 0 ||
      size != sizeof prefs)
    return;

  const int16_t duration = entry->duration;
  const int16_t unit = TupletUnitFor(duration / parts);

  EDTTuplet tuplet = prefs;
  tuplet.tupletNumber = static_cast<int16_t>(parts);
  tuplet.tupletUnit = unit;
  tuplet.referenceNumber = static_cast<int16_t>(duration / unit);
  tuplet.referenceUnit = unit;

  const EDTTupletKey key{entry->entryNumber, kNextFreeDetailIndex};
  uint16_t keyWords[3];
  static_assert(sizeof keyWords == sizeof key);
  std::memcpy(keyWords, &key, sizeof key);
  if (SX_CreateEData(kTupletDetailTag, keyWords, &tuplet, sizeof tuplet, kScriboHostVersion) == 0)
    return;

  // The pass divides this by `parts`, so every note of the run is notated as `unit`.
  entry->duration = static_cast<int16_t>(unit * parts);
  entry->flags = entry->flags | kEntryTupletStart;
}
