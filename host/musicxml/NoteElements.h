// Editing a MusicXML <note> in place: children in the order the schema requires, so that an
// edited note stays valid wherever the source put its other elements.
#pragma once

#include <initializer_list>
#include <string_view>

#include <pugixml.hpp>

namespace scribo::musicxml {

// Inserts a new child `name` into `note` at the place the note's content model gives it:
// after every child that must precede it and before the first that must follow.
pugi::xml_node InsertNoteChild(pugi::xml_node note, const char* name);

// Sets the text of the child `name`, inserting the child where it belongs when missing.
pugi::xml_node SetNoteChildText(pugi::xml_node note, const char* name, std::string_view text);

// Removes every child called `name`.
void RemoveChildren(pugi::xml_node parent, const char* name);

// Removes every child called by one of `names`, in one pass over the children.
void RemoveChildren(pugi::xml_node parent, std::initializer_list<const char*> names);

// The note's first <notations>, made when it has none.
pugi::xml_node NotationsOf(pugi::xml_node note);

// Drops <notations> elements that have nothing left in them.
void RemoveEmptyNotations(pugi::xml_node note);

// Removes the "id" attributes that must stay unique in a document from the node and all its
// descendants (a copied note). An "id" that refers to something declared elsewhere (the part's
// instrument a note plays, <instrument id="P1-I3"/> or <play id="...">) is kept: the copy plays
// the same instrument.
void RemoveUniqueIds(pugi::xml_node node);

} // namespace scribo::musicxml
