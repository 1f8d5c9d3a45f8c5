#include "MusicXmlExport.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "NoteElements.h"
#include "NoteValues.h"
#include "ScoreError.h"
#include "XmlNumbers.h"

namespace scribo::musicxml {

namespace {

// One new note of a run and how it is written.
struct Piece {
  const Entry* entry = nullptr;
  Rational ticks;        // exact duration in the source group's divisions (before scaling)
  ShownValue shown;      // type and dots
  Rational modification; // normal/actual of its time-modification; 1: none
  std::vector<pugi::xml_node> notes;
};

// A bracket the edit created: pieces first..last, `record` its ratio.
struct NewTuplet {
  size_t first = 0;
  size_t last = 0;
  TupletRatio record;
};

// A source group whose entry changed, and the entries that now take its place.
struct Segment {
  int group = -1;
  std::vector<const Entry*> entries;
  size_t frameIndex = 0; // index of entries[0] in its frame
  std::vector<Piece> pieces;
  std::vector<NewTuplet> tuplets;
};

struct FrameEdit {
  int staff = 0;
  int measure = 0;
  int layer = 0;
  const Frame* frame = nullptr;
  const Frame* nextFrame = nullptr; // same staff and layer, next measure (ties across the bar)
  std::vector<Segment> segments;
  std::vector<int> unchanged; // groups kept as they were
  std::vector<int> removed;   // groups no entry refers to any more
};

struct MeasureEdit {
  std::vector<FrameEdit> frames;
  int64_t scale = 1; // factor applied to the measure's divisions and durations
};

bool SameEntry(const Entry& a, const Entry& b) {
  return a.position == b.position && a.duration == b.duration &&
         a.actualDuration == b.actualDuration && a.isNote == b.isNote && a.pitches == b.pitches &&
         a.tuplets == b.tuplets;
}

std::string Where(const MusicXmlSource& source, const SourceGroup& group) {
  const PartSource& part = source.parts[group.part];
  return "measure " + std::string(part.measures[group.measure].attribute("number").as_string("?")) +
         " of part " + part.id;
}

int FlagCount(int32_t tdu) {
  ShownValue shown = ShowNotated(tdu);
  int32_t base = NoteTypeTDU(shown.type);
  int flags = 0;
  for (int32_t v = base; v < kQuarterTDU && v > 0; v *= 2)
    ++flags;
  return flags;
}

// A bracket the edit made, starting at piece `first`: it covers the pieces whose notated
// durations fill tupletNumber x tupletUnit, and scales their time by its ratio.
void AddNewTuplet(Segment& segment, std::vector<Rational>& inner, size_t first,
                  const TupletRatio& t) {
  if (t.tupletNumber <= 0 || t.tupletUnit <= 0 || t.referenceNumber <= 0 || t.referenceUnit <= 0)
    return;
  Rational ratio(int64_t(t.referenceNumber) * t.referenceUnit,
                 int64_t(t.tupletNumber) * t.tupletUnit);
  int64_t span = int64_t(t.tupletNumber) * t.tupletUnit;
  int64_t covered = 0;
  size_t j = first;
  for (; j < segment.entries.size() && covered < span; ++j) {
    inner[j] = inner[j] * ratio;
    covered += segment.entries[j]->duration;
  }
  segment.tuplets.push_back({first, j - 1, t});
}

// Works out exact durations, note types and time-modifications for a run.
void PlanPieces(const SourceGroup& group, Segment& segment) {
  size_t n = segment.entries.size();
  std::vector<Rational> inner(n, Rational(1));
  for (size_t i = 0; i < n; ++i) {
    const Entry& e = *segment.entries[i];
    for (size_t k = 0; k < e.tuplets.size(); ++k) {
      // The source's own brackets are still written in the source notes.
      if (i == 0 && k < group.imported.tuplets.size() && group.imported.tuplets[k] == e.tuplets[k])
        continue;
      AddNewTuplet(segment, inner, i, e.tuplets[k]);
    }
  }

  Rational sum = 0;
  segment.pieces.resize(n);
  for (size_t i = 0; i < n; ++i) {
    Piece& piece = segment.pieces[i];
    piece.entry = segment.entries[i];
    piece.ticks =
        Rational(piece.entry->duration, kQuarterTDU) * group.ratio * inner[i] * group.divisions;
    sum += piece.ticks;
  }
  if (sum != group.ticks) {
    // The notated values do not fill the source's time (a run without a tuplet record holds
    // truncated durations): share the time out in proportion to the elapsed durations.
    int64_t total = 0;
    for (const Entry* e : segment.entries)
      total += std::max<int32_t>(e->actualDuration, 0);
    for (size_t i = 0; i < n; ++i) {
      int64_t part = total > 0 ? std::max<int32_t>(segment.entries[i]->actualDuration, 0) : 1;
      segment.pieces[i].ticks =
          group.ticks * Rational(part, total > 0 ? total : static_cast<int64_t>(n));
    }
  }
  for (Piece& piece : segment.pieces) {
    piece.shown = ShowNotated(piece.entry->duration);
    Rational quarters = piece.ticks / group.divisions;
    if (piece.shown.tdu > 0 && quarters > Rational(0))
      piece.modification = quarters / Rational(piece.shown.tdu, kQuarterTDU);
    else
      piece.modification = 1;
  }
}

// Attributes whose values are in divisions: a note's attack and release, a grace note's stolen
// time, the bend release's offset, the curve offsets of slurs and ties, and the divisions a
// sound or barline states for its segno or coda.
bool IsDivisionsAttribute(std::string_view name) {
  return name == "attack" || name == "release" || name == "make-time" || name == "offset" ||
         name == "bezier-offset" || name == "bezier-offset2" || name == "divisions";
}

void ScaleText(pugi::xml_node element, int64_t factor) {
  element.text().set(FormatDecimal(ParseDecimal(element.child_value()) * Rational(factor)).c_str());
}

// Multiplies every value in divisions under `node` by `factor`: <divisions>, the durations of
// notes, backups, forwards and figured bass, the offsets of directions, harmony, sounds and
// listening, and the attributes above.
void ScaleDivisions(pugi::xml_node node, int64_t factor) {
  for (auto attribute : node.attributes())
    if (IsDivisionsAttribute(attribute.name()))
      attribute.set_value(
          FormatDecimal(ParseDecimal(attribute.value()) * Rational(factor)).c_str());
  for (auto child : node.children()) {
    if (child.type() != pugi::node_element)
      continue;
    std::string_view name = child.name();
    if (name == "duration" || name == "offset" || name == "divisions")
      ScaleText(child, factor);
    else
      ScaleDivisions(child, factor);
  }
}

// Elements whose place or length in time is read in the divisions in force where they stand.
bool IsTimedElement(pugi::xml_node element) {
  std::string_view name = element.name();
  return name == "note" || name == "backup" || name == "forward" || element.child("offset") ||
         element.child("duration");
}

// The <divisions> that applies to the measure's first timed element, when the measure sets it.
pugi::xml_node LeadingDivisions(pugi::xml_node measure) {
  for (auto child : measure.children()) {
    if (IsTimedElement(child))
      return {};
    if (std::string_view(child.name()) == "attributes")
      if (auto d = child.child("divisions"))
        return d;
  }
  return {};
}

// Gives the measure an explicit <divisions> before its first timed element.
void SetLeadingDivisions(pugi::xml_node measure, const Rational& value) {
  pugi::xml_node attributes;
  pugi::xml_node firstTimed;
  for (auto child : measure.children()) {
    if (IsTimedElement(child)) {
      firstTimed = child;
      break;
    }
    if (std::string_view(child.name()) == "attributes" && !attributes)
      attributes = child;
  }
  if (!attributes)
    attributes = firstTimed ? measure.insert_child_before("attributes", firstTimed)
                            : measure.append_child("attributes");
  // divisions follows only footnote and level.
  pugi::xml_node after;
  for (auto child : attributes.children()) {
    std::string_view name = child.name();
    if (name == "footnote" || name == "level")
      after = child;
  }
  pugi::xml_node divisions = after ? attributes.insert_child_after("divisions", after)
                                   : attributes.prepend_child("divisions");
  divisions.text().set(FormatDecimal(value).c_str());
}

void WritePitch(pugi::xml_node note, const Pitch& pitch) {
  pugi::xml_node p = note.child("pitch");
  if (!p)
    return;
  static constexpr const char* kSteps[] = {"C", "D", "E", "F", "G", "A", "B"};
  int step = pitch.step;
  int octave = 4 + (step >= 0 ? step / 7 : -((-step + 6) / 7));
  int index = step - (octave - 4) * 7;
  RemoveChildren(p, "step");
  RemoveChildren(p, "alter");
  RemoveChildren(p, "octave");
  p.append_child("step").text().set(kSteps[index]);
  if (pitch.alteration != 0)
    p.append_child("alter").text().set(pitch.alteration);
  p.append_child("octave").text().set(octave);
}

// A cue note does not sound, so it carries only the drawn tie (<tied>), never <tie>.
void WriteTies(pugi::xml_node note, bool stop, bool start) {
  RemoveChildren(note, "tie");
  for (auto notations : note.children("notations"))
    RemoveChildren(notations, "tied");
  bool sounding = !note.child("cue");
  if (stop && sounding)
    InsertNoteChild(note, "tie").append_attribute("type") = "stop";
  if (start && sounding)
    InsertNoteChild(note, "tie").append_attribute("type") = "start";
  if (stop)
    NotationsOf(note).append_child("tied").append_attribute("type") = "stop";
  if (start)
    NotationsOf(note).append_child("tied").append_attribute("type") = "start";
}

// Is pitch `p` tied into the next entry, or from the previous, by either side's flag?
bool HasPitch(const Entry* e, const Pitch& p, bool wantTieEnd, bool wantTieStart) {
  if (!e)
    return false;
  for (const Pitch& q : e->pitches)
    if (q.step == p.step && q.alteration == p.alteration &&
        ((wantTieEnd && q.tieEnd) || (wantTieStart && q.tieStart)))
      return true;
  return false;
}

// Strips a copied note down to what a repeated note carries: no lyrics, markings, accidental,
// ties or beams, no horizontal placement and no ids.
void StripCopy(pugi::xml_node note) {
  for (const char* name : {"lyric", "notations", "accidental", "tie", "beam", "footnote", "level"})
    RemoveChildren(note, name);
  RemoveUniqueIds(note);
}

class MeasureWriter {
public:
  MeasureWriter(MusicXmlSource& source, ExportSummary& summary)
      : source_(source), summary_(summary) {}

