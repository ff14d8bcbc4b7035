// Which edges lead back, so that the others make no circle: those that a depth-first search finds
// leading to a node on its path (E. R. Gansner et al., "A Technique for Drawing Directed Graphs",
// 1993, section 2.1). The search follows nodes and edges in their order, as a procedure is read.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace vndoc6::drawing {

// For each edge (from, to) whether it leads back; an edge of a node to itself does not.
std::vector<bool> FindBackEdges(size_t node_count,
                                const std::vector<std::pair<size_t, size_t>>& edges);

}  // namespace vndoc6::drawing
