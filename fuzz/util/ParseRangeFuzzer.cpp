// Feeds arbitrary texts to SXUtilParseRange. An accepted range must be in order; a refused one
// must leave the full range behind.
#include <cstdlib>
#include <string>

#include "FuzzPitchMode.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1)
    return 0;
  SetFuzzPitchMode(data[0]);
  std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
  tDiaRange range{{-999, -999}, {-999, -999}};
  const short result = SXUtilParseRange(text.data(), &range);
  if (result != 0) {
    if (range.low.step != kLowestNameStep || range.low.alteration != 0 ||
        range.high.step != kHighestNameStep || range.high.alteration != 0)
      std::abort();
    return 0;
  }
  if (SXUtilAbsTCDToChrom(range.low) > SXUtilAbsTCDToChrom(range.high))
    std::abort();
  char written[80];
  SXUtilFormatRange(range, written, sizeof written);
  tDiaRange again{};
  if (SXUtilParseRange(written, &again) != 0 ||
      SXUtilAbsTCDToChrom(again.low) != SXUtilAbsTCDToChrom(range.low) ||
      SXUtilAbsTCDToChrom(again.high) != SXUtilAbsTCDToChrom(range.high))
    std::abort();
  return 0;
}
