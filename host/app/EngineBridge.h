// Moving a score between the MusicXML side and the reference engine's document: staves with
// their names, measures with key and time signatures, entries with pitches and ties, tuplet
// detail records. Reading back links every entry to its source notes by entry number, so that
// export can tell what the command changed.
#pragma once

#include <cstdint>
#include <functional>
#include <unordered_map>

#include "Document.h"
#include "ScoreModel.h"

namespace scribo::host {

// Called after each measure is loaded or read back: (measures done, measures in all).
using MeasureProgress = std::function<void(int done, int total)>;

class EngineBridge {
public:
  // Clears `document` and fills it with `score`. Gives every entry of `score` its entry number.
  // Throws std::runtime_error when the engine refuses a staff, measure or entry.
  void Load(musicxml::Score& score, engine::Document& document,
            const MeasureProgress& progress = {});

  // The document as a score with the staves and measures of `shape`; entries that were loaded
  // keep their source link, entries the command made have none.
  musicxml::Score Read(const musicxml::Score& shape, const engine::Document& document,
                       const MeasureProgress& progress = {}) const;

private:
  std::unordered_map<uint32_t, int32_t> sourceOf_; // entry number -> source group
};

// The engine's time signature for beats/beatType: compound meters (6/8, 9/8, 12/16) count
// dotted beats, others plain ones (3/4: 3 of 1024; 6/8: 2 of 1536).
engine::TimeSignature EngineTimeSignature(int beats, int beatType, int32_t measureLength);

// The measure spec's key-signature word: sharps (+) or flats (-) in the low byte, mode (1:
// minor) in the high byte.
int16_t EngineKeySignature(int fifths, bool minor);

} // namespace scribo::host
