#include "RandomScore.h"

#include <algorithm>
#include <random>
#include <stdexcept>
#include <vector>

#include "Rational.h"

namespace scoretest {

namespace {

using Quarters = scribo::musicxml::Rational;
using std::to_string;

struct Value {
  Quarters length;
  const char* type;
  int dots;
};
// Quarters and eighths come up most, as in real music.
const Value kValues[] = {{8, "breve", 0},       {6, "whole", 1},       {4, "whole", 0},
                         {3, "half", 1},        {2, "half", 0},        {{3, 2}, "quarter", 1},
                         {1, "quarter", 0},     {1, "quarter", 0},     {{3, 4}, "eighth", 1},
                         {{1, 2}, "eighth", 0}, {{1, 2}, "eighth", 0}, {{1, 4}, "16th", 0}};

// `count` notes of `each` in the time of `normal` of them.
struct TupletKind {
  int count, normal;
  Value each;
};
const TupletKind kTuplets[] = {{3, 2, {{1, 3}, "eighth", 0}},
                               {3, 2, {{2, 3}, "quarter", 0}},
                               {5, 4, {{1, 5}, "16th", 0}},
                               {3, 2, {{1, 6}, "16th", 0}}};

const std::pair<int, int> kTimes[] = {{2, 4}, {3, 4}, {4, 4}, {6, 8}, {3, 8},
                                      {2, 2}, {5, 4}, {9, 8}, {4, 2}};

// From the coarsest divisions real files use to fine ones; a measure holds only the values its
// divisions express.
const int kDivisions[] = {1, 2, 3, 4, 6, 8, 12, 24, 60, 480};

struct Drum {
  const char *id, *name, *step, *octave, *notehead;
};
const Drum kDrums[] = {{"I36", "Bass Drum", "F", "4", ""},
                       {"I39", "Snare Drum", "C", "5", ""},
                       {"I43", "Closed Hi-Hat", "G", "5", "x"}};

enum class Kind { Melody, Piano, Drums };
const char* const kPartNames[] = {"Flute", "Piano", "Drums"};

struct Voice {
  std::string number;
  std::string staff;     // <staff>N</staff> in a part of two staves, else empty
  std::string tied = {}; // the head that a tie from the voice's last note waits for
  bool tiedCue = false;
};

struct NoteSpec {
  Value value;
  std::string head = {}; // <pitch>, <unpitched> or <rest/>
  std::string instrument = {}, notehead = {}, timeModification = {}, notations = {}, lyric = {};
  bool grace = false, cue = false, chord = false, tieStop = false, tieStart = false;
};

// <name>content</name>
std::string E(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name + ">";
}

class ScoreWriter {
public:
  explicit ScoreWriter(uint32_t seed) : rng_(seed) {}

  RandomScore Write() {
    RandomScore score;
    int measures = 2 + Below(4);
    pickup_ = Chance(25);
    score.lastNumber = measures - (pickup_ ? 1 : 0);
    std::pair<int, int> time = kTimes[Below(9)];
    for (int m = 0; m < measures; ++m) {
      std::pair<int, int> next = m > 0 && Chance(20) ? kTimes[Below(9)] : time;
      times_.push_back(m == 0 || next != time ? next : std::pair{0, 0});
      time = next;
      Quarters full = Quarters(time.first) * Quarters(4, time.second);
      // A pickup is a whole number of eighths shorter than the measure.
      lengths_.push_back(pickup_ && m == 0 ? Quarters(1 + Below(int(full.Floor()) * 2 - 1), 2)
                                           : full);
    }
    std::string list, parts;
    for (int p = 1, count = 1 + Below(3); p <= count; ++p) {
      Kind kind = Kind(Below(3));
      std::string id = "P" + to_string(p);
      list += "<score-part id=\"" + id + "\">" + E("part-name", kPartNames[int(kind)]);
      for (const Drum& drum : kDrums)
        if (kind == Kind::Drums)
          list += "<score-instrument id=\"" + id + "-" + drum.id + "\">" +
                  E("instrument-name", drum.name) + "</score-instrument>";
      list += "</score-part>";
      score.staves += kind == Kind::Piano ? 2 : 1;
      parts += WritePart(kind, id);
    }
    score.xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<score-partwise version=\"4.0\">" +
                E("part-list", list) + parts + "</score-partwise>\n";
    return score;
  }

private:
  int Below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }
  bool Chance(int percent) { return Below(100) < percent; }
  bool Fits(Quarters length) const { return (length * Quarters(divisions_)).IsWhole(); }
  std::string Ticks(Quarters length) const {
    if (!Fits(length))
      throw std::logic_error("a value the divisions do not express");
    return (length * Quarters(divisions_)).ToString();
  }
  std::string Duration(Quarters length) const { return E("duration", Ticks(length)); }

