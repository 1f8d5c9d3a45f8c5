#include "MusicXmlImport.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "NoteValues.h"
#include "ScoreError.h"
#include "XmlNumbers.h"

namespace scribo::musicxml {

namespace {

constexpr size_t kMaxChordNotes = 12;

std::string Where(const PartSource& part, const pugi::xml_node& measure) {
  return "measure " + std::string(measure.attribute("number").as_string("?")) + " of part " +
         part.id;
}

int16_t ClampTDU(int64_t value) {
  return static_cast<int16_t>(std::clamp<int64_t>(value, 0, 32767));
}

// Diatonic step from middle C and alteration of a <pitch>, or of the display position of an
// <unpitched> note or a placed rest.
Pitch ReadPitch(const pugi::xml_node& note) {
  Pitch pitch;
  const char* stepText = nullptr;
  int octave = 4;
  double alter = 0;
  if (auto p = note.child("pitch")) {
    stepText = p.child_value("step");
    octave = p.child("octave").text().as_int(4);
    alter = p.child("alter").text().as_double(0);
  } else if (auto u = note.child("unpitched")) {
    stepText = u.child_value("display-step");
    octave = u.child("display-octave").text().as_int(4);
  }
  static constexpr std::string_view kSteps = "CDEFGAB";
  size_t index = stepText ? kSteps.find(stepText[0]) : std::string_view::npos;
  if (index == std::string_view::npos)
    index = 0;
  pitch.step = static_cast<int16_t>((octave - 4) * 7 + static_cast<int>(index));
  pitch.alteration = static_cast<int16_t>(std::lround(alter));
  // A tie is either sounding (<tie>) or drawn (<tied>); either one ties the note.
  auto readTie = [&pitch](const pugi::xml_node& tie) {
    std::string_view type = tie.attribute("type").as_string();
    if (type == "start")
      pitch.tieStart = true;
    else if (type == "stop")
      pitch.tieEnd = true;
  };
  for (auto tie : note.children("tie"))
    readTie(tie);
  for (auto notations : note.children("notations"))
    for (auto tied : notations.children("tied"))
      readTie(tied);
  return pitch;
}

int CountDots(const pugi::xml_node& parent, const char* name) {
  int dots = 0;
  for (auto dot = parent.child(name); dot; dot = dot.next_sibling(name))
    ++dots;
  return dots;
}

// The unit of a tuplet's notes from <tuplet-type> and <tuplet-dot>, 0 when absent.
int32_t TupletPartUnit(const pugi::xml_node& part) {
  int32_t base = NoteTypeTDU(part.child_value("tuplet-type"));
  return base ? DottedTDU(base, CountDots(part, "tuplet-dot")) : 0;
}

// Notes the import keeps out of the engine, so that they are written back exactly as they were
// and never subdivided, grouped by why: one notice per reason, listing where.
class KeptNotes {
public:
  void Add(const std::string& reason, const std::string& where) {
    auto it = std::find_if(reasons_.begin(), reasons_.end(),
                           [&](const auto& r) { return r.first == reason; });
    if (it == reasons_.end())
      it = reasons_.insert(reasons_.end(), {reason, {}});
    if (seen_.insert(reason + '\n' + where).second)
      it->second.push_back(where);
  }

  void Report(std::vector<std::string>& notices) const {
    for (const auto& [reason, places] : reasons_) {
      std::string list;
      for (const auto& place : places)
        list += (list.empty() ? "" : ", ") + place;
      notices.push_back(reason + " are kept as they are and never subdivided: " + list);
    }
  }

private:
  std::vector<std::pair<std::string, std::vector<std::string>>> reasons_;
  std::set<std::string> seen_;
};

// Per part and voice: the tuplet brackets open at the current note, by number.
struct OpenTuplet {
  int number;
  Rational ratio; // normal/actual of this bracket alone
};

class PartReader {
public:
  PartReader(MusicXmlSource& source, Score& score, PartSource& part, int partIndex, KeptNotes& kept)
      : source_(source), score_(score), part_(part), partIndex_(partIndex), kept_(kept) {}