  void Write(MeasureEdit& edit) {
    for (auto& frame : edit.frames)
      for (auto& segment : frame.segments) {
        PlanPieces(source_.groups[segment.group], segment);
        for (const Piece& piece : segment.pieces)
          edit.scale = CheckedLcm(edit.scale, piece.ticks.den());
      }
    const SourceGroup& any = FirstGroup(edit);
    pugi::xml_node measure = source_.parts[any.part].measures[any.measure];
    if (edit.scale != 1)
      ScaleDivisions(measure, edit.scale);
    for (auto& frame : edit.frames) {
      for (auto& segment : frame.segments)
        WriteSegment(frame, segment, edit.scale);
      for (int group : frame.removed)
        WriteRemoved(source_.groups[group], edit.scale);
      WriteBeams(frame);
    }
  }

private:
  const SourceGroup& FirstGroup(const MeasureEdit& edit) {
    for (const auto& frame : edit.frames) {
      if (!frame.segments.empty())
        return source_.groups[frame.segments.front().group];
      if (!frame.removed.empty())
        return source_.groups[frame.removed.front()];
    }
    throw ScoreError("internal error: an empty measure edit");
  }

  void WriteSegment(FrameEdit& frame, Segment& segment, int64_t scale) {
    SourceGroup& group = source_.groups[segment.group];
    size_t n = segment.pieces.size();
    summary_.splitEntries += n > 1 ? 1 : 0;

    // Copies are made from the source notes before the first piece is edited.
    segment.pieces[0].notes = group.notes;
    pugi::xml_node after = group.notes.back();
    pugi::xml_node parent = after.parent();
    for (size_t i = 1; i < n; ++i) {
      for (const auto& note : group.notes) {
        pugi::xml_node copy = parent.insert_copy_after(note, after);
        StripCopy(copy);
        segment.pieces[i].notes.push_back(copy);
        after = copy;
      }
    }
    if (n > 1)
      MoveEndingMarks(segment.pieces.front(), segment.pieces.back());

    for (size_t i = 0; i < n; ++i) {
      Piece& piece = segment.pieces[i];
      const Entry& e = *piece.entry;
      if (!piece.shown.exact)
        ++summary_.inexactNotes;
      size_t index = segment.frameIndex + i;
      const Entry* previous = index > 0 ? &frame.frame->entries[index - 1] : nullptr;
      const Entry* next = index + 1 < frame.frame->entries.size()
                              ? &frame.frame->entries[index + 1]
                              : (frame.nextFrame && !frame.nextFrame->entries.empty()
                                     ? &frame.nextFrame->entries.front()
                                     : nullptr);
      for (size_t j = 0; j < piece.notes.size(); ++j) {
        pugi::xml_node note = piece.notes[j];
        note.remove_attribute("default-x");
        note.remove_attribute("relative-x");
        SetNoteChildText(note, "duration", FormatDecimal(piece.ticks * Rational(scale)));
        if (n > 1)
          if (auto rest = note.child("rest"))
            rest.remove_attribute("measure");
        SetNoteChildText(note, "type", piece.shown.type);
        RemoveChildren(note, {"dot", "time-modification"});
        for (int d = 0; d < piece.shown.dots; ++d)
          InsertNoteChild(note, "dot");
        if (piece.modification != Rational(1)) {
          pugi::xml_node tm = InsertNoteChild(note, "time-modification");
          tm.append_child("actual-notes")
              .text()
              .set(std::to_string(piece.modification.den()).c_str());
          tm.append_child("normal-notes")
              .text()
              .set(std::to_string(piece.modification.num()).c_str());
        }
        if (e.isNote && j < e.pitches.size() && !note.child("rest")) {
          const Pitch& p = e.pitches[j];
          if (j >= group.imported.pitches.size() || group.imported.pitches[j].step != p.step ||
              group.imported.pitches[j].alteration != p.alteration)
            WritePitch(note, p);
          // A tie that left the source note leaves the run's last note, whether or not the
          // note it reaches is one the engine holds.
          bool tiedOn =
              i + 1 == n && j < group.imported.pitches.size() && group.imported.pitches[j].tieStart;
          bool stop = p.tieEnd || HasPitch(previous, p, false, true);
          bool start = p.tieStart || tiedOn || HasPitch(next, p, true, false);
          WriteTies(note, stop, start);
        }
      }
    }
    StateSourceBrackets(group, segment.pieces.front());
    WriteNewTuplets(group, segment);
    for (const Piece& piece : segment.pieces)
      for (auto note : piece.notes)
        RemoveEmptyNotations(note);
  }

