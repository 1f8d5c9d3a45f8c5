// Feeds arbitrary texts to SXUtilParsePitch. A pitch it accepts must be written back to a text
// that reads as the same pitch; a refused text must leave the output alone.
#include <cstdlib>
#include <cstring>
#include <string>

#include "FuzzPitchMode.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1)
    return 0;
  const bool names = SetFuzzPitchMode(data[0]);
  std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
  tDiaPitch pitch{-999, -999};
  const short result = SXUtilParsePitch(text.data(), &pitch);
  if (result != 0) {
    if (result != (names ? kSXUtilBadPitchName : kSXUtilBadMidiNote) || pitch.step != -999)
      std::abort();
    return 0;
  }
  if (pitch.step < kLowestNameStep - 7 || pitch.step > kHighestNameStep || pitch.alteration < -1 ||
      pitch.alteration > 1)
    std::abort();
  char written[32];
  SXUtilFormatPitch(pitch, written, sizeof written);
  tDiaPitch again{};
  if (SXUtilParsePitch(written, &again) != 0 || again.step != pitch.step ||
      again.alteration != pitch.alteration)
    std::abort();
  return 0;
}
