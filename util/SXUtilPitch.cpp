// Written pitches: their semitone values, and their texts under the process-wide formatting
// state.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "SXUtilPitch.h"
#include "SXUtilRecords.h"
#include "UtilModDiv.h"

namespace {

// The formatting state: MIDI numbers until SXUtilSetPitchFormatting says otherwise.
short sUsePitchNames = false;
short sMiddleCRef = 4; // octave number written for middle C

constexpr char kLetters[] = "CDEFGAB";
constexpr char kRangeSeparator = '/';
constexpr size_t kRangeSideBuffer = 32; // bytes of a side's working buffer, terminator included

// Appends to a caller's buffer of `capacity` bytes, keeping room for the terminator and
// dropping what does not fit.
class BoundedText {
public:
  BoundedText(char* out, short capacity)
      : out_(out), capacity_(out && capacity > 0 ? static_cast<size_t>(capacity) : 0) {
    if (capacity_)
      out_[0] = 0;
  }
  void Put(char c) {
    if (length_ + 1 < capacity_) {
      out_[length_++] = c;
      out_[length_] = 0;
    }
  }
  void Put(const char* text) {
    while (*text)
      Put(*text++);
  }

private:
  char* out_;
  size_t capacity_;
  size_t length_ = 0;
};

int DegreeOfLetter(char c) {
  if (c >= 'a' && c <= 'g')
    c = static_cast<char>(c - 'a' + 'A');
  const char* found = c ? std::strchr(kLetters, c) : nullptr;
  return found ? static_cast<int>(found - kLetters) : -1;
}

short ParseNoteName(const char* text, tDiaPitch* out) {
  if (!text[0] || !text[1])
    return kSXUtilBadPitchName;
  const int degree = DegreeOfLetter(text[0]);
  if (degree < 0)
    return kSXUtilBadPitchName;
  int alteration = 0;
  const char* digit = text + 1;
  if (*digit == '#' || *digit == 'b') {
    alteration = *digit == '#' ? 1 : -1;
    ++digit;
  }
  if (*digit < '0' || *digit > '9')
    return kSXUtilBadPitchName;
  const int step = degree + 7 * ((*digit - '0') - sMiddleCRef);
  if (step > kHighestNameStep || step < kLowestNameStep)
    return kSXUtilBadPitchName;
  if ((step == kHighestNameStep && alteration > 0) || (step == kLowestNameStep && alteration < 0))
    return kSXUtilBadPitchName;
  out->step = static_cast<int16_t>(step);
  out->alteration = static_cast<int16_t>(alteration);
  return 0;
}

short ParseMidiNumber(const char* text, tDiaPitch* out) {
  // atoi's reading (leading blanks, a sign, digits; no digits reads as 0), without its undefined
  // overflow: numbers beyond the range of long come back clamped and are refused like any other
  // number above 127.
  const long value = std::strtol(text, nullptr, 10);
  if (value < 0 || value > 127)
    return kSXUtilBadMidiNote;
  *out = SXUtilChromToAbsTCD(static_cast<short>(value - 60));
  return 0;
}

} // namespace

short SXUtilSetPitchFormatting(short mode) {
  if (mode == kPitchFormatFromDocument) {
    EDTGeneralPrefs2008 prefs{};
    if (!SXUtilGetGeneralPrefs(&prefs))
      return 1;
    if (prefs.pitchNames == 0) {
      sUsePitchNames = false;
      return 0;
    }
    short semitones, octaves;
    UtilModDiv(prefs.octaveShift, 12, &semitones, &octaves);
    if (semitones != 0)
      return 1;
    sUsePitchNames = true;
    sMiddleCRef = static_cast<short>(4 + octaves);
    return 0;
  }
  if (mode == kPitchFormatMidi) {
    sUsePitchNames = false;
    return 0;
  }
  sUsePitchNames = true;
  sMiddleCRef = mode;
  return 0;
}

