// Layers of their own for the labels of lines, between those of the boxes: each label stands beside
// its own line, next to the box that the line leaves, where no other line and no box gets (the
// virtual nodes for labels of E. R. Gansner, E. Koutsofios, S. C. North, K.-P. Vo, "A Technique for
// Drawing Directed Graphs", 1993, section 5.3).
#pragma once

#include "layered.h"

namespace vndoc6::drawing {

// The graph, its layers in order, with the labels' layers.
LayeredGraph WithLabelLayers(const LayeredGraph& graph, const std::vector<LayoutEdge>& edges);

}  // namespace vndoc6::drawing
