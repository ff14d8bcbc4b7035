#include "router.h"

#include <array>
#include <limits>
#include <queue>

namespace vndoc6::drawing {
namespace {

constexpr double kStub = 14;          // of a line before its first and after its last bend
constexpr double kTrackGap = 10;      // between lines beside a figure
constexpr int kTracks = 3;            // beside each
constexpr double kClear = 8;          // so near to a figure no other's line gets
constexpr double kPortGap = 12;       // between the ends of lines on a side
constexpr double kPortMargin = 8;     // from a corner to the next end
constexpr size_t kMostBoxes = 60;     // that a search knows
constexpr size_t kMostParts = 1'500;  // of lines
constexpr size_t kMostVisits = 40'000;
// What a line avoids, in pixels of detour.
constexpr double kBend = 30;
constexpr double kCrossing = 30;
constexpr double kShared = 200;
constexpr double kSharedEnd = 300;  // a way that begins or ends on another is read wrongly
constexpr double kOffCentre = 8;    // for each place beside the middle of a side
constexpr double kSideways = 10;    // leaves or enters at the left or at the right
constexpr double kBackwards = 30;   // leaves at the top, enters from below

struct Port {
  Point at;
  Side side;
  double cost;
};

bool IsUpright(Side side) { return side == Side::kTop || side == Side::kBottom; }

Point Beyond(const Port& port, double by) {
  switch (port.side) {
    case Side::kTop:
      return {port.at.x, port.at.y - by};
    case Side::kRight:
      return {port.at.x + by, port.at.y};
    case Side::kBottom:
      return {port.at.x, port.at.y + by};
    case Side::kLeft:
      break;
  }
  return {port.at.x - by, port.at.y};
}

double SideCost(Side side, bool leaving) {
  if (!IsUpright(side)) return kSideways;
  return (side == Side::kBottom) == leaving ? 0 : kBackwards;
}

void AddPorts(const RouterBox& figure, Side side, bool leaving, std::vector<Port>& ports) {
  constexpr int kMost = 3;  // on each side of the middle
  const Box& box = figure.box;
  const bool upright = IsUpright(side);
  const double half = (upright ? box.width : box.height) / 2 - kPortMargin;
  for (int i = -kMost; i <= kMost; ++i) {
    const double off = i * kPortGap;
    if (i != 0 && (figure.has_corners || std::abs(off) > half)) continue;
    const Point at =
        upright
            ? Point{std::round(box.CentreX() + off), side == Side::kTop ? box.top : box.Bottom()}
            : Point{side == Side::kLeft ? box.left : box.Right(), std::round(box.CentreY() + off)};
    ports.push_back({at, side, SideCost(side, leaving) + kOffCentre * std::abs(i)});
  }
}

constexpr std::array kSides = {Side::kBottom, Side::kRight, Side::kLeft, Side::kTop};

std::vector<Port> PortsOf(const RouterBox& figure, bool leaving) {
  std::vector<Port> ports;
  for (const Side side : kSides) AddPorts(figure, side, leaving, ports);
  return ports;
}

// Finds one way in the grid of the lines beside the figures near it.
class Search {
 public:
  Search(const BoxIndex& figures, const std::vector<size_t>& near, const BoxIndex& lines,
         const std::vector<size_t>& parts)
      : figures_(figures), near_(near), lines_(lines), parts_(parts) {}

  std::vector<Point> Run(const std::vector<Port>& from, const std::vector<Port>& to) {
    MakeGrid(from, to);
    MarkFigures();
    MarkLines();
    return Find(from, to);
  }

 private:
  static constexpr double kClosed = 1e9;
  // Headings, as numbers: up, right, down, left.
  static constexpr std::array<int, 4> kAcross = {0, 1, 0, -1};
  static constexpr std::array<int, 4> kDown = {-1, 0, 1, 0};

  static void Sort(std::vector<double>& places) {
    std::sort(places.begin(), places.end());
    const auto same = [](double a, double b) { return b - a < .5; };
    places.erase(std::unique(places.begin(), places.end(), same), places.end());
  }

