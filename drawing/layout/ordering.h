// The order of the cells in each layer: sweeps by weighted medians, with exchanges of neighbours
// (E. R. Gansner, E. Koutsofios, S. C. North, K.-P. Vo, "A Technique for Drawing Directed Graphs",
// 1993, section 3). The cells of a group stay together in each layer, and two groups stand in one
// order in all layers that they share (M. Forster, "Applying Crossing Reduction Strategies to
// Layered Compound Graphs", 2002).
#pragma once

#include "layered.h"

namespace vndoc6::drawing {

// The cells of each layer, from left to right.
using LayerOrder = std::vector<std::vector<size_t>>;

// Orders with the fewest crossings that were found, at most `most`, the first one always.
std::vector<LayerOrder> OrderLayers(LayeredGraph& graph, size_t most);

}  // namespace vndoc6::drawing
