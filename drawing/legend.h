// What the shapes of a chart are called.
#pragma once

#include <vector>

#include "picture.h"

namespace vndoc6::drawing {

struct Legend {
  struct Entry {
    Figure sample;  // from the legend's corner on; its name stands on its right
  };
  std::vector<Entry> entries;
  double height = 0;
};

// The shapes of a drawing's steps, each once, in the order of the steps, in rows as wide as a box.
Legend LegendOf(const Drawing& drawing, const Box& extent);

}  // namespace vndoc6::drawing