  void Read(const pugi::xml_node& partNode) {
    int measureIndex = 0;
    for (auto measure : partNode.children("measure")) {
      part_.measures.push_back(measure);
      part_.divisionsAtStart.push_back(divisions_);
      ReadMeasure(measure, measureIndex++);
      part_.divisionsAtEnd.push_back(divisions_);
    }
  }

private:
  void ReadAttributes(const pugi::xml_node& attributes, int measureIndex) {
    if (auto d = attributes.child("divisions")) {
      Rational value = ParseDecimal(d.child_value());
      if (value <= Rational(0))
        throw ScoreError(Where(part_, attributes.parent()) + ": divisions must be positive");
      divisions_ = value;
    }
    for (auto key : attributes.children("key")) {
      if (key.attribute("number") && key.attribute("number").as_int() != 1)
        continue;
      if (auto fifths = key.child("fifths")) {
        keyFifths_ = fifths.text().as_int();
        minor_ = std::string_view(key.child_value("mode")) == "minor";
      }
    }
    for (auto time : attributes.children("time")) {
      if (time.attribute("number") && time.attribute("number").as_int() != 1)
        continue;
      if (time.child("senza-misura")) {
        beats_ = 0;
        continue;
      }
      int beats = 0;
      for (auto b : time.children("beats"))
        beats += SumOfNumbers(b.child_value());
      int beatType = time.child("beat-type").text().as_int(0);
      if (beats > 0 && beatType > 0) {
        beats_ = beats;
        beatType_ = beatType;
      }
    }
  }

  void ReadMeasure(const pugi::xml_node& measure, int measureIndex) {
    Rational time = 0;
    Rational end = 0;
    int current = -1;       // group that chord notes join
    bool skipChord = false; // the last note was a grace note or in an extra voice
    if (partIndex_ == 0) {
      MeasureInfo& info = score_.measures[measureIndex];
      info.number = measure.attribute("number").as_string();
    }
    for (auto child : measure.children()) {
      std::string_view name = child.name();
      if (name == "attributes") {
        ReadAttributes(child, measureIndex);
      } else if (name == "backup" || name == "forward") {
        Rational quarters = ReadDuration(child, measure) / divisions_;
        time = name == "backup" ? time - quarters : time + quarters;
        if (time < Rational(0))
          throw ScoreError(Where(part_, measure) + ": <backup> goes back past the measure's start");
        end = std::max(end, time);
        current = -1;
      } else if (name == "note") {
        bool chord = static_cast<bool>(child.child("chord"));
        if (child.child("grace")) {
          skipChord = true;
          continue;
        }
        if (chord && skipChord)
          continue;
        if (chord && current >= 0) {
          JoinChord(child, current);
          continue;
        }
        skipChord = false;
        Rational ticks = ReadDuration(child, measure);
        Rational start = time;
        time += ticks / divisions_;
        end = std::max(end, time);
        if (const char* reason = ReasonToKeep(child, ticks, time)) {
          kept_.Add(reason, Where(part_, measure));
          current = -1;
          skipChord = true;
          continue;
        }
        current = AddGroup(child, measure, measureIndex, start, ticks);
        if (current < 0)
          skipChord = true;
      }
    }
    if (partIndex_ == 0) {
      MeasureInfo& info = score_.measures[measureIndex];
      info.beats = beats_ > 0 ? beats_ : 0;
      info.beatType = beats_ > 0 ? beatType_ : 0;
      info.keyFifths = keyFifths_;
      info.minor = minor_;
    }
    MeasureInfo& info = score_.measures[measureIndex];
    int32_t filled = static_cast<int32_t>((end * kQuarterTDU).Floor());
    info.contentLength = std::max(info.contentLength, filled);
  }

  // Why a note (with its chord) stays out of the engine, or null when it goes in: the engine has
  // no place for a note without time, for a notated value beyond its 16-bit duration, or for
  // time past the end of the measure its time signature gives (an overfull measure).
  const char* ReasonToKeep(const pugi::xml_node& note, Rational ticks, Rational end) const {
    if (ticks == Rational(0))
      return "notes of duration 0";
    Rational quarters = ticks / divisions_;
    int64_t notated = NoteTypeTDU(note.child_value("type"));
    if (notated > 0)
      notated = DottedTDU(static_cast<int32_t>(notated), CountDots(note, "dot"));
    else
      notated = (quarters / RatioOf(note) * kQuarterTDU).Floor();
    if (notated > INT16_MAX)
      return "notes longer than the engine's longest notated value (32767 TDU; a maxima is "
             "32768)";
    if (beats_ > 0 && end > Rational(beats_) * Rational(4, beatType_))
      return "notes that end past their measure's time signature";
    return nullptr;
  }

  // normal/actual of the note's time-modification; 1 without one.
  static Rational RatioOf(const pugi::xml_node& note) {
    auto tm = note.child("time-modification");
    int actual = tm.child("actual-notes").text().as_int(0);
    int normal = tm.child("normal-notes").text().as_int(0);
    return actual > 0 && normal > 0 ? Rational(normal, actual) : Rational(1);
  }

