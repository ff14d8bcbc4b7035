// Shortens what the alignments left: blocks of cells that straight lines join move, with all that
// stands in their way, to where their lines are shortest (the pendulum method of G. Sander, "A Fast
// Heuristic for Hierarchical Manhattan Layout", 1996).
#pragma once

#include "layered.h"

namespace vndoc6::drawing {

// A line has no part between two bends shorter than this.
constexpr double kShortest = 10;

// Moves the cells within their layers.
void Tighten(LayeredGraph& graph, int rounds);

// Makes lines straight that then save more than others get longer.
void Straighten(LayeredGraph& graph);

// Makes lines straight that nearly are, or else less so.
void AvoidJogs(LayeredGraph& graph, const std::vector<LayoutBox>& boxes);

// Lengths across and bends, as a number to compare.
double CostOf(const LayeredGraph& graph);

}  // namespace vndoc6::drawing
