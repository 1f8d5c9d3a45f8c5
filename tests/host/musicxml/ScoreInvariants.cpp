#include "ScoreInvariants.h"

#include <map>
#include <set>
#include <sstream>

#include <pugixml.hpp>

#include "MusicXmlImport.h"
#include "SchemaCheck.h"
#include "XmlNumbers.h"

namespace scoretest {

namespace {

using scribo::musicxml::ParseDecimal;
using scribo::musicxml::Rational;
// Where sounding starts (+1) and stops (-1); a note split in place leaves the same edges.
using Edges = std::map<Rational, int>;

// A score's music by part, measure and voice, in quarters.
struct Music {
  std::map<std::string, Rational> lengths; // per voice: its notes and forwards
  std::map<std::string, long> notes;       // per voice: notes and rests that take time
  std::map<std::string, Edges> sounding;   // per voice and pitch: when it sounds
  // How often what must stay is there: lyrics and notations per voice, everything that is not
  // a note per measure and time; for ties per voice and pitch and for tuplet brackets per voice
  // and number, starts less stops.
  std::map<std::string, int> counts;
  long total = 0;
};

std::string Text(pugi::xml_node node) {
  std::ostringstream text;
  node.print(text, "", pugi::format_raw);
  return text.str();
}

void ReadNote(Music& music, pugi::xml_node note, const std::string& voice, const std::string& part,
              Rational start, Rational length) {
  ++music.total;
  // The pitch or drum it sounds, and whether it is a cue.
  std::string pitch = " " + Text(note.child("pitch")) + Text(note.child("unpitched")) +
                      note.child("instrument").attribute("id").value() +
                      (note.child("cue") ? " cue" : "");
  Edges& edges = music.sounding[voice + pitch];
  for (auto [at, step] : {std::pair{start, 1}, std::pair{start + length, -1}})
    if (!note.child("rest") && (edges[at] += step) == 0)
      edges.erase(at);
  std::string inPart = part + " voice " + note.child_value("voice");
  for (const auto& found : note.select_nodes("tie | notations/* | lyric")) {
    pugi::xml_node mark = found.node();
    std::string_view name = mark.name(), type = mark.attribute("type").value();
    int opens = type == "start" ? 1 : type == "stop" ? -1 : 0;
    if (name == "tie" || name == "tied")
      music.counts[inPart + pitch + " " + mark.name()] += opens;
    else if (name == "tuplet")
      music.counts[inPart + " tuplet " + mark.attribute("number").as_string("1")] += opens;
    else
      ++music.counts[voice + ": " + Text(mark)];
  }
}

Music Read(const std::string& xml) {
  Music music;
  pugi::xml_document doc;
  doc.load_string(xml.c_str());
  for (auto part : doc.child("score-partwise").children("part")) {
    std::string id = part.attribute("id").value();
    Rational divisions = 1;
    int index = 0;
    for (auto measure : part.children("measure")) {
      std::string where = id + " measure " + measure.attribute("number").value() + " (#" +
                          std::to_string(++index) + ")";
      Rational time = 0, chordStart = 0;
      for (auto child : measure.children()) {
        std::string_view name = child.name();
        std::string voice = where + " voice " + child.child_value("voice");
        Rational length =
            child.child("duration") ? ParseDecimal(child.child_value("duration")) / divisions : 0;
        if (name == "backup") {
          time -= length;
        } else if (name == "forward") {
          music.lengths[voice] += length;
          time += length;
        } else if (name == "note" && !child.child("grace")) {
          if (!child.child("chord")) {
            chordStart = time;
            time += length;
            music.lengths[voice] += length;
            ++music.notes[voice];
          }
          ReadNote(music, child, voice, id, chordStart, length);
        } else {
          if (auto d = child.child("divisions"))
            divisions = ParseDecimal(d.child_value());
          Rational at =
              time + (child.child("offset") ? ParseDecimal(child.child_value("offset")) / divisions
                                            : Rational(0));
          pugi::xml_document copy;
          pugi::xml_node element = copy.append_copy(child);
          for (const auto& value : element.select_nodes(".//duration | .//offset | .//divisions"))
            value.node().parent().remove_child(value.node());
          std::string text = Text(element);
          if (text != "<attributes/>") // one that only set the divisions
            ++music.counts[where + " at " + at.ToString() + ": " + text];
        }
      }
    }
  }
  return music;
}

// The first key where `broken(before, after)`, with `what` was broken; empty when none.
template <class Map, class Broken>
std::string FirstBroken(const char* what, const Map& before, const Map& after, Broken broken) {
  std::set<std::string> keys;
  for (const auto* map : {&before, &after})
    for (const auto& entry : *map)
      keys.insert(entry.first);
  for (const auto& key : keys) {
    auto b = before.count(key) ? before.at(key) : typename Map::mapped_type{};
    auto a = after.count(key) ? after.at(key) : typename Map::mapped_type{};
    if (broken(b, a))
      return key + ": " + what;
  }
  return "";
}

} // namespace

Comparison CompareSubdivision(const std::string& input, const std::string& output) {
  Music before = Read(input);
  Music after = Read(output);
  Comparison c{"", before.total, after.total};
  std::string errors = SchemaErrors(output);
  if (!errors.empty() && SchemaErrors(input).empty())
    return c.fault = "the output is not valid: " + errors, c;
  try {
    scribo::musicxml::ImportMusicXml(output, "the output");
  } catch (const std::exception& e) {
    return c.fault = std::string("the output does not import again: ") + e.what(), c;
  }
  auto differ = [](const auto& b, const auto& a) { return b != a; };
  for (std::string fault :
       {FirstBroken("lasts another time", before.lengths, after.lengths, differ),
        FirstBroken("has fewer notes", before.notes, after.notes, std::greater<long>()),
        FirstBroken("sounds at other times", before.sounding, after.sounding, differ),
        FirstBroken("is there another number of times (or its ties or brackets no longer pair "
                    "up)",
                    before.counts, after.counts, differ)})
    if (!fault.empty())
      return c.fault = fault, c;
  return c;
}

} // namespace scoretest