  Rational ReadDuration(const pugi::xml_node& node, const pugi::xml_node& measure) {
    auto d = node.child("duration");
    if (!d)
      throw ScoreError(Where(part_, measure) + ": <" + node.name() + "> without a duration");
    Rational value = ParseDecimal(d.child_value());
    if (value < Rational(0))
      throw ScoreError(Where(part_, measure) + ": a negative duration");
    return value;
  }

  int LayerOf(int staff, const std::string& voice) {
    auto& voices = layers_[staff];
    auto it = voices.find(voice);
    if (it != voices.end())
      return it->second;
    if (voices.size() >= kLayerCount) {
      kept_.Add("voices beyond the fourth of a staff",
                "staff " + std::to_string(staff + 1) + " voice " + voice);
      return -1;
    }
    int layer = static_cast<int>(voices.size());
    voices.emplace(voice, layer);
    return layer;
  }

  int AddGroup(const pugi::xml_node& note, const pugi::xml_node& measure, int measureIndex,
               Rational start, Rational ticks) {
    int staffInPart = std::clamp(note.child("staff").text().as_int(1), 1, part_.staffCount);
    int staff = part_.firstStaff + staffInPart - 1;
    std::string voice = note.child("voice") ? note.child_value("voice") : "1";
    int layer = LayerOf(staff, voice);
    if (layer < 0)
      return -1;

    SourceGroup group;
    group.notes.push_back(note);
    group.part = partIndex_;
    group.measure = measureIndex;
    group.staff = staff;
    group.layer = layer;
    group.ticks = ticks;
    group.divisions = divisions_;
    group.ratio = RatioOf(note);

    Entry& entry = group.imported;
    entry.position = static_cast<int32_t>((start * kQuarterTDU).Floor());
    Rational quarters = ticks / divisions_;
    entry.actualDuration = static_cast<int32_t>((quarters * kQuarterTDU).Floor());
    int32_t typeTDU = NoteTypeTDU(note.child_value("type"));
    if (typeTDU > 0)
      entry.duration = ClampTDU(DottedTDU(typeTDU, CountDots(note, "dot")));
    else
      entry.duration = ClampTDU((quarters / group.ratio * kQuarterTDU).Floor());
    entry.isNote = !note.child("rest");
    if (entry.isNote)
      entry.pitches.push_back(ReadPitch(note));
    entry.source = static_cast<int32_t>(source_.groups.size());

    auto& open = openTuplets_[voice];
    ReadTuplets(note, group, open, measure);
    ReadBeam(note, entry);

    source_.groups.push_back(std::move(group));
    return entry.source;
  }

  void JoinChord(const pugi::xml_node& note, int groupIndex) {
    SourceGroup& group = source_.groups[groupIndex];
    group.notes.push_back(note);
    if (group.imported.isNote && !note.child("rest") &&
        group.imported.pitches.size() < kMaxChordNotes)
      group.imported.pitches.push_back(ReadPitch(note));
  }

  // Tuplet brackets: a start gives the entry its tuplet detail record; the numbers open at the
  // note are kept so that export can number new brackets without clashing.
  void ReadTuplets(const pugi::xml_node& note, SourceGroup& group, std::vector<OpenTuplet>& open,
                   const pugi::xml_node& measure) {
    std::vector<int> stops;
    std::vector<std::pair<pugi::xml_node, int>> starts;
    for (auto notations : note.children("notations")) {
      for (auto tuplet : notations.children("tuplet")) {
        int number = tuplet.attribute("number").as_int(1);
        std::string_view type = tuplet.attribute("type").as_string();
        if (type == "stop")
          stops.push_back(number);
        else if (type == "start")
          starts.push_back({tuplet, number});
      }
    }
    // A bracket without its own numbers takes what the note's time-modification leaves after
    // the brackets around it and the brackets starting here that do state their numbers.
    Rational known = 1;
    for (const auto& o : open)
      known = known * o.ratio;
    std::vector<std::optional<TupletRatio>> records;
    for (const auto& [tuplet, number] : starts) {
      records.push_back(ExplicitRecord(note, tuplet, group));
      if (records.back())
        known = known * RatioOf(*records.back());
    }
    for (size_t i = 0; i < starts.size(); ++i) {
      TupletRatio record = records[i] ? *records[i]
                                      : ImplicitRecord(note, starts[i].first, group,
                                                       group.ratio / known, open.empty());
      if (record.tupletNumber <= 0 || record.tupletUnit <= 0 || record.referenceNumber <= 0 ||
          record.referenceUnit <= 0)
        throw ScoreError(Where(part_, measure) +
                         ": a tuplet start whose ratio cannot be worked out");
      if (!records[i])
        known = known * RatioOf(record);
      group.imported.tuplets.push_back(record);
      open.push_back({starts[i].second, RatioOf(record)});
    }
    for (const auto& o : open)
      group.openTuplets.push_back(o.number);
    for (int number : stops)
      std::erase_if(open, [number](const OpenTuplet& o) { return o.number == number; });
  }

