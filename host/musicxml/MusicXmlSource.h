// The parsed MusicXML file and the links from each imported entry back to the elements it came
// from. Export edits this tree in place, so everything the engine does not model (lyrics,
// dynamics, directions, layout, voices beyond the fourth, grace notes) survives untouched.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <pugixml.hpp>

#include "Rational.h"
#include "ScoreModel.h"

namespace scribo::musicxml {

// One entry's source: a note, or a chord's notes, or a rest.
struct SourceGroup {
  std::vector<pugi::xml_node> notes; // the first note, then the notes that carry <chord/>
  int part = 0;
  int measure = 0; // index into Score::measures
  int staff = 0;   // index into Score::staves
  int layer = 0;
  Rational ticks;               // the duration as written, in the divisions in force
  Rational divisions;           // ticks per quarter where the group stands
  Rational ratio = 1;           // normal/actual of its time-modification; 1 outside tuplets
  std::vector<int> openTuplets; // bracket numbers open at this group
  Entry imported;               // the entry as imported, to tell what an edit changed
};

struct PartSource {
  std::string id;
  std::string name;
  int firstStaff = 0; // index of its first staff in Score::staves
  int staffCount = 1;
  std::vector<pugi::xml_node> measures;
  std::vector<Rational> divisionsAtStart; // per measure, before its first element
  std::vector<Rational> divisionsAtEnd;   // per measure, after its last element
};

// A file inside a compressed (.mxl) archive other than the score itself.
struct ArchiveMember {
  std::string name;
  std::string bytes;
};

struct MusicXmlSource {
  std::unique_ptr<pugi::xml_document> doc = std::make_unique<pugi::xml_document>();
  std::vector<PartSource> parts;
  std::vector<SourceGroup> groups;
  std::vector<std::string> notices; // told to the user once, after import

  // Set when the score came from a compressed archive: its path inside the archive and the
  // archive's other members, which a compressed output keeps.
  bool fromArchive = false;
  std::string archivePath;
  std::vector<ArchiveMember> archiveMembers;
};

} // namespace scribo::musicxml
