#include "crossings.h"

#include <algorithm>

namespace vndoc6::drawing {

int64_t CountCrossings(std::vector<Crosser>& lines, size_t lower_count) {
  std::sort(lines.begin(), lines.end(), [](const Crosser& a, const Crosser& b) {
    return a.upper != b.upper ? a.upper < b.upper : a.lower < b.lower;
  });
  // The accumulator tree: its leaves are the lower places, each node the weight of what is below.
  size_t first_leaf = 1;
  while (first_leaf < lower_count) first_leaf *= 2;
  std::vector<int64_t> tree(2 * first_leaf);
  int64_t crossings = 0;
  for (const Crosser& line : lines) {
    size_t node = first_leaf + line.lower;
    tree[node] += line.weight;
    while (node > 1) {
      if (node % 2 == 0) crossings += tree[node + 1] * line.weight;
      node /= 2;
      tree[node] += line.weight;
    }
  }
  return crossings;
}

}  // namespace vndoc6::drawing
