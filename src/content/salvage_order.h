// What the entries of a damaged text belong to.
#pragma once

#include <cstddef>
#include <vector>

#include "content/salvage_entries.h"
#include "document/saved_form.h"

namespace vndoc6::salvage {

// What is to be given its place: an entry, or a part that came up in another part.
struct Item {
  const FoundEntry* entry = nullptr;
  const SavedEntry* part = nullptr;
};

struct Place {
  // An item that belongs nowhere has none.
  const SavedEntry* entry = nullptr;
  // The object or collection that it is an entry of. Where closings and openings were lost
  // together, one text has several of them, counted by `number`.
  const SavedEntry* whole = nullptr;
  size_t number = 0;
};

// The places of a text's items, which come in the file's order. The text was to be that of `what`,
// with so many texts around it. Items are known by their keys, by what lies in them and by the
// order in which objects write their entries: those places are found that explain most of them.
std::vector<Place> Arrange(const DamagedFile& file, const std::vector<Item>& items,
                           const SavedEntry& what, uint32_t depth);

}  // namespace vndoc6::salvage