  void MakeGrid(const std::vector<Port>& from, const std::vector<Port>& to) {
    for (const size_t number : near_) {
      const Box& box = figures_.At(number);
      for (int track = 0; track < kTracks; ++track) {
        const double away = kStub + kTrackGap * track;
        xs_.insert(xs_.end(), {box.left - away, box.Right() + away});
        ys_.insert(ys_.end(), {box.top - away, box.Bottom() + away});
      }
    }
    for (const auto* ports : {&from, &to}) {
      for (const Port& port : *ports)
        (IsUpright(port.side) ? xs_ : ys_).push_back(IsUpright(port.side) ? port.at.x : port.at.y);
    }
    Sort(xs_);
    Sort(ys_);
    level_.assign(xs_.size() * ys_.size(), 0);
    upright_ = level_;
  }

  size_t Cell(size_t x, size_t y) const { return y * xs_.size() + x; }
  static size_t IndexOf(const std::vector<double>& places, double at) {
    return static_cast<size_t>(std::lower_bound(places.begin(), places.end(), at - .5) -
                               places.begin());
  }

  // Calls `visit` with each part of the grid (from a cell to the next one right or below) that
  // gets into a box.
  template <class Visit>
  void ForEachPart(const Box& box, bool level, Visit&& visit) const {
    const auto& along = level ? xs_ : ys_;
    const auto& across = level ? ys_ : xs_;
    const double low = level ? box.top : box.left, high = level ? box.Bottom() : box.Right();
    const double begin = level ? box.left : box.top, end = level ? box.Right() : box.Bottom();
    const auto first = std::upper_bound(across.begin(), across.end(), low) - across.begin();
    for (auto i = static_cast<size_t>(first); i < across.size() && across[i] < high; ++i) {
      auto k =
          static_cast<size_t>(std::upper_bound(along.begin(), along.end(), begin) - along.begin());
      k -= k > 0 ? 1 : 0;
      for (; k + 1 < along.size() && along[k] < end; ++k) {
        visit(level ? Cell(k, i) : Cell(i, k), along[k + 1] - along[k]);
      }
    }
  }

  void MarkFigures() {
    for (const size_t number : near_) {
      const Box box = Grown(figures_.At(number), kClear);
      ForEachPart(box, true, [&](size_t cell, double) { level_[cell] = kClosed; });
      ForEachPart(box, false, [&](size_t cell, double) { upright_[cell] = kClosed; });
    }
  }

  void MarkLines() {
    constexpr double kNear = 7;
    for (const size_t number : parts_) {
      const Box& part = lines_.At(number);
      const bool level = part.width > part.height;
      const Box beside = level ? Box{part.left, part.top - kNear, part.width, 2 * kNear}
                               : Box{part.left - kNear, part.top, 2 * kNear, part.height};
      auto& same = level ? level_ : upright_;
      auto& other = level ? upright_ : level_;
      ForEachPart(beside, level,
                  [&](size_t cell, double length) { same[cell] += kShared + length; });
      const Box thin = level ? Box{part.left, part.top - .1, part.width, .2}
                             : Box{part.left - .1, part.top, .2, part.height};
      ForEachPart(thin, !level, [&](size_t cell, double) { other[cell] += kCrossing; });
    }
  }

  struct Visit {
    double estimate;
    size_t state;
    bool operator>(const Visit& other) const {
      return estimate != other.estimate ? estimate > other.estimate : state > other.state;
    }
  };

  // What the line before its first or after its last bend costs.
  double StubCost(const Port& port) const {
    const Point end = Beyond(port, kStub);
    Box stub = Around(port.at, end);
    for (const size_t number : near_) {
      if (Overlaps(Grown(stub, -.1), figures_.At(number))) return kClosed;
    }
    stub = IsUpright(port.side) ? Box{stub.left - 5, stub.top, 10, stub.height}
                                : Box{stub.left, stub.top - 5, stub.width, 10};
    double cost = port.cost;
    for (const size_t number : parts_) {
      if (Overlaps(stub, Grown(lines_.At(number), .1))) cost += kSharedEnd;
    }
    return cost;
  }

