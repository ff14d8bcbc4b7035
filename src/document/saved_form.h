// SavedForm: what objects of a class write into a file, for readers that go by the text alone.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vndoc6 {

struct SavedForm;

// One entry of an object's text, and what its value is.
struct SavedEntry {
  enum class Kind {
    kValue,       // a number, a Boolean, a date, a picture
    kPoints,      // Longs under "EPX_1", "EPY_1", "EPX_2", ...: see PointOrder
    kText,        // a text that means nothing here
    kBag,         // a host's bag
    kObject,      // the text of an object of class `part`
    kCollection,  // one entry for each member, of class `part`
  };

  std::string key;
  char tag = '"';  // as in BagEntry; 'b' for a Boolean
  Kind kind = Kind::kText;
  bool always = true;  // written whatever the object holds
  const SavedForm* part = nullptr;
  std::string prefix = {};  // of a collection's keys
  bool keyed = false;       // what follows the prefix is the member's "K", else its position

  bool Has(std::string_view sought) const;
};

// Points come with both their values, by their numbers, of which some may be left out.
class PointOrder {
 public:
  // False when the entry with that key does not come next.
  bool Take(std::string_view key);
  // Whether no value is missing at the end.
  bool IsComplete() const { return !is_y_next_; }

 private:
  uint32_t last_ = 0;
  bool is_y_next_ = false;
};

struct SavedForm {
  std::vector<SavedEntry> entries;  // in the file's order
  SavedEntry self;                  // an object of the class: no entry, but what it is

  const SavedEntry* Find(std::string_view key) const;
};

// A document's: the others are its parts.
const SavedForm& DocumentForm();

// All that can lie so many texts deep in a document's file: its parts (1), their members (2), ...
// Only objects and collections.
const std::vector<const SavedEntry*>& PartsAtDepth(uint32_t depth);

// Objects and collections lie no deeper than this.
inline constexpr uint32_t kDeepestPart = 4;

}  // namespace vndoc6