  std::string WritePart(Kind kind, const std::string& id) {
    std::vector<Voice> voices;
    for (int staff = 1; staff <= (kind == Kind::Piano ? 2 : 1); ++staff)
      for (int v = 0, n = kind == Kind::Drums ? 2 : 1 + Below(2); v < n; ++v)
        voices.push_back({to_string((staff == 1 ? 1 : 5) + v),
                          kind == Kind::Piano ? E("staff", to_string(staff)) : ""});
    std::string xml = "<part id=\"" + id + "\">";
    for (size_t m = 0; m < lengths_.size(); ++m) {
      xml += "<measure number=\"" + to_string(m + (pickup_ ? 0 : 1)) +
             (m == 0 && pickup_ ? "\" implicit=\"yes\">" : "\">");
      // Before the attributes, so its offset is read in the divisions the last measure left.
      if (m > 0 && Chance(30))
        xml += Marking(kind, 1 + Below(int(lengths_[m].Floor())));
      std::string attributes;
      if (m == 0 || Chance(20) || !Fits(lengths_[m])) {
        divisions_ = kDivisions[Below(10)];
        while (!Fits(lengths_[m]))
          divisions_ *= 2;
        attributes = E("divisions", to_string(divisions_));
      }
      attributes += m == 0 ? E("key", E("fifths", to_string(Below(9) - 4))) : "";
      if (times_[m].first)
        attributes += E("time", E("beats", to_string(times_[m].first)) +
                                    E("beat-type", to_string(times_[m].second)));
      if (m == 0 && kind != Kind::Melody)
        attributes += kind == Kind::Piano ? E("staves", "2") : E("clef", E("sign", "percussion"));
      xml += attributes.empty() ? "" : E("attributes", attributes);
      Quarters previous;
      for (Voice& voice : voices) {
        bool first = &voice == &voices[0];
        // Now and then the first voice overfills the measure by a quarter.
        Quarters length = lengths_[m] + (first && Chance(5) ? 1 : 0);
        xml += first ? "" : E("backup", Duration(previous));
        xml += FillVoice(kind, id, voice, first, length, m + 1 == lengths_.size());
        previous = length;
      }
      xml += "</measure>";
    }
    return xml + "</part>";
  }

  // Something that is not a note, placed `offset` quarters after where it stands.
  std::string Marking(Kind kind, Quarters offset) {
    std::string placed = offset == Quarters(0) ? "" : E("offset", Ticks(offset));
    if (kind == Kind::Piano && Chance(30))
      return E("figured-bass", E("figure", E("figure-number", "6")) + Duration(1));
    if (Chance(50))
      return "<direction placement=\"above\">" + E("direction-type", E("words", "dolce")) + placed +
             "</direction>";
    return E("harmony", E("root", E("root-step", "G")) + E("kind", "dominant") + placed);
  }

  std::string Head(Kind kind, const std::string& part, const Voice& v, NoteSpec& n) {
    if (kind == Kind::Drums) {
      const Drum& drum = v.number == "1" ? kDrums[1 + Below(2)] : kDrums[0];
      n.instrument = part + "-" + drum.id;
      n.notehead = drum.notehead;
      return E("unpitched", E("display-step", drum.step) + E("display-octave", drum.octave));
    }
    static const char* kSteps[] = {"C", "D", "E", "F", "G", "A", "B"};
    int degree = (v.staff == E("staff", "2") ? 14 : 28) + Below(14);
    int alter = Chance(10) ? Below(2) * 2 - 1 : 0;
    return E("pitch", E("step", kSteps[degree % 7]) + (alter ? E("alter", to_string(alter)) : "") +
                          E("octave", to_string(degree / 7)));
  }

  std::string Note(const Voice& v, const NoteSpec& n) {
    std::string x = std::string(n.grace ? "<grace/>" : "") + (n.cue ? "<cue/>" : "") +
                    (n.chord ? "<chord/>" : "") + n.head +
                    (n.grace ? "" : Duration(n.value.length));
    // A cue note does not sound: its ties are only drawn.
    x += std::string(!n.cue && n.tieStop ? "<tie type=\"stop\"/>" : "") +
         (!n.cue && n.tieStart ? "<tie type=\"start\"/>" : "");
    if (!n.instrument.empty())
      x += "<instrument id=\"" + n.instrument + "\"/>";
    x += E("voice", v.number) + E("type", n.value.type);
    for (int k = 0; k < n.value.dots; ++k)
      x += "<dot/>";
    x += n.timeModification;
    if (n.head != "<rest/>")
      x += E("stem", v.number == "1" || v.number == "5" ? "up" : "down");
    x += (n.notehead.empty() ? "" : E("notehead", n.notehead)) + v.staff;
    std::string notations = n.notations + (n.tieStop ? "<tied type=\"stop\"/>" : "") +
                            (n.tieStart ? "<tied type=\"start\"/>" : "");
    return E("note", x + (notations.empty() ? "" : E("notations", notations)) + n.lyric);
  }