short SXUtilParsePitch(char* text, tDiaPitch* out) {
  if (!text)
    return kSXUtilBadPitchName;
  return sUsePitchNames ? ParseNoteName(text, out) : ParseMidiNumber(text, out);
}

void SXUtilFormatPitch(tDiaPitch pitch, char* out, short outSize) {
  BoundedText text(out, outSize);
  short degree, octave;
  UtilModDiv(pitch.step, 7, &degree, &octave);
  char number[16];
  if (sUsePitchNames) {
    text.Put(kLetters[degree]);
    for (int i = 0; i < pitch.alteration; ++i)
      text.Put('#');
    for (int i = 0; i > pitch.alteration; --i)
      text.Put('b');
    std::snprintf(number, sizeof number, "%d", octave + sMiddleCRef);
  } else {
    std::snprintf(number, sizeof number, "%d",
                  kMajorToChromatic[degree] + 12 * octave + pitch.alteration + 60);
  }
  text.Put(number);
}

short SXUtilParseRange(char* text, tDiaRange* out) {
  if (!out)
    return kSXUtilNoRangeSep;
  out->low = {kLowestNameStep, 0};
  out->high = {kHighestNameStep, 0};
  if (!text)
    return kSXUtilNoRangeSep;

  // A leading "/" is never the separator unless the text begins with it.
  const size_t length = std::strlen(text);
  size_t separator = 0;
  if (length > 0 && text[0] != kRangeSeparator) {
    const char* found = std::strchr(text + 1, kRangeSeparator);
    separator = found ? static_cast<size_t>(found - text) : length;
  }
  if (separator == length)
    return kSXUtilNoRangeSep;

  const char* sides[2] = {text, text + separator + 1};
  const size_t sideLengths[2] = {separator, length - separator - 1};
  tDiaPitch pitches[2];
  for (int i = 0; i < 2; ++i) {
    if (sideLengths[i] >= kRangeSideBuffer)
      return kSXUtilRangeSideTooLong;
    char side[kRangeSideBuffer];
    std::memcpy(side, sides[i], sideLengths[i]);
    side[sideLengths[i]] = 0;
    if (short result = SXUtilParsePitch(side, &pitches[i]))
      return result;
  }
  if (SXUtilAbsTCDToChrom(pitches[0]) > SXUtilAbsTCDToChrom(pitches[1]))
    std::swap(pitches[0], pitches[1]);
  out->low = pitches[0];
  out->high = pitches[1];
  return 0;
}

char* SXUtilFormatRange(const tDiaRange& range, char* out, short outSize) {
  BoundedText text(out, outSize);
  char side[kRangeSideBuffer];
  SXUtilFormatPitch(range.low, side, sizeof side);
  text.Put(side);
  text.Put(kRangeSeparator);
  SXUtilFormatPitch(range.high, side, sizeof side);
  text.Put(side);
  return out;
}

const int8_t kMajorToChromatic[7] = {0, 2, 4, 5, 7, 9, 11};

const tDiaPitch kChromaticToMajor[12] = {
    {0, 0}, {0, 1}, {1, 0}, {1, 1}, {2, 0}, {3, 0}, {3, 1}, {4, 0}, {4, 1}, {5, 0}, {6, -1}, {6, 0},
};

tDiaPitch SXUtilChromToAbsTCD(short chromatic) {
  short pitchClass, octave;
  UtilModDiv(chromatic, 12, &pitchClass, &octave);
  const tDiaPitch written = kChromaticToMajor[pitchClass];
  return {static_cast<int16_t>(7 * octave + written.step), written.alteration};
}

short SXUtilAbsTCDToChrom(const tDiaPitch& pitch) {
  short degree, octave;
  UtilModDiv(pitch.step, 7, &degree, &octave);
  return static_cast<short>(kMajorToChromatic[degree] + 12 * octave + pitch.alteration);
}
