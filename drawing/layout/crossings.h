// Counting crossings between two layers: W. Barth, P. Mutzel, M. Juenger, "Simple and Efficient
// Bilayer Cross Counting" (2002).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vndoc6::drawing {

// A line between two layers: its places in them, from 0 on. A crossing counts the product of both
// weights.
struct Crosser {
  size_t upper = 0;
  size_t lower = 0;
  int64_t weight = 1;
};

// In time E log V. Puts the lines into order.
int64_t CountCrossings(std::vector<Crosser>& lines, size_t lower_count);

}  // namespace vndoc6::drawing
