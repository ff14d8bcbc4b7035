// How much a damaged text looks like that of an object or a collection.
#pragma once

#include <string_view>

#include "content/salvage_entries.h"

namespace vndoc6::salvage {

// A look at the beginning of a text.
class Likeness {
 public:
  // Of a text that has an opening or has lost it.
  Likeness(const DamagedFile& file, const Region& region, bool opened);

  // Up to kMost the more of the text is known there, -1 when most is not, and 0 for a text that
  // says nothing.
  static constexpr int kMost = 4;
  int To(const SavedEntry& what) const;
  // Whether so much is known there that it is no chance.
  bool IsSurely(const SavedEntry& what) const;
  // How many entries are known there, out of how many.
  struct Count {
    int known = 0;
    int all = 0;
  };
  Count CountOf(const SavedEntry& what) const;
  // Whether there are texts in it.
  bool HasTexts() const { return !texts_.empty(); }

 private:
  struct Key {
    std::string_view key;
    bool is_text;
  };
  struct SubText {
    Region region;
    std::string_view key;  // empty when it is lost
  };
  void TakePlain(std::string_view gap);
  Count CountOfObject(const SavedForm& form) const;
  Count CountOfCollection(const SavedEntry& what) const;

  const DamagedFile& file_;
  std::vector<Key> keys_;
  std::vector<SubText> texts_;
  bool is_empty_;
  bool opened_;
};

// Whether one is the other with one byte changed, put in or taken out, or with something before it.
bool IsNearly(std::string_view damaged, std::string_view key);

}  // namespace vndoc6::salvage
