// Moving the ends of lines along the sides of their boxes, once the boxes have their places.
#pragma once

#include "layered.h"

namespace vndoc6::drawing {

// Towards where the lines go, as far as other ends and the box's corners let them.
void SlidePorts(LayeredGraph& graph, const std::vector<LayoutBox>& boxes);

// Makes straight what is so nearly that a bend would be too short.
void StraightenByPorts(LayeredGraph& graph, const std::vector<LayoutBox>& boxes);

// Makes straight what leaves or enters a box sideways and has room to go there at once.
void ExtendSides(LayeredGraph& graph, const std::vector<LayoutBox>& boxes);

}  // namespace vndoc6::drawing
