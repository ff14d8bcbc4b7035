// Ways of right angles for lines between figures that have their places: the shortest path with
// few bends in the grid of the figures' sides (M. Wybrow, K. Marriott, P. J. Stuckey, "Orthogonal
// Connector Routing", 2009).
#pragma once

#include <cstddef>
#include <vector>

#include "box_index.h"
#include "geometry.h"

namespace vndoc6::drawing {

struct RouterBox {
  Box box;
  bool has_corners = false;  // lines end in the middle of a side only
};

class Router {
 public:
  explicit Router(const std::vector<RouterBox>& boxes);

  // A line that is there: others had better not run on it, nor cross it.
  void AddLine(const std::vector<Point>& points);

  // The way from one box to another with its ends on their sides; it is added. It runs through no
  // box, unless boxes leave no way at all, or so many lie between that the search would take long.
  std::vector<Point> Between(size_t from, size_t to);

 private:
  std::vector<RouterBox> boxes_;
  BoxIndex figures_;
  BoxIndex parts_;  // of lines
};

}  // namespace vndoc6::drawing
