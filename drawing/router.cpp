#include "router.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vndoc6::drawing {
namespace {

constexpr double kStub = 8;        // of a line before its first and after its last bend
constexpr double kAround = 20;     // beside the figures that a line goes around
constexpr double kCell = 128;      // of the grid
constexpr double kMaxCells = 64;   // of a figure or a part of a line; larger ones are not looked up
constexpr double kFarthest = 1e6;  // figures farther out are not looked up
// What a line avoids, in pixels of detour.
constexpr double kBendCost = 16;
constexpr double kHitCost = 600;
constexpr double kSharedLeaving = 45;  // two lines leave by one side
constexpr double kOpposed = 90;        // one leaves where another enters
constexpr double kUnusualSide = 30;    // enters from below

constexpr std::array kSides = {Side::kBottom, Side::kRight, Side::kLeft, Side::kTop};

Point Direction(Side side) {
  switch (side) {
    case Side::kTop:
      return {0, -1};
    case Side::kRight:
      return {1, 0};
    case Side::kBottom:
      return {0, 1};
    case Side::kLeft:
      break;
  }
  return {-1, 0};
}

double Ahead(Point from, Point to, Side side) {
  const Point direction = Direction(side);
  return (to.x - from.x) * direction.x + (to.y - from.y) * direction.y;
}

bool IsVertical(Side side) { return side == Side::kTop || side == Side::kBottom; }

double Distance(Point a, Point b) { return std::abs(a.x - b.x) + std::abs(a.y - b.y); }

// The coordinate beyond both boxes in the side's direction.
double Beyond(const Box& a, const Box& b, Side side) {
  switch (side) {
    case Side::kTop:
      return std::min(a.top, b.top) - kAround;
    case Side::kRight:
      return std::max(a.Right(), b.Right()) + kAround;
    case Side::kBottom:
      return std::max(a.Bottom(), b.Bottom()) + kAround;
    case Side::kLeft:
      break;
  }
  return std::min(a.left, b.left) - kAround;
}

// Bends at a common coordinate across the direction of both ends.
std::vector<Point> AcrossAt(double middle, Point start, Point end, bool vertical) {
  if (vertical) return {{start.x, middle}, {end.x, middle}};
  return {{middle, start.y}, {middle, end.y}};
}

struct CellRange {
  int64_t left, top, right, bottom;
  static int64_t Cell(double at) { return static_cast<int64_t>(std::floor(at / kCell)); }
  static CellRange Of(Point a, Point b) {
    return {Cell(std::min(a.x, b.x)), Cell(std::min(a.y, b.y)), Cell(std::max(a.x, b.x)),
            Cell(std::max(a.y, b.y))};
  }
};

bool CanBeLookedUp(Point a, Point b) {
  const double far = std::max({std::abs(a.x), std::abs(a.y), std::abs(b.x), std::abs(b.y)});
  if (!(far < kFarthest)) return false;
  return (std::abs(a.x - b.x) / kCell + 1) * (std::abs(a.y - b.y) / kCell + 1) <= kMaxCells;
}

// Calls `visit` with the number of each cell between two points.
template <class Visit>
void ForEachCell(Point a, Point b, Visit&& visit) {
  if (!CanBeLookedUp(a, b)) return;
  const CellRange range = CellRange::Of(a, b);
  for (int64_t y = range.top; y <= range.bottom; ++y) {
    for (int64_t x = range.left; x <= range.right; ++x) visit(y * (int64_t{1} << 32) + x);
  }
}

bool Touches(const Box& box, Point a, Point b) {
  return std::max(a.x, b.x) > box.left && std::min(a.x, b.x) < box.Right() &&
         std::max(a.y, b.y) > box.top && std::min(a.y, b.y) < box.Bottom();
}

}  // namespace

Router::Router(const std::vector<Box>& figures) : figures_(figures), uses_(figures.size() * 4) {
  for (size_t i = 0; i < figures.size(); ++i) {
    const Box& box = figures[i];
    ForEachCell({box.left, box.top}, {box.Right(), box.Bottom()},
                [&](int64_t cell) { grid_[cell].push_back(i); });
  }
}

