// Places boxes that have no place yet: in layers from top to bottom, each as a rule below those
// that lead to it, with lines of right angles between them.
#pragma once

#include <cstddef>
#include <vector>

#include "geometry.h"

namespace vndoc6::drawing {

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

// The boxes of a group (0 is none) stay together: no other box, and no other group, gets between
// them. Empty `groups`: none is in a group.
//
// Takes time in proportion to boxes and edges (and the logarithm of their number); the same input
// gives the same layout. The order of the boxes decides where nothing else does.
Layout LayOut(const std::vector<Box>& boxes, const std::vector<LayoutEdge>& edges,
              const std::vector<size_t>& groups = {});

// So far the frame around a group reaches beyond its boxes, and farther above them.
constexpr double kFrame = 14;
constexpr double kFrameTop = 26;

}  // namespace vndoc6::drawing
