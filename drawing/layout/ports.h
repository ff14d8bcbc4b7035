// Where lines leave and enter their boxes, each at a place of its own.
#pragma once

#include "layered.h"

namespace vndoc6::drawing {

// The distances between lines side by side, and from a box to a line that leaves it sideways.
constexpr double kLineGap = 12;
constexpr double kSideGap = 14;
// From a box's corner to the next line.
constexpr double kPortMargin = 8;
// The reach of the first line from a box to itself; each further one reaches kLineGap farther.
constexpr double kLoop = 18;

// Finds the main paths: each box is left and entered by one of them at the most, the longest first.
// On them lines are straight.
void FindMainPaths(LayeredGraph& graph);

// Chooses the sides and the places on them. A box widens by what leaves it sideways.
void ChoosePorts(LayeredGraph& graph, const std::vector<LayoutBox>& boxes,
                 const std::vector<LayoutEdge>& edges);

// The edges that lead from each box to itself.
std::vector<std::vector<size_t>> FindLoops(size_t box_count, const std::vector<LayoutEdge>& edges);

}  // namespace vndoc6::drawing
