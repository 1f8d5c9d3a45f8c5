#include "EngineBridge.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "Records.h"
#include "SelectionRange.h"
#include "TextCodec.h"

namespace scribo::host {

using musicxml::Entry;
using musicxml::Frame;
using musicxml::kLayerCount;
using musicxml::Score;

engine::TimeSignature EngineTimeSignature(int beats, int beatType, int32_t measureLength) {
  if (beats <= 0 || beatType <= 0) {
    // No time signature: one beat as long as the music.
    int32_t length = std::clamp<int32_t>(measureLength, 1, 32767);
    return {1, static_cast<int16_t>(length)};
  }
  int32_t beatValue = 4096 / beatType;
  if (beatType >= 8 && beats > 3 && beats % 3 == 0)
    return {static_cast<int16_t>(beats / 3), static_cast<int16_t>(beatValue * 3)};
  return {static_cast<int16_t>(std::min(beats, 32767)),
          static_cast<int16_t>(std::max<int32_t>(beatValue, 1))};
}

int16_t EngineKeySignature(int fifths, bool minor) {
  return static_cast<int16_t>((static_cast<uint16_t>(minor ? 1 : 0) << 8) |
                              static_cast<uint8_t>(static_cast<int8_t>(fifths)));
}

void EngineBridge::Load(Score& score, engine::Document& document, const MeasureProgress& progress) {
  document.Clear();
  sourceOf_.clear();
  for (const auto& staff : score.staves)
    if (document.AddStaff(Utf8ToUtf16(staff.name)) < 0)
      throw std::runtime_error("the engine holds no more than 32767 staves");
  for (const auto& measure : score.measures) {
    engine::TimeSignature time =
        EngineTimeSignature(measure.beats, measure.beatType, measure.contentLength);
    if (document.AddMeasure(EngineKeySignature(measure.keyFifths, measure.minor), time) < 0)
      throw std::runtime_error("the engine holds no more than 32767 measures");
  }

  // Tuplet detail records start as copies of the document's tuplet preferences.
  const uint16_t prefKey[1] = {0};
  auto prefs = document.Record(kTupletPrefsTag, prefKey);
  EDTTuplet templateRecord =
      engine::LayoutOf<EDTTuplet>(prefs ? &*prefs : nullptr).value_or(EDTTuplet{});

  int staves = static_cast<int>(score.staves.size());
  int measures = static_cast<int>(score.measures.size());
  for (int m = 0; m < measures; ++m) {
    for (int s = 0; s < staves; ++s) {
      for (int l = 0; l < kLayerCount; ++l) {
        Frame& frame = score.At(s, m, l);
        engine::FrameAddress address{static_cast<int16_t>(s + 1), static_cast<int16_t>(m + 1),
                                     static_cast<int16_t>(l)};
        for (Entry& e : frame.entries) {
          engine::EntrySpec spec;
          spec.duration = e.duration;
          spec.actualDuration = e.actualDuration;
          spec.position = e.position;
          if (!e.tuplets.empty())
            spec.flags |= kEntryTupletStart;
          for (const auto& p : e.pitches) {
            uint32_t flags =
                (p.tieStart ? engine::kNoteTieStart : 0) | (p.tieEnd ? engine::kNoteTieEnd : 0);
            spec.notes.push_back({p.step, p.alteration, flags});
          }
          if (spec.notes.size() > kMaxNotesPerEntry)
            spec.notes.resize(kMaxNotesPerEntry);
          uint32_t number = document.AddEntry(address, spec);
          if (number == 0)
            throw std::runtime_error("the engine refused an entry of staff " +
                                     std::to_string(s + 1) + ", measure " +
                                     MeasureNumber(score, m));
          e.entryNumber = number;
          sourceOf_[number] = e.source;
          for (size_t k = 0; k < e.tuplets.size(); ++k) {
            const musicxml::TupletRatio& t = e.tuplets[k];
            EDTTuplet record = templateRecord;
            record.tupletNumber = t.tupletNumber;
            record.tupletUnit = t.tupletUnit;
            record.referenceNumber = t.referenceNumber;
            record.referenceUnit = t.referenceUnit;
            document.PutEntryDetail(kTupletDetailTag, number, static_cast<uint16_t>(k),
                                    engine::BytesOf(record));
          }
        }
      }
    }
    if (progress)
      progress(m + 1, measures);
  }
}

Score EngineBridge::Read(const Score& shape, const engine::Document& document,
                         const MeasureProgress& progress) const {
  Score score;
  score.staves = shape.staves;
  score.measures = shape.measures;
  score.Resize();
  int staves = static_cast<int>(score.staves.size());
  int measures = static_cast<int>(score.measures.size());
  for (int m = 0; m < measures; ++m) {
    for (int s = 0; s < staves; ++s) {
      for (int l = 0; l < kLayerCount; ++l) {
        engine::FrameAddress address{static_cast<int16_t>(s + 1), static_cast<int16_t>(m + 1),
                                     static_cast<int16_t>(l)};
        std::span<const EXENTRY> entries = document.Entries(address);
        if (entries.empty())
          continue;
        std::span<const engine::BeamRole> beams = document.Beams(address);
        Frame& frame = score.At(s, m, l);
        frame.entries.reserve(entries.size());
        for (size_t i = 0; i < entries.size(); ++i) {
          const EXENTRY& x = entries[i];
          Entry e;
          e.entryNumber = x.entryNumber;
          e.position = x.position;
          e.duration = x.duration;
          e.actualDuration = x.actualDuration;
          uint32_t flags = x.flags;
          e.isNote = (flags & kEntryIsNote) != 0;
          int16_t noteCount = x.noteCount; // copied out: never bind to a packed member
          int16_t count = std::clamp<int16_t>(noteCount, 0, kMaxNotesPerEntry);
          for (int16_t k = 0; e.isNote && k < count; ++k) {
            const EXNOTE& note = x.notes[k];
            uint32_t noteFlags = note.noteFlags;
            if (noteFlags & kNoteRestPlaceholder)
              continue;
            e.pitches.push_back({NotePitchStep(note), NotePitchAlteration(note),
                                 (noteFlags & engine::kNoteTieStart) != 0,
                                 (noteFlags & engine::kNoteTieEnd) != 0});
          }
          if (flags & kEntryTupletStart) {
            // Every tuplet record of the entry in index order: a split inside an existing
            // tuplet adds one after the source's own.
            for (const auto& detail : document.EntryDetails(e.entryNumber)) {
              auto record = engine::LayoutOf<EDTTuplet>(detail.bytes);
              if (detail.tag == kTupletDetailTag && record)
                e.tuplets.push_back({record->tupletNumber, record->tupletUnit,
                                     record->referenceNumber, record->referenceUnit});
            }
          }
          if (i < beams.size()) {
            switch (beams[i]) {
            case engine::BeamRole::Start:
              e.beam = musicxml::Beam::Start;
              break;
            case engine::BeamRole::Continue:
              e.beam = musicxml::Beam::Continue;
              break;
            case engine::BeamRole::End:
              e.beam = musicxml::Beam::End;
              break;
            case engine::BeamRole::None:
              break;
            }
          }
          auto it = sourceOf_.find(e.entryNumber);
          e.source = it == sourceOf_.end() ? -1 : it->second;
          frame.entries.push_back(std::move(e));
        }
      }
    }
    if (progress)
      progress(m + 1, measures);
  }
  return score;
}

} // namespace scribo::host