  size_t CellOf(Point point) const { return Cell(IndexOf(xs_, point.x), IndexOf(ys_, point.y)); }

  double LeastTo(const std::vector<Point>& goals, size_t cell) const {
    double least = std::numeric_limits<double>::max();
    const double x = xs_[cell % xs_.size()], y = ys_[cell / xs_.size()];
    for (const Point& goal : goals) {
      least = std::min(least, std::abs(goal.x - x) + std::abs(goal.y - y));
    }
    return least;
  }

  std::vector<Point> Find(const std::vector<Port>& from, const std::vector<Port>& to) {
    const size_t count = level_.size() * 4;
    std::vector<double> cost(count, kClosed);
    before_.assign(count, count);
    start_.assign(count, 0);
    std::vector<Point> goals;
    std::vector<std::pair<size_t, size_t>> ends;  // cell, port
    std::vector<double> end_cost;
    for (size_t i = 0; i < to.size(); ++i) {
      end_cost.push_back(StubCost(to[i]));
      if (end_cost.back() >= kClosed) continue;
      goals.push_back(Beyond(to[i], kStub));
      ends.emplace_back(CellOf(goals.back()), i);
    }
    if (goals.empty()) return {};
    std::sort(ends.begin(), ends.end());
    std::priority_queue<Visit, std::vector<Visit>, std::greater<>> open;
    for (size_t i = 0; i < from.size(); ++i) {
      const double stub = StubCost(from[i]);
      const size_t cell = CellOf(Beyond(from[i], kStub));
      const size_t state = cell * 4 + static_cast<size_t>(from[i].side);
      if (stub >= cost[state]) continue;
      cost[state] = stub;
      start_[state] = i;
      open.push({stub + LeastTo(goals, cell), state});
    }
    double best = kClosed;
    size_t best_state = count, best_port = 0;
    for (size_t visits = 0; !open.empty() && visits < kMostVisits; ++visits) {
      const Visit visit = open.top();
      open.pop();
      if (visit.estimate >= best) break;
      const size_t state = visit.state, cell = state / 4, heading = state % 4;
      for (auto end = std::lower_bound(ends.begin(), ends.end(), std::pair(cell, size_t{0}));
           end != ends.end() && end->first == cell; ++end) {
        // Sides have the numbers of the headings that lead away from them.
        const size_t arriving = (static_cast<size_t>(to[end->second].side) + 2) % 4;
        if ((arriving + 2) % 4 == heading) continue;
        const double total =
            cost[state] + end_cost[end->second] + (arriving == heading ? 0 : TurnCost(state));
        if (total >= best) continue;
        best = total;
        best_state = state;
        best_port = end->second;
      }
      for (size_t next = 0; next < 4; ++next) {
        if ((next + 2) % 4 == heading) continue;
        const auto [cell_there, step] = Step(cell, next);
        if (step >= kClosed) continue;
        const double total = cost[state] + step + (next == heading ? 0 : TurnCost(state));
        const size_t there = cell_there * 4 + next;
        if (total >= cost[there]) continue;
        cost[there] = total;
        before_[there] = state;
        start_[there] = start_[state];
        open.push({total + LeastTo(goals, cell_there), there});
      }
    }
    if (best_state == count) return {};
    return WayTo(best_state, from[start_[best_state]], to[best_port]);
  }

  // A turn soon after another one is hard to see.
  double TurnCost(size_t state) const {
    constexpr double kShortest = 9;
    constexpr double kJog = 150;
    size_t start = state;
    while (before_[start] < before_.size() && before_[start] % 4 == state % 4) {
      start = before_[start];
    }
    if (before_[start] >= before_.size()) return kBend;
    const size_t a = state / 4, b = before_[start] / 4;
    const double length = std::abs(xs_[a % xs_.size()] - xs_[b % xs_.size()]) +
                          std::abs(ys_[a / xs_.size()] - ys_[b / xs_.size()]);
    return length < kShortest ? kBend + kJog : kBend;
  }

