// Layers for the nodes of an acyclic graph, such that edges are as short as can be in sum: the
// network simplex of E. R. Gansner, E. Koutsofios, S. C. North, K.-P. Vo, "A Technique for Drawing
// Directed Graphs" (1993), section 2.
#pragma once

#include <cstddef>
#include <vector>

namespace vndoc6::drawing {

struct RankEdge {
  size_t tail = 0;
  size_t head = 0;
  int length = 1;  // the least
  int weight = 1;
};

// The layer of each node, from 0 on in each part of the graph. After `most_pivots` exchanges of
// edges the layers are right, though not the best.
std::vector<int> RankNodes(size_t node_count, const std::vector<RankEdge>& edges,
                           size_t most_pivots);
// The same from ranks that keep all lengths. Lengths may be negative, and edges make circles.
std::vector<int> RankNodes(const std::vector<int>& start, const std::vector<RankEdge>& edges,
                           size_t most_pivots);

}  // namespace vndoc6::drawing
