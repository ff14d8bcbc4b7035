// The parts of a damaged file that no damage reached.
#pragma once

#include <cstddef>
#include <vector>

#include "content/salvage_marks.h"
#include "vndoc6/bag/kept_text.h"

namespace vndoc6::salvage {

// An entry of the file that is sound from its key to its closing, with its marks.
struct SoundEntry {
  size_t begin = 0;
  size_t end = 0;
  std::vector<Mark> marks = {};
};

// What can be read from the beginning of the file, of a part or of a member, and is just as it was
// written: a host's keys and texts in it may hold what looks like marks. In the file's order.
std::vector<SoundEntry> FindSoundEntries(const bag::KeptText& file);

}  // namespace vndoc6::salvage
