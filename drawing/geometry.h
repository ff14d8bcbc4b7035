// Points, boxes and sides of a drawing. Pixels (1/96 inch), y downwards.
#pragma once

#include <algorithm>
#include <vector>

namespace vndoc6::drawing {

struct Point {
  double x = 0;
  double y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Box {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;

  double Right() const { return left + width; }
  double Bottom() const { return top + height; }
  double CentreX() const { return left + width / 2; }
  double CentreY() const { return top + height / 2; }
};

inline Box Union(const Box& a, const Box& b) {
  const double left = std::min(a.left, b.left);
  const double top = std::min(a.top, b.top);
  return {left, top, std::max(a.Right(), b.Right()) - left, std::max(a.Bottom(), b.Bottom()) - top};
}

// A side of a figure, where a line leaves or enters it.
enum class Side { kTop, kRight, kBottom, kLeft };

// A line's way between two figures: the sides it joins and the bends between them.
struct Route {
  Side from = Side::kBottom;
  Side to = Side::kTop;
  std::vector<Point> bends;
};

}  // namespace vndoc6::drawing