  // Marks that close something at the end of the source note move to the run's last note:
  // tuplet and slur stops.
  static void MoveEndingMarks(Piece& first, Piece& last) {
    for (size_t j = 0; j < first.notes.size() && j < last.notes.size(); ++j) {
      for (auto notations : first.notes[j].children("notations")) {
        std::vector<pugi::xml_node> moving;
        for (auto mark : notations.children()) {
          std::string_view name = mark.name();
          if ((name == "tuplet" || name == "slur") &&
              std::string_view(mark.attribute("type").as_string()) == "stop")
            moving.push_back(mark);
        }
        for (auto mark : moving) {
          NotationsOf(last.notes[j]).append_copy(mark);
          notations.remove_child(mark);
        }
      }
    }
  }

  // A source bracket that starts at a note now shorter than before cannot be read from that
  // note's value and time-modification any more: it states its numbers and types.
  static void StateSourceBrackets(const SourceGroup& group, Piece& first) {
    size_t k = 0;
    for (auto notations : first.notes.front().children("notations")) {
      for (auto tuplet : notations.children("tuplet")) {
        if (std::string_view(tuplet.attribute("type").as_string()) != "start")
          continue;
        if (k >= group.imported.tuplets.size())
          return;
        const TupletRatio& record = group.imported.tuplets[k++];
        RemoveChildren(tuplet, "tuplet-actual");
        RemoveChildren(tuplet, "tuplet-normal");
        WriteTupletPart(tuplet.append_child("tuplet-actual"), record.tupletNumber,
                        record.tupletUnit);
        WriteTupletPart(tuplet.append_child("tuplet-normal"), record.referenceNumber,
                        record.referenceUnit);
      }
    }
  }

