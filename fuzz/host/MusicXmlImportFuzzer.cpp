// Arbitrary bytes as a MusicXML file: import must either give a score or throw ScoreError (or
// the overflow and domain errors of exact arithmetic); export of what was imported, unchanged
// and with its first note split in two the way the subdivision command splits, must hold too.
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "MusicXmlExport.h"
#include "MusicXmlImport.h"
#include "ScoreError.h"
#include "ScoreFile.h"

using namespace scribo::musicxml;

namespace {

void SplitFirstNote(Score& score) {
  for (auto& frame : score.frames) {
    for (size_t i = 0; i < frame.entries.size(); ++i) {
      Entry first = frame.entries[i];
      if (!first.isNote || first.duration < 2)
        continue;
      first.duration = static_cast<int16_t>(first.duration / 2);
      first.actualDuration /= 2;
      Entry copy = first;
      copy.source = -1;
      copy.tuplets.clear();
      copy.position += first.actualDuration;
      frame.entries[i] = first;
      frame.entries.insert(frame.entries.begin() + static_cast<long>(i) + 1, copy);
      return;
    }
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view xml(reinterpret_cast<const char*>(data), size);
  try {
    ImportedScore imported = ImportMusicXml(xml, "fuzz");
    ApplyScore(imported.source, imported.score);
    SerializeScore(imported.source);
    ImportedScore again = ImportMusicXml(xml, "fuzz");
    SplitFirstNote(again.score);
    ApplyScore(again.source, again.score);
    SerializeScore(again.source);
  } catch (const ScoreError&) {
  } catch (const std::overflow_error&) {
  } catch (const std::domain_error&) {
  }
  return 0;
}
