// Where layers lie, and the lines between the boxes in them.
#pragma once

#include "layered.h"

namespace vndoc6::drawing {

// The whole drawing of a graph whose cells have their places across.
ChartLayout Draw(LayeredGraph& graph, const std::vector<LayoutBox>& boxes,
                 const std::vector<LayoutEdge>& edges);

}  // namespace vndoc6::drawing
