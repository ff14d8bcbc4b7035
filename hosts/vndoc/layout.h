// Places boxes that have no place yet: in layers from top to bottom, each as a rule below those
// that lead to it, with lines of right angles between them.
#pragma once

#include <cstddef>
#include <vector>

#include "geometry.h"

namespace vndoc {

struct LayoutEdge {
  size_t from = 0;
  size_t to = 0;
};

struct Layout {
  std::vector<Box> boxes;     // as given, placed; all coordinates from 0 upwards
  std::vector<Route> routes;  // one for each edge
  double width = 0;
  double height = 0;
};

// Takes time in proportion to boxes and edges (and the logarithm of their number); the same input
// gives the same layout. The order of the boxes decides where nothing else does.
Layout LayOut(const std::vector<Box>& boxes, const std::vector<LayoutEdge>& edges);

}  // namespace vndoc
