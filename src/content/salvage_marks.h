// The openings and closings of a damaged file, made to fit each other again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace vndoc6::salvage {

// Where a text in a text begins or ends. Its level is the number of texts around it, which its
// escape names: that is what damage can be told by.
struct Mark {
  size_t at = 0;
  uint8_t size = 0;
  uint8_t level = 0;
  bool opens = false;
  // Whether there is anything in the file; else it is missing somewhere before `at`.
  bool is_there = true;
  // Whether it says there what it is taken for.
  bool spelled = true;
  bool sound = false;  // known to be what it says
  size_t partner = 0;  // the closing of an opening, and the other way round

  size_t end() const { return at + size; }
};

struct SoundEntry;

// The marks down to the level of the deepest parts, each with its partner: what the file says, with
// the fewest changes that make all of it fit. A mark that fits nowhere is left out, one that is
// missing is put in. In linear time. Of sound entries the marks are known.
std::vector<Mark> FittedMarks(std::string_view file, std::vector<SoundEntry> sound);

}  // namespace vndoc6::salvage
