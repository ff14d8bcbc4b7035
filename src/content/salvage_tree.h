// What was read of a damaged file: the texts that it should have held, and writing them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "document/saved_form.h"
#include "vndoc6/content/salvage.h"

namespace vndoc6::salvage {

struct Field;

// A text in a document's file. Views are into the damaged file.
struct Node {
  const SavedEntry* what = nullptr;
  size_t offset = 0;  // in the damaged file
  // As it lies there, when nothing is wrong with it. Else its text, fields or members are what it
  // holds.
  bool is_whole = false;
  std::string_view raw;
  uint32_t depth = 0;         // so many texts lie around it
  std::string text;           // of a text
  std::vector<Field> fields;  // of an object or a bag
  std::vector<Node> members;  // of a collection
  // Of a member: its entry's key as it lies there, empty when that is lost.
  std::string_view key;
  // How the file ends it, where that is known.
  std::string_view closing;

  bool IsEmpty() const;
};

struct Field {
  const SavedEntry* entry = nullptr;  // null for a key that is not known, or a host's
  std::string_view key;               // as it lies there
  std::string_view plain;             // of what is no text: "=", its value, ":"
  Node content;                       // of a text
};

// Whether an object's entries go on where those of the one before it ended: what is in between was
// put there by damage. Both are members of one collection.
bool GoesOn(const Node& before, const Node& after);
// Adds what a part was torn into. What is in both stays as it is in the first.
void Join(Node& node, Node more);

// The text of a whole document. Members whose keys are lost or taken get others, and members of
// collections by position new positions. Adds what every save writes and is not there.
std::string WriteDocument(Node& document, std::vector<Damage>& damages);

// The marks around a text that lies in so many others.
std::string Opening(uint32_t depth);
std::string Closing(uint32_t depth);
// A key as it is meant, in UTF-8, of an entry that lies in so many texts.
std::string PlainKey(std::string_view key, uint32_t depth);
// The place of what lies there.
std::string Below(const std::string& place, const std::string& name);

}  // namespace vndoc6::salvage