  static Rational RatioOf(const TupletRatio& r) {
    return Rational(int64_t(r.referenceNumber) * r.referenceUnit,
                    int64_t(r.tupletNumber) * r.tupletUnit);
  }

  // The units of a bracket: from its own <tuplet-actual>/<tuplet-normal> types, else the
  // time-modification's normal type, else the note's own value.
  static std::pair<int32_t, int32_t> Units(const pugi::xml_node& note, const pugi::xml_node& tuplet,
                                           const SourceGroup& group) {
    auto tm = note.child("time-modification");
    int32_t unit = TupletPartUnit(tuplet.child("tuplet-actual"));
    if (!unit && tm) {
      int32_t normalType = NoteTypeTDU(tm.child_value("normal-type"));
      if (normalType)
        unit = DottedTDU(normalType, CountDots(tm, "normal-dot"));
    }
    if (!unit)
      unit = group.imported.duration;
    int32_t referenceUnit = TupletPartUnit(tuplet.child("tuplet-normal"));
    return {unit, referenceUnit ? referenceUnit : unit};
  }

  static std::optional<TupletRatio> ExplicitRecord(const pugi::xml_node& note,
                                                   const pugi::xml_node& tuplet,
                                                   const SourceGroup& group) {
    int actualNumber = tuplet.child("tuplet-actual").child("tuplet-number").text().as_int(0);
    int normalNumber = tuplet.child("tuplet-normal").child("tuplet-number").text().as_int(0);
    if (actualNumber <= 0 || normalNumber <= 0)
      return std::nullopt;
    auto [unit, referenceUnit] = Units(note, tuplet, group);
    return TupletRatio{ClampTDU(actualNumber), ClampTDU(unit), ClampTDU(normalNumber),
                       ClampTDU(referenceUnit)};
  }

  // `inner` is the ratio (normal/actual) left for this bracket. Outside other brackets the
  // time-modification's own numbers are kept unreduced (6:4 stays 6:4).
  static TupletRatio ImplicitRecord(const pugi::xml_node& note, const pugi::xml_node& tuplet,
                                    const SourceGroup& group, Rational inner, bool outermost) {
    auto [unit, referenceUnit] = Units(note, tuplet, group);
    auto tm = note.child("time-modification");
    int actualNumber = static_cast<int>(inner.den());
    int normalNumber = static_cast<int>(inner.num());
    if (outermost && tm &&
        Rational(tm.child("normal-notes").text().as_int(0),
                 std::max(1, tm.child("actual-notes").text().as_int(0))) == inner) {
      actualNumber = tm.child("actual-notes").text().as_int(0);
      normalNumber = tm.child("normal-notes").text().as_int(0);
    }
    // With different units the count of reference notes scales by unit/referenceUnit.
    if (referenceUnit != unit && normalNumber > 0) {
      Rational scaled = Rational(normalNumber) * Rational(unit, referenceUnit);
      normalNumber = scaled.IsWhole() ? static_cast<int>(scaled.num()) : normalNumber;
    }
    return TupletRatio{ClampTDU(actualNumber), ClampTDU(unit), ClampTDU(normalNumber),
                       ClampTDU(referenceUnit)};
  }

  // The first beam level tells the entry's place in its beam.
  static void ReadBeam(const pugi::xml_node& note, Entry& entry) {
    for (auto beam : note.children("beam")) {
      if (beam.attribute("number").as_int(1) != 1)
        continue;
      std::string_view value = beam.child_value();
      if (value == "begin")
        entry.beam = Beam::Start;
      else if (value == "continue")
        entry.beam = Beam::Continue;
      else if (value == "end")
        entry.beam = Beam::End;
    }
  }