  static void WriteTupletPart(pugi::xml_node part, int count, int32_t unit) {
    part.append_child("tuplet-number").text().set(count);
    ShownValue shown = ShowNotated(unit);
    part.append_child("tuplet-type").text().set(std::string(shown.type).c_str());
    for (int d = 0; d < shown.dots; ++d)
      part.append_child("tuplet-dot");
  }

  void WriteNewTuplets(const SourceGroup& group, Segment& segment) {
    std::vector<int> taken = group.openTuplets;
    for (const NewTuplet& t : segment.tuplets) {
      int number = 1;
      while (number < 16 && std::find(taken.begin(), taken.end(), number) != taken.end())
        ++number;
      taken.push_back(number);
      pugi::xml_node first = segment.pieces[t.first].notes.front();
      pugi::xml_node tuplet = NotationsOf(first).append_child("tuplet");
      tuplet.append_attribute("type") = "start";
      tuplet.append_attribute("number") = number;
      tuplet.append_attribute("bracket") = "yes";
      WriteTupletPart(tuplet.append_child("tuplet-actual"), t.record.tupletNumber,
                      t.record.tupletUnit);
      WriteTupletPart(tuplet.append_child("tuplet-normal"), t.record.referenceNumber,
                      t.record.referenceUnit);
      pugi::xml_node last = segment.pieces[t.last].notes.front();
      pugi::xml_node stop = NotationsOf(last).append_child("tuplet");
      stop.append_attribute("type") = "stop";
      stop.append_attribute("number") = number;
    }
  }

