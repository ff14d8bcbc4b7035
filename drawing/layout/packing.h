// Parts of a chart that no line joins, side by side and in rows, so that the whole has the shape of
// a page: shelves, as in E. G. Coffman, M. R. Garey, D. S. Johnson, R. E. Tarjan, "Performance
// Bounds for Level-Oriented Two-Dimensional Packing Algorithms" (1980), next fit, in the parts' own
// order.
#pragma once

#include <vector>

#include "../geometry.h"

namespace vndoc6::drawing {

// Places the boxes from 0 on, with that distance between them.
void Pack(std::vector<Box>& parts, double gap);

}  // namespace vndoc6::drawing