  // A note, a chord or a rest, with what may come with it: a grace note before it, lyrics, a
  // tie to the voice's next note (`mayTie` when there is one).
  std::string AddNote(Kind kind, const std::string& part, Voice& v, NoteSpec n, bool mayTie) {
    std::string x;
    bool tied = !v.tied.empty();
    if (tied) {
      n.head = v.tied;
      n.cue = v.tiedCue;
      n.tieStop = true;
      v.tied.clear();
    } else {
      n.head = Chance(12) ? "<rest/>" : Head(kind, part, v, n);
      n.cue = Chance(6);
    }
    bool rest = n.head == "<rest/>";
    if (!rest && !n.cue && !tied && Chance(6)) {
      NoteSpec grace{{0, "eighth", 0}};
      grace.grace = true;
      grace.head = Head(kind, part, v, grace);
      x += Note(v, grace);
    }
    if (kind == Kind::Melody && v.number == "1" && !rest && Chance(30))
      n.lyric = "<lyric number=\"1\">" + E("syllabic", "single") + E("text", "la") + "</lyric>" +
                (Chance(30) ? "<lyric number=\"2\">" + E("text", "lo") + "</lyric>" : "");
    bool chord = !rest && !tied && Chance(20);
    if (!rest && !chord && mayTie && kind != Kind::Drums && Chance(15)) {
      n.tieStart = true;
      v.tied = n.head;
      v.tiedCue = n.cue;
    }
    x += Note(v, n);
    for (int k = 1; chord && k <= 1 + Below(2); ++k) {
      NoteSpec member = n;
      member.chord = true;
      member.lyric = "";
      member.head = Head(kind, part, v, member);
      x += Note(v, member);
    }
    return x;
  }

  std::string FillVoice(Kind kind, const std::string& part, Voice& v, bool first, Quarters length,
                        bool lastMeasure) {
    if (!first && v.tied.empty() && Chance(10))
      return E("note",
               "<rest measure=\"yes\"/>" + Duration(length) + E("voice", v.number) + v.staff);
    std::string x;
    for (Quarters left = length; left > Quarters(0);) {
      if (first && Chance(10))
        x += Marking(kind, Chance(50) ? 1 : 0);
      const TupletKind& tuplet = kTuplets[Below(4)];
      Quarters span = Quarters(tuplet.count) * tuplet.each.length;
      if (v.tied.empty() && span <= left && Fits(tuplet.each.length) && Chance(12)) {
        for (int k = 0; k < tuplet.count; ++k) {
          NoteSpec n{tuplet.each};
          n.timeModification =
              E("time-modification", E("actual-notes", to_string(tuplet.count)) +
                                         E("normal-notes", to_string(tuplet.normal)));
          n.notations = k == 0                  ? "<tuplet type=\"start\" bracket=\"yes\"/>"
                        : k + 1 == tuplet.count ? "<tuplet type=\"stop\"/>"
                                                : "";
          x += AddNote(kind, part, v, n, false);
        }
        left -= span;
        continue;
      }
      std::vector<const Value*> fitting;
      for (const Value& value : kValues)
        if (value.length <= left && Fits(value.length))
          fitting.push_back(&value);
      const Value& value = *fitting[Below(int(fitting.size()))];
      left -= value.length;
      if (!first && v.tied.empty() && Chance(10))
        x += E("forward", Duration(value.length) + E("voice", v.number) + v.staff);
      else
        x += AddNote(kind, part, v, {value}, left > Quarters(0) || !lastMeasure);
    }
    return x;
  }

  std::mt19937 rng_;
  std::vector<std::pair<int, int>> times_; // {0, 0} where the time signature does not change
  std::vector<Quarters> lengths_;
  bool pickup_ = false;
  int64_t divisions_ = 1; // in force where the part is being written
};

} // namespace

RandomScore MakeRandomScore(uint32_t seed) {
  return ScoreWriter(seed).Write();
}

std::string RandomOptions(uint32_t seed, const RandomScore& score) {
  // Durations as typed into the dialog's fields, in TDU (a quarter is 1024).
  static const int kDurations[] = {8192, 4096, 2048, 1536, 1024, 768, 682,
                                   512,  341,  300,  256,  128,  64,  20};
  std::mt19937 rng(seed * 2654435761u + 17);
  auto below = [&rng](int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); };
  std::string options;
  int longest = 8192;
  if (below(10) < 4) {
    int a = kDurations[below(14)], b = kDurations[below(14)];
    longest = std::max(a, b);
    options += " --min " + to_string(std::min(a, b)) + " --max " + to_string(longest);
  }
  int target = kDurations[below(14)];
  while (target > longest)
    target = kDurations[below(14)];
  options += below(2) ? " --divisions " + to_string(below(5) ? 2 + below(6) : 2 + below(31))
                      : " --target " + to_string(target);
  auto range = [&below](const char* option, int last) {
    int a = 1 + below(last);
    return std::string(" ") + option + " " + to_string(a) + "-" +
           to_string(a + below(last - a + 1));
  };
  // Measure numbers from 1: the same measures whether numbers or places are meant.
  if (below(2) && score.lastNumber >= 1)
    options += range("--measures", score.lastNumber);
  if (below(10) < 3)
    options += range("--staves", score.staves);
  return options;
}

} // namespace scoretest
