#include "NoteElements.h"

#include <array>
#include <string>

namespace scribo::musicxml {

namespace {

// The children of <note> in schema order; "tie" follows "duration", "beam" precedes
// "notations".
constexpr std::array<std::string_view, 25> kNoteOrder{
    "grace",      "cue",       "chord",         "pitch",
    "unpitched",  "rest",      "duration",      "tie",
    "instrument", "footnote",  "level",         "voice",
    "type",       "dot",       "accidental",    "time-modification",
    "stem",       "notehead",  "notehead-text", "staff",
    "beam",       "notations", "lyric",         "play",
    "listen"};

int OrderOf(std::string_view name) {
  for (size_t i = 0; i < kNoteOrder.size(); ++i)
    if (kNoteOrder[i] == name)
      return static_cast<int>(i);
  return static_cast<int>(kNoteOrder.size());
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

void RemoveAttributeDeep(pugi::xml_node node, const char* attribute) {
  node.remove_attribute(attribute);
  for (auto child : node.children())
    if (child.type() == pugi::node_element)
      RemoveAttributeDeep(child, attribute);
}

} // namespace scribo::musicxml
