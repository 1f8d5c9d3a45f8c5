// MusicXML (score-partwise 3.1 and 4.0) to the reference host's score: parts and their staves,
// measures with key and time, voices as layers, notes, chords and rests in TDU, tuplets as
// tuplet detail records. Throws ScoreError with a message naming the part and measure.
#pragma once

#include <string_view>

#include "MusicXmlSource.h"
#include "ScoreModel.h"

namespace scribo::musicxml {

struct ImportedScore {
  MusicXmlSource source;
  Score score;
};

// Parses `xml` (declaration and DOCTYPE kept) and imports it; `name` names the input in
// messages.
ImportedScore ImportMusicXml(std::string_view xml, std::string_view name);

// Imports a document that is already parsed into `source.doc`.
Score ImportDocument(MusicXmlSource& source, std::string_view name);

} // namespace scribo::musicxml
