// The score as the reference host holds it: staves × measures × layers of entries, in the
// engine's own units (TDU, diatonic pitches, tuplet detail records). MusicXML import fills it,
// the engine document is built from it and read back into it, and export compares it with
// what was imported.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace scribo::musicxml {

constexpr int kLayerCount = 4;

// A note the way the engine keeps it: diatonic step from middle C, alteration in semitones, and
// whether a tie leaves it for the same pitch in the next entry or reaches it from the previous.
struct Pitch {
  int16_t step = 0;
  int16_t alteration = 0;
  bool tieStart = false;
  bool tieEnd = false;
  friend bool operator==(const Pitch&, const Pitch&) = default;
};

// The entry's place in a beam, as the engine's rebeam leaves it (first beam level only; the
// inner levels follow from the notated durations).
enum class Beam : uint8_t { None, Start, Continue, End };

// The tuplet detail record's four fields: tupletNumber notes of tupletUnit in the time of
// referenceNumber notes of referenceUnit (units in TDU).
struct TupletRatio {
  int16_t tupletNumber = 0;
  int16_t tupletUnit = 0;
  int16_t referenceNumber = 0;
  int16_t referenceUnit = 0;
  friend bool operator==(const TupletRatio&, const TupletRatio&) = default;
};

struct Entry {
  uint32_t entryNumber = 0;         // the engine's identifier; 0 before the engine has stored it
  int32_t position = 0;             // TDU from the start of the measure
  int16_t duration = 0;             // notated TDU
  int32_t actualDuration = 0;       // elapsed TDU, truncated inside tuplets
  bool isNote = false;              // false: a rest
  std::vector<Pitch> pitches;       // the chord's notes, lowest first as in the source
  std::vector<TupletRatio> tuplets; // the tuplets this entry begins, outermost first
  Beam beam = Beam::None;
  int32_t source = -1; // index of the source note group; -1: made by an edit
};

// The entries of one staff, measure and layer, in time order.
struct Frame {
  std::vector<Entry> entries;
};

struct StaffInfo {
  std::string name;    // the part's name
  int part = 0;        // index of the part in the score
  int staffInPart = 1; // 1-based staff number within a multi-staff part
  int stavesInPart = 1;
};

struct MeasureInfo {
  std::string number; // the measure's own number attribute
  int keyFifths = 0;  // sharps (positive) or flats (negative)
  bool minor = false;
  int beats = 4; // time signature; a compound numerator like 3+2 is summed
  int beatType = 4;
  int32_t length = 4096;     // TDU the time signature gives
  int32_t contentLength = 0; // TDU the music actually fills (shorter in a pickup)
};

struct Score {
  std::vector<StaffInfo> staves;
  std::vector<MeasureInfo> measures;
  std::vector<Frame> frames; // staff-major, then measure, then layer

  Frame& At(int staff, int measure, int layer) { return frames[Index(staff, measure, layer)]; }
  const Frame& At(int staff, int measure, int layer) const {
    return frames[Index(staff, measure, layer)];
  }
  void Resize() { frames.assign(staves.size() * measures.size() * kLayerCount, Frame{}); }

private:
  size_t Index(int staff, int measure, int layer) const {
    return (static_cast<size_t>(staff) * measures.size() + measure) * kLayerCount + layer;
  }
};

} // namespace scribo::musicxml
