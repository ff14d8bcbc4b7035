// The text of a damaged file, mended so that a fault costs the entry it lies in and no other.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vndoc {

struct Mended {
  struct Place {
    std::string key;  // the keys that lead there, with slashes
    size_t offset;    // in the file, in bytes
  };
  std::string text;
  std::vector<Place> places;  // where it was mended
  bool breaks_off = false;    // within a part
};

// Looks at the document's parts and at their entries (its steps, its links) only: a fault further
// down does not reach beyond the entry around it, for a value ends at the closing of its own level.
// A text that breaks off is left open.
Mended Mend(std::string_view file);

}  // namespace vndoc