  // A source entry that no longer exists leaves its time to a <forward>.
  void WriteRemoved(SourceGroup& group, int64_t scale) {
    ++summary_.removedEntries;
    pugi::xml_node first = group.notes.front();
    pugi::xml_node parent = first.parent();
    pugi::xml_node forward = parent.insert_child_before("forward", first);
    forward.append_child("duration")
        .text()
        .set(FormatDecimal(group.ticks * Rational(scale)).c_str());
    if (auto voice = first.child("voice"))
      forward.append_copy(voice);
    if (auto staff = first.child("staff"))
      forward.append_copy(staff);
    for (auto note : group.notes)
      parent.remove_child(note);
    group.notes.clear();
  }

  // Beams of a frame that changed, from the engine's rebeam: the first level from the entry's
  // place in its beam, inner levels from the notated durations.
  void WriteBeams(FrameEdit& frame) {
    // The notes of each entry of the frame: a run's pieces, else the source notes.
    const auto& all = frame.frame->entries;
    std::vector<std::vector<pugi::xml_node>*> notesAt(all.size(), nullptr);
    for (size_t i = 0; i < all.size(); ++i)
      if (all[i].source >= 0 && !source_.groups[all[i].source].notes.empty())
        notesAt[i] = &source_.groups[all[i].source].notes;
    for (auto& segment : frame.segments)
      for (size_t k = 0; k < segment.pieces.size(); ++k)
        notesAt[segment.frameIndex + k] = &segment.pieces[k].notes;
    std::vector<std::pair<const Entry*, std::vector<pugi::xml_node>*>> entries;
    entries.reserve(all.size());
    for (size_t i = 0; i < all.size(); ++i) {
      if (!notesAt[i])
        continue;
      for (auto note : *notesAt[i])
        RemoveChildren(note, "beam");
      entries.push_back({&all[i], notesAt[i]});
    }
    // Beam groups: Start opens, End closes; a stray Continue or End opens one.
    size_t i = 0;
    while (i < entries.size()) {
      if (entries[i].first->beam == Beam::None) {
        ++i;
        continue;
      }
      size_t j = i + 1;
      while (j < entries.size() && entries[j - 1].first->beam != Beam::End &&
             (entries[j].first->beam == Beam::Continue || entries[j].first->beam == Beam::End))
        ++j;
      if (j - i >= 2)
        WriteBeamGroup(entries, i, j);
      i = j;
    }
  }

  static void
  WriteBeamGroup(const std::vector<std::pair<const Entry*, std::vector<pugi::xml_node>*>>& entries,
                 size_t begin, size_t end) {
    std::vector<int> flags;
    for (size_t k = begin; k < end; ++k)
      flags.push_back(std::max(1, FlagCount(entries[k].first->duration)));
    size_t n = flags.size();
    for (size_t k = 0; k < n; ++k) {
      pugi::xml_node note = entries[begin + k].second->front();
      for (int level = 1; level <= std::min(flags[k], 8); ++level) {
        bool before = k > 0 && flags[k - 1] >= level;
        bool after = k + 1 < n && flags[k + 1] >= level;
        const char* value = before && after ? "continue"
                            : before        ? "end"
                            : after         ? "begin"
                            : k + 1 < n     ? "forward hook"
                                            : "backward hook";
        // Inserted after the levels already written, so levels stay in order.
        pugi::xml_node beam = InsertNoteChild(note, "beam");
        beam.append_attribute("number") = level;
        beam.text().set(value);
      }
    }
  }