Route Router::Between(size_t from, const Ends& from_ends, size_t to, const Ends& to_ends) {
  Route best;
  if (from == to) {
    const Box& box = figures_[from];
    const double x = box.Right() + kAround;
    const double y = box.top - kAround;
    const Point start = from_ends[static_cast<size_t>(Side::kRight)];
    const Point end = to_ends[static_cast<size_t>(Side::kTop)];
    return {Side::kRight, Side::kTop, {{x, start.y}, {x, y}, {end.x, y}}};
  }
  double least = -1;
  for (Side from_side : kSides) {
    for (Side to_side : kSides) {
      const Point start = from_ends[static_cast<size_t>(from_side)];
      const Point end = to_ends[static_cast<size_t>(to_side)];
      Route route{from_side, to_side, {}};
      if (!Try(figures_[from], start, figures_[to], end, route)) continue;
      const double cost =
          Cost(route, from, start, to, end) + CrowdCost(from, from_side, to, to_side);
      if (least >= 0 && cost >= least) continue;
      least = cost;
      best = route;
    }
  }
  uses_[from * 4 + static_cast<size_t>(best.from)].leaving = true;
  uses_[to * 4 + static_cast<size_t>(best.to)].entering = true;
  return best;
}

// The bends between two sides; false when there is no plain way.
bool Router::Try(const Box& from, Point start, const Box& to, Point end, Route& route) const {
  const bool vertical = IsVertical(route.from);
  if (route.from == route.to) {
    route.bends = AcrossAt(Beyond(from, to, route.from), start, end, vertical);
    return true;
  }
  if (vertical == IsVertical(route.to)) {
    if (Ahead(start, end, route.from) < 2 * kStub) return false;
    if (std::abs(vertical ? start.x - end.x : start.y - end.y) < .5) return true;
    const double middle = vertical ? (start.y + end.y) / 2 : (start.x + end.x) / 2;
    route.bends = AcrossAt(middle, start, end, vertical);
    return true;
  }
  const Point bend = vertical ? Point{start.x, end.y} : Point{end.x, start.y};
  route.bends = {bend};
  return Ahead(start, bend, route.from) >= kStub && Ahead(end, bend, route.to) >= kStub;
}

double Router::Cost(const Route& route, size_t from, Point start, size_t to, Point end) const {
  double cost = kBendCost * static_cast<double>(route.bends.size());
  Point previous = start;
  const auto add = [&](Point next) {
    cost += Distance(previous, next);
    cost += kHitCost * static_cast<double>(FiguresHit(previous, next, from, to));
    previous = next;
  };
  for (const Point& bend : route.bends) add(bend);
  add(end);
  return cost;
}

size_t Router::FiguresHit(Point a, Point b, size_t from, size_t to) const {
  std::vector<size_t> hit;
  ForEachCell(a, b, [&](int64_t cell) {
    const auto found = grid_.find(cell);
    if (found == grid_.end()) return;
    // Where very many figures are piled up, a few tell enough.
    const size_t count = std::min<size_t>(found->second.size(), 32);
    for (size_t i = 0; i < count; ++i) {
      const size_t figure = found->second[i];
      if (figure != from && figure != to && Touches(figures_[figure], a, b)) hit.push_back(figure);
    }
  });
  std::sort(hit.begin(), hit.end());
  return static_cast<size_t>(std::unique(hit.begin(), hit.end()) - hit.begin());
}

double Router::CrowdCost(size_t from, Side from_side, size_t to, Side to_side) const {
  const Use& leaving = uses_[from * 4 + static_cast<size_t>(from_side)];
  const Use& entering = uses_[to * 4 + static_cast<size_t>(to_side)];
  double cost = 0;
  if (leaving.leaving) cost += kSharedLeaving;
  if (leaving.entering) cost += kOpposed;
  if (entering.leaving) cost += kOpposed;
  if (to_side == Side::kBottom) cost += kUnusualSide;
  return cost;
}

}  // namespace vndoc6::drawing