  std::pair<size_t, double> Step(size_t cell, size_t heading) const {
    const size_t x = cell % xs_.size(), y = cell / xs_.size();
    const bool forwards = kAcross[heading] + kDown[heading] > 0;
    const bool level = kAcross[heading] != 0;
    const size_t at = level ? x : y;
    const auto& places = level ? xs_ : ys_;
    if (forwards ? at + 1 == places.size() : at == 0) return {cell, kClosed};
    const size_t part = forwards ? cell : cell - (level ? 1 : xs_.size());
    const double length = forwards ? places[at + 1] - places[at] : places[at] - places[at - 1];
    const size_t there = forwards ? cell + (level ? 1 : xs_.size()) : part;
    return {there, length + (level ? level_ : upright_)[part]};
  }

  std::vector<Point> WayTo(size_t state, const Port& from, const Port& to) const {
    std::vector<Point> points = {to.at};
    const auto add = [&](Point point) {
      while (points.size() > 1) {
        const Point& a = points[points.size() - 2];
        const Point& b = points.back();
        if (!(a.x == b.x && b.x == point.x) && !(a.y == b.y && b.y == point.y)) break;
        points.pop_back();
      }
      if (!(points.back() == point)) points.push_back(point);
    };
    for (; state < before_.size(); state = before_[state]) {
      const size_t cell = state / 4;
      add({xs_[cell % xs_.size()], ys_[cell / xs_.size()]});
    }
    add(from.at);
    MeetPort(points, to);
    std::reverse(points.begin(), points.end());
    MeetPort(points, from);
    return points;
  }

  // The grid's line may be a part of a pixel beside the port, where the way begins.
  static void MeetPort(std::vector<Point>& points, const Port& port) {
    constexpr double kSame = .5;
    double Point::*const across = IsUpright(port.side) ? &Point::x : &Point::y;
    for (size_t i = 1; i + 1 < points.size(); ++i) {
      if (std::abs(points[i].*across - port.at.*across) >= kSame) break;
      points[i].*across = port.at.*across;
    }
    if (points.size() > 2 && points[0] == points[1]) points.erase(points.begin());
  }

  const BoxIndex& figures_;
  const std::vector<size_t>& near_;
  const BoxIndex& lines_;
  const std::vector<size_t>& parts_;
  std::vector<double> xs_, ys_;
  // What it costs beside its length to go from a cell to the next one on its right, and below.
  std::vector<double> level_, upright_;
  std::vector<size_t> before_, start_;
};

// Where nothing else is found: by the sides that look at each other, whatever lies between.
std::vector<Point> PlainWay(const Box& from, const Box& to) {
  const Point a{from.CentreX(), from.CentreY()}, b{to.CentreX(), to.CentreY()};
  if (std::abs(b.y - a.y) * 2 >= std::abs(b.x - a.x)) {
    const bool down = b.y >= a.y;
    const Point start{a.x, down ? from.Bottom() : from.top}, end{b.x, down ? to.top : to.Bottom()};
    const double middle = (start.y + end.y) / 2;
    if (start.x == end.x) return {start, end};
    return {start, {start.x, middle}, {end.x, middle}, end};
  }
  const bool right = b.x >= a.x;
  const Point start{right ? from.Right() : from.left, a.y}, end{right ? to.left : to.Right(), b.y};
  const double middle = (start.x + end.x) / 2;
  if (start.y == end.y) return {start, end};
  return {start, {middle, start.y}, {middle, end.y}, end};
}

// A straight line between sides that face each other, for boxes too near each other for bends too.
class StraightWay {
 public:
  StraightWay(const RouterBox& from, const RouterBox& to, const BoxIndex& figures,
              const BoxIndex& lines)
      : from_(from), to_(to), figures_(figures), lines_(lines) {}

