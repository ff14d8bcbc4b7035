// The first half of a layout: which layer each box belongs to, and in which order it stands there.
#pragma once

#include <vector>

#include "layout.h"

namespace vndoc6::drawing {

// A box in its layer, or the place where a line passes through one.
struct Cell {
  static constexpr size_t kPassing = static_cast<size_t>(-1);
  size_t box = kPassing;
  size_t layer = 0;
  size_t order = 0;  // within the layer
  size_t band = 0;
  std::vector<size_t> above, below;  // the cells it is joined with in the next layers
};

// Bands are columns, from left to right. A group has a band for itself in all layers from its first
// to its last.
struct Layering {
  std::vector<Cell> cells;                  // the boxes first, under their own numbers
  std::vector<std::vector<size_t>> layers;  // the layers' cells, from left to right
  // For each edge the cells it passes, ends included. Empty for an edge that leads upwards, to its
  // own box, or over very many layers: it goes around the others.
  std::vector<std::vector<size_t>> paths;
  size_t band_count = 1;
};

// `groups` as for LayOut.
Layering MakeLayers(size_t box_count, const std::vector<LayoutEdge>& edges,
                    const std::vector<size_t>& groups = {});

}  // namespace vndoc6::drawing
