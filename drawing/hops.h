// Where lines of a drawing hop over others.
#pragma once

#include <vector>

#include "picture.h"

namespace vndoc6::drawing {

// For each line of the drawing and each of its parts, where a level part crosses upright parts of
// other lines: x coordinates, ascending. Only lines that are to hop have any, and none have when
// there would be very many.
using Hops = std::vector<std::vector<std::vector<double>>>;
Hops FindHops(const std::vector<Line>& lines);

constexpr double kHopRadius = 4;

}  // namespace vndoc6::drawing