  std::vector<Point> Find() const {
    for (const bool upright : {true, false}) {
      for (const double at : Places(upright)) {
        const std::vector<Point> way = At(at, upright);
        if (!way.empty() && IsFree(way, upright)) return way;
      }
    }
    return {};
  }

 private:
  // From the middle of the one or the other on.
  std::vector<double> Places(bool upright) const {
    const auto range = [&](const RouterBox& figure) {
      const Box& box = figure.box;
      const double centre = std::round(upright ? box.CentreX() : box.CentreY());
      const double half = (upright ? box.width : box.height) / 2 - kPortMargin;
      const double reach = figure.has_corners ? 0 : std::max(half, 0.0);
      return std::array{centre, centre - reach, centre + reach};
    };
    const auto a = range(from_), b = range(to_);
    const double low = std::max(a[1], b[1]), high = std::min(a[2], b[2]);
    std::vector<double> places;
    for (const double centre : {a[0], b[0], std::round((low + high) / 2)}) {
      for (const double off : {0.0, kPortGap, -kPortGap, 2 * kPortGap, -2 * kPortGap}) {
        if (centre + off >= low && centre + off <= high) places.push_back(centre + off);
      }
    }
    return places;
  }

  std::vector<Point> At(double at, bool upright) const {
    const Box &a = from_.box, &b = to_.box;
    constexpr double kLeast = 8;
    if (upright) {
      if (b.top >= a.Bottom() + kLeast) return {{at, a.Bottom()}, {at, b.top}};
      if (a.top >= b.Bottom() + kLeast) return {{at, a.top}, {at, b.Bottom()}};
      return {};
    }
    if (b.left >= a.Right() + kLeast) return {{a.Right(), at}, {b.left, at}};
    if (a.left >= b.Right() + kLeast) return {{a.left, at}, {b.Right(), at}};
    return {};
  }

  bool IsFree(const std::vector<Point>& way, bool upright) const {
    const Box part = Around(way[0], way[1]);
    const Box inner = upright ? Box{part.left - kClear, part.top + 1, 2 * kClear, part.height - 2}
                              : Box{part.left + 1, part.top - kClear, part.width - 2, 2 * kClear};
    return figures_.IsFree(inner) && lines_.IsFree(Grown(part, 5));
  }

  const RouterBox& from_;
  const RouterBox& to_;
  const BoxIndex& figures_;
  const BoxIndex& lines_;
};

}  // namespace

Router::Router(const std::vector<RouterBox>& boxes) : boxes_(boxes) {
  for (const RouterBox& box : boxes_) figures_.Add(box.box);
}

void Router::AddLine(const std::vector<Point>& points) {
  for (size_t i = 1; i < points.size(); ++i) parts_.Add(Around(points[i - 1], points[i]));
}

std::vector<Point> Router::Between(size_t from, size_t to) {
  const RouterBox &a = boxes_[from], &b = boxes_[to];
  std::vector<Point> way;
  if (from != to) way = StraightWay(a, b, figures_, parts_).Find();
  std::vector<Port> leaving, entering;
  if (from == to) {
    AddPorts(a, Side::kRight, true, leaving);
    AddPorts(a, Side::kTop, false, entering);
  } else {
    leaving = PortsOf(a, true);
    entering = PortsOf(b, false);
  }
  for (const double around : {60.0, 300.0}) {
    if (!way.empty()) break;
    const Box region = Grown(Union(a.box, b.box), around);
    const std::vector<size_t> near = figures_.In(region, kMostBoxes);
    const std::vector<size_t> parts = parts_.In(region, kMostParts);
    if (near.size() > kMostBoxes || parts.size() > kMostParts) break;
    way = Search(figures_, near, parts_, parts).Run(leaving, entering);
  }
  if (way.empty()) way = PlainWay(a.box, b.box);
  AddLine(way);
  return way;
}

}  // namespace vndoc6::drawing