  MusicXmlSource& source_;
  Score& score_;
  PartSource& part_;
  int partIndex_;
  KeptNotes& kept_;
  Rational divisions_ = 1;
  int keyFifths_ = 0;
  bool minor_ = false;
  int beats_ = 4;
  int beatType_ = 4;
  std::map<int, std::map<std::string, int>> layers_;
  std::map<std::string, std::vector<OpenTuplet>> openTuplets_;
};

int CountStaves(const pugi::xml_node& part) {
  int staves = 1;
  for (auto measure : part.children("measure")) {
    for (auto child : measure.children()) {
      std::string_view name = child.name();
      if (name == "attributes")
        staves = std::max(staves, child.child("staves").text().as_int(1));
      else if (name == "note" || name == "forward")
        staves = std::max(staves, child.child("staff").text().as_int(1));
    }
  }
  return std::min(staves, 64);
}

} // namespace

Score ImportDocument(MusicXmlSource& source, std::string_view name) {
  Score score;
  pugi::xml_node root = source.doc->document_element();
  std::string rootName = root.name();
  if (rootName == "score-timewise")
    throw ScoreError(
        std::string(name) +
        ": score-timewise files are not supported; save the score as partwise MusicXML");
  if (rootName != "score-partwise")
    throw ScoreError(std::string(name) + ": not a MusicXML score (the root element is <" +
                     rootName + ">)");

  std::map<std::string, std::string> partNames;
  for (auto scorePart : root.child("part-list").children("score-part"))
    partNames[scorePart.attribute("id").as_string()] = scorePart.child_value("part-name");

  size_t measureCount = 0;
  bool first = true;
  for (auto part : root.children("part")) {
    size_t count = std::distance(part.children("measure").begin(), part.children("measure").end());
    if (first)
      measureCount = count;
    else if (count != measureCount)
      throw ScoreError(std::string(name) + ": part " + part.attribute("id").as_string() + " has " +
                       std::to_string(count) + " measures, the first part " +
                       std::to_string(measureCount));
    first = false;
  }
  if (first)
    throw ScoreError(std::string(name) + ": the score has no parts");
  if (measureCount == 0)
    throw ScoreError(std::string(name) + ": the score has no measures");
  if (measureCount > 32000)
    throw ScoreError(std::string(name) + ": more than 32000 measures");

  for (auto part : root.children("part")) {
    PartSource p;
    p.id = part.attribute("id").as_string();
    p.name = partNames.count(p.id) ? partNames[p.id] : p.id;
    p.firstStaff = static_cast<int>(score.staves.size());
    p.staffCount = CountStaves(part);
    for (int s = 1; s <= p.staffCount; ++s)
      score.staves.push_back({p.name, static_cast<int>(source.parts.size()), s, p.staffCount});
    source.parts.push_back(std::move(p));
  }
  if (score.staves.size() > 32000)
    throw ScoreError(std::string(name) + ": more than 32000 staves");
  score.measures.assign(measureCount, MeasureInfo{});

  KeptNotes kept;
  int partIndex = 0;
  for (auto part : root.children("part")) {
    PartReader reader(source, score, source.parts[partIndex], partIndex, kept);
    reader.Read(part);
    ++partIndex;
  }

  for (auto& info : score.measures) {
    if (info.beats > 0 && info.beatType > 0)
      info.length = static_cast<int32_t>(
          (Rational(info.beats) * Rational(4 * kQuarterTDU, info.beatType)).Floor());
    else
      info.length = info.contentLength;
  }

  score.Resize();
  for (const auto& group : source.groups)
    score.At(group.staff, group.measure, group.layer).entries.push_back(group.imported);
  for (auto& frame : score.frames)
    std::stable_sort(frame.entries.begin(), frame.entries.end(),
                     [](const Entry& a, const Entry& b) { return a.position < b.position; });

  kept.Report(source.notices);
  return score;
}

ImportedScore ImportMusicXml(std::string_view xml, std::string_view name) {
  ImportedScore result;
  pugi::xml_parse_result parsed = result.source.doc->load_buffer(
      xml.data(), xml.size(), pugi::parse_default | pugi::parse_declaration | pugi::parse_doctype);
  if (!parsed) {
    // Line of the error, counted from the offset the parser reports.
    size_t offset = std::min(static_cast<size_t>(parsed.offset), xml.size());
    size_t line = 1 + std::count(xml.begin(), xml.begin() + offset, '\n');
    throw ScoreError(std::string(name) + ": not well-formed XML at line " + std::to_string(line) +
                     ": " + parsed.description());
  }
  result.score = ImportDocument(result.source, name);
  return result;
}

} // namespace scribo::musicxml
