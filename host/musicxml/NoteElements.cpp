#include "NoteElements.h"

#include <cstring>
#include <string>

namespace scribo::musicxml {

namespace {

// Position of a child in the note's content model (schema order): grace, cue, chord, pitch,
// unpitched, rest, duration, tie, instrument, footnote, level, voice, type, dot, accidental,
// time-modification, stem, notehead, notehead-text, staff, beam, notations, lyric, play,
// listen. Export asks this for every child it inserts, so it switches on the first letter
// rather than comparing against every name.
int OrderOf(const char* name) {
  auto is = [name](const char* candidate) { return std::strcmp(name, candidate) == 0; };
  switch (name[0]) {
  case 'g':
    return is("grace") ? 0 : 25;
  case 'c':
    return is("cue") ? 1 : is("chord") ? 2 : 25;
  case 'p':
    return is("pitch") ? 3 : is("play") ? 23 : 25;
  case 'u':
    return is("unpitched") ? 4 : 25;
  case 'r':
    return is("rest") ? 5 : 25;
  case 'd':
    return is("duration") ? 6 : is("dot") ? 13 : 25;
  case 't':
    return is("tie") ? 7 : is("type") ? 12 : is("time-modification") ? 15 : 25;
  case 'i':
    return is("instrument") ? 8 : 25;
  case 'f':
    return is("footnote") ? 9 : 25;
  case 'l':
    return is("level") ? 10 : is("lyric") ? 22 : is("listen") ? 24 : 25;
  case 'v':
    return is("voice") ? 11 : 25;
  case 'a':
    return is("accidental") ? 14 : 25;
  case 's':
    return is("stem") ? 16 : is("staff") ? 19 : 25;
  case 'n':
    return is("notehead") ? 17 : is("notehead-text") ? 18 : is("notations") ? 21 : 25;
  case 'b':
    return is("beam") ? 20 : 25;
  default:
    return 25;
  }
}

} // namespace

pugi::xml_node InsertNoteChild(pugi::xml_node note, const char* name) {
  int order = OrderOf(name);
  for (auto child : note.children()) {
    if (child.type() == pugi::node_element && OrderOf(child.name()) > order)
      return note.insert_child_before(name, child);
  }
  return note.append_child(name);
}

pugi::xml_node SetNoteChildText(pugi::xml_node note, const char* name, std::string_view text) {
  pugi::xml_node child = note.child(name);
  if (!child)
    child = InsertNoteChild(note, name);
  child.text().set(std::string(text).c_str());
  return child;
}

void RemoveChildren(pugi::xml_node parent, const char* name) {
  while (auto child = parent.child(name))
    parent.remove_child(child);
}

void RemoveChildren(pugi::xml_node parent, std::initializer_list<const char*> names) {
  for (auto child = parent.first_child(); child;) {
    auto next = child.next_sibling();
    for (const char* name : names)
      if (std::strcmp(child.name(), name) == 0) {
        parent.remove_child(child);
        break;
      }
    child = next;
  }
}

pugi::xml_node NotationsOf(pugi::xml_node note) {
  if (auto notations = note.child("notations"))
    return notations;
  return InsertNoteChild(note, "notations");
}

void RemoveEmptyNotations(pugi::xml_node note) {
  for (auto notations = note.child("notations"); notations;) {
    auto next = notations.next_sibling("notations");
    if (!notations.first_child())
      note.remove_child(notations);
    notations = next;
  }
}

void RemoveUniqueIds(pugi::xml_node node) {
  std::string_view name = node.name();
  if (name != "instrument" && name != "play")
    node.remove_attribute("id");
  for (auto child : node.children())
    if (child.type() == pugi::node_element)
      RemoveUniqueIds(child);
}

} // namespace scribo::musicxml