  MusicXmlSource& source_;
  ExportSummary& summary_;
};

} // namespace

ExportSummary ApplyScore(MusicXmlSource& source, const Score& edited) {
  ExportSummary summary;
  int measures = static_cast<int>(edited.measures.size());
  int staves = static_cast<int>(edited.staves.size());
  std::map<std::pair<int, int>, MeasureEdit> edits; // (part, measure)

  std::vector<std::vector<int>> groupsOfFrame(edited.frames.size());
  for (size_t g = 0; g < source.groups.size(); ++g) {
    const SourceGroup& group = source.groups[g];
    if (group.staff < staves && group.measure < measures)
      groupsOfFrame[(static_cast<size_t>(group.staff) * measures + group.measure) * kLayerCount +
                    group.layer]
          .push_back(static_cast<int>(g));
  }

  for (int s = 0; s < staves; ++s) {
    for (int m = 0; m < measures; ++m) {
      for (int l = 0; l < kLayerCount; ++l) {
        const Frame& frame = edited.At(s, m, l);
        FrameEdit edit;
        edit.staff = s;
        edit.measure = m;
        edit.layer = l;
        edit.frame = &frame;
        edit.nextFrame = m + 1 < measures ? &edited.At(s, m + 1, l) : nullptr;
        std::set<int> seen;
        Segment* current = nullptr;
        bool changed = false;
        for (size_t i = 0; i < frame.entries.size(); ++i) {
          const Entry& e = frame.entries[i];
          if (e.source < 0) {
            if (!current)
              throw ScoreError("staff " + std::to_string(s + 1) + ", measure " +
                               edited.measures[m].number + ", layer " + std::to_string(l + 1) +
                               ": a new entry with no source entry before it cannot be written");
            current->entries.push_back(&e);
            continue;
          }
          if (e.source >= static_cast<int>(source.groups.size()))
            throw ScoreError("an entry refers to a source note that does not exist");
          const SourceGroup& group = source.groups[e.source];
          if (group.staff != s || group.measure != m || group.layer != l)
            throw ScoreError(Where(source, group) +
                             ": an entry moved to another staff, measure or layer cannot be "
                             "written");
          if (!seen.insert(e.source).second)
            throw ScoreError(Where(source, group) + ": two entries claim the same source note");
          edit.segments.push_back({e.source, {&e}, i, {}, {}});
          current = &edit.segments.back();
        }
        // Keep only the segments that changed; the others stay as they are in the source.
        std::vector<Segment> changedSegments;
        for (auto& segment : edit.segments) {
          if (segment.entries.size() == 1 &&
              SameEntry(*segment.entries[0], source.groups[segment.group].imported))
            edit.unchanged.push_back(segment.group);
          else
            changedSegments.push_back(std::move(segment));
        }
        edit.segments = std::move(changedSegments);
        for (int g : groupsOfFrame[(static_cast<size_t>(s) * measures + m) * kLayerCount + l])
          if (!seen.count(g))
            edit.removed.push_back(g);
        changed = !edit.segments.empty() || !edit.removed.empty();
        if (changed) {
          int part = edited.staves[s].part;
          edits[{part, m}].frames.push_back(std::move(edit));
        }
      }
    }
  }

  MeasureWriter writer(source, summary);
  for (auto& [key, edit] : edits) {
    writer.Write(edit);
    ++summary.changedMeasures;
  }

  // Divisions stay continuous: a measure whose scale differs from what the previous measure
  // left in force states its divisions explicitly.
  for (size_t p = 0; p < source.parts.size(); ++p) {
    const PartSource& part = source.parts[p];
    Rational inForce = 1;
    for (size_t m = 0; m < part.measures.size(); ++m) {
      auto it = edits.find({static_cast<int>(p), static_cast<int>(m)});
      int64_t scale = it == edits.end() ? 1 : it->second.scale;
      pugi::xml_node measure = part.measures[m];
      Rational needed = part.divisionsAtStart[m] * Rational(scale);
      if (!LeadingDivisions(measure) && needed != inForce)
        SetLeadingDivisions(measure, needed);
      inForce = part.divisionsAtEnd[m] * Rational(scale);
    }
  }
  return summary;
}

} // namespace scribo::musicxml
