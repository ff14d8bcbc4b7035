// Places boxes that have no place yet: in layers from top to bottom, each as a rule below those
// that lead to it, with lines of right angles between them.
#pragma once

#include <cstddef>
#include <vector>

#include "../geometry.h"

namespace vndoc6::drawing {

struct LayoutBox {
  double width = 0;
  double height = 0;
  // Lines leave such a box at its corners (a decision), not anywhere on its sides.
  bool has_corners = false;
};

struct LayoutEdge {
  size_t from = 0;
  size_t to = 0;
  double label_width = 0;  // 0 for no label
  double label_height = 0;
};

struct ChartLayout {
  std::vector<Box> boxes;  // all coordinates from 0 upwards
  // For each edge all its points, the ends on the sides of the boxes included.
  std::vector<std::vector<Point>> lines;
  std::vector<Box> labels;  // for each edge; of no width where there is no label
  std::vector<Box> frames;  // for each group, from 1 on; the first is empty
  double width = 0;
  double height = 0;
};

struct LayoutStyle {
  bool to_right = false;  // the layers stand beside each other, not below
  // Each group has a lane of its own from the first layer to the last; boxes without a group share
  // no lane.
  bool lanes = false;
};

// The boxes of a group (0 is none) stay together: no other box, and no other group, gets between
// them. Empty `groups`: none is in a group. A group's frame is at least as wide as its title.
//
// No line runs through a box or a label; no label lies on anything but its own line. The same input
// gives the same layout. The order of the boxes decides where nothing else does.
ChartLayout LayOut(const std::vector<LayoutBox>& boxes, const std::vector<LayoutEdge>& edges,
                   const std::vector<size_t>& groups = {},
                   const std::vector<double>& title_widths = {}, const LayoutStyle& style = {});

// So far the frame around a group reaches beyond its boxes, and farther above them.
constexpr double kFrameMargin = 14;
constexpr double kFrameTop = 26;

}  // namespace vndoc6::drawing
