// Where cells and the ends of lines stand so that all lines together are as short as can be: the
// network simplex on an auxiliary graph (E. R. Gansner, E. Koutsofios, S. C. North, K.-P. Vo, "A
// Technique for Drawing Directed Graphs", 1993, section 4.2), with the ends of lines as nodes of
// their own, which move along the sides of their boxes.
#pragma once

#include "layered.h"

namespace vndoc6::drawing {

// Starts from the places that the cells have. They are whole numbers afterwards.
void Shorten(LayeredGraph& graph, const std::vector<LayoutBox>& boxes, size_t most_pivots);

}  // namespace vndoc6::drawing
