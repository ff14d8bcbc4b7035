#include "layout.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <queue>

#include "layers.h"

namespace vndoc6::drawing {
namespace {

constexpr double kGapX = 36;        // between neighbours in a layer
constexpr double kPassingGap = 14;  // beside a line that passes through
constexpr double kGapParts = 40;    // more, between what no line joins
constexpr double kGapY = 44;        // between layers, without the tracks of their lines
constexpr double kTrack = 12;       // between lines side by side
constexpr double kSame = 0.5;       // closer than this is the same place
constexpr int kSweeps = 10;

struct Interval {
  double begin, end;
};

// The smallest set of tracks in which no two intervals overlap: the track of each interval.
std::vector<size_t> AssignTracks(const std::vector<Interval>& intervals, size_t& track_count) {
  std::vector<size_t> order(intervals.size());
  for (size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t a, size_t b) { return intervals[a].begin < intervals[b].begin; });
  using Free = std::pair<double, size_t>;  // where a track is free from
  std::priority_queue<Free, std::vector<Free>, std::greater<>> free;
  std::vector<size_t> tracks(intervals.size());
  track_count = 0;
  for (size_t i : order) {
    if (!free.empty() && free.top().first < intervals[i].begin) {
      tracks[i] = free.top().second;
      free.pop();
    } else {
      tracks[i] = track_count++;
    }
    free.emplace(intervals[i].end, tracks[i]);
  }
  return tracks;
}

// Where a cell would like to stand, and how much.
struct Wish {
  double x = 0;
  double weight = 1;
};

// Places that keep their order and distances and are, squared, as near as can be to those desired:
// neighbours that would collide move together as a block.
std::vector<double> Spread(const std::vector<Wish>& wishes, const std::vector<double>& offsets) {
  struct Block {
    double sum;
    double weight;
    size_t count;
    double Mean() const { return sum / weight; }
  };
  std::vector<Block> blocks;
  for (size_t i = 0; i < wishes.size(); ++i) {
    blocks.push_back({(wishes[i].x - offsets[i]) * wishes[i].weight, wishes[i].weight, 1});
    while (blocks.size() > 1 && blocks[blocks.size() - 2].Mean() > blocks.back().Mean()) {
      Block& left = blocks[blocks.size() - 2];
      left.sum += blocks.back().sum;
      left.weight += blocks.back().weight;
      left.count += blocks.back().count;
      blocks.pop_back();
    }
  }
  std::vector<double> places;
  for (const Block& block : blocks) {
    for (size_t i = 0; i < block.count; ++i) {
      places.push_back(block.Mean() + offsets[places.size()]);
    }
  }
  return places;
}

class Placer {
 public:
  Placer(const std::vector<Box>& boxes, const std::vector<LayoutEdge>& edges,
         const std::vector<size_t>& groups)
      : edges_(edges), groups_(groups), layers_(MakeLayers(boxes.size(), edges, groups)) {
    out_.boxes = boxes;
    out_.routes.resize(edges.size());
    x_.resize(layers_.cells.size());
    gaps_.resize(layers_.layers.size() + 1);
    FindParts();
  }

  Layout Place() {
    PlaceAcross();
    PlaceBands();
    ChooseLanes();
    CollectTracks();
    PlaceDown();
    MakeRoutes();
    MoveToOrigin();
    return std::move(out_);
  }

 private:
  // The horizontal parts of lines in the gap above a layer: those that leave one cell downwards
  // share a track, as do those that enter one from around.
  struct Gap {
    std::map<std::pair<bool, size_t>, size_t> groups;
    std::vector<Interval> extents;
    std::vector<double> track_y;

    void Add(bool entering, size_t cell, double x1, double x2) {
      const auto [entry, added] = groups.try_emplace({entering, cell}, extents.size());
      const Interval wanted{std::min(x1, x2), std::max(x1, x2)};
      if (added) {
        extents.push_back(wanted);
      } else {
        Interval& extent = extents[entry->second];
        extent = {std::min(extent.begin, wanted.begin), std::max(extent.end, wanted.end)};
      }
    }
    double TrackOf(bool entering, size_t cell) const {
      return track_y[groups.at({entering, cell})];
    }
  };

  // How an edge goes around the others.
  struct Lane {
    bool right = true;
    double x = 0;
    bool from_side = false;  // leaves its box sideways, not downwards
    bool to_side = false;    // enters it sideways, not from above
  };

  // Numbers the parts of the graph: cells that lines join, whichever way, bear the same number.
  void FindParts() {
    std::vector<size_t> leader(layers_.cells.size());
    for (size_t i = 0; i < leader.size(); ++i) leader[i] = i;
    const auto find = [&](size_t cell) {
      while (leader[cell] != cell) cell = leader[cell] = leader[leader[cell]];
      return cell;
    };
    for (size_t i = 0; i < edges_.size(); ++i) {
      leader[find(edges_[i].to)] = find(edges_[i].from);
      for (size_t cell : layers_.paths[i]) leader[find(cell)] = find(edges_[i].from);
    }
    for (size_t i = 0; i < leader.size(); ++i) part_.push_back(find(i));
  }

  double HalfWidth(size_t cell) const {
    const size_t box = layers_.cells[cell].box;
    return box == Cell::kPassing ? 0 : out_.boxes[box].width / 2;
  }
  size_t LayerOf(size_t cell) const { return layers_.cells[cell].layer; }
  size_t BandOf(size_t cell) const { return layers_.cells[cell].band; }

  double Distance(size_t left, size_t right) const {
    const bool passing =
        layers_.cells[left].box == Cell::kPassing || layers_.cells[right].box == Cell::kPassing;
    const bool apart = part_[left] != part_[right];
    return HalfWidth(left) + HalfWidth(right) + (passing ? kPassingGap : kGapX) +
           (apart ? kGapParts : 0);
  }

  void PlaceAcross() {
    for (const auto& layer : layers_.layers) {
      Settle(layer, [](size_t) { return Wish{}; });
    }
    for (int sweep = 0; sweep < kSweeps; ++sweep) {
      const bool down = sweep % 2 == 0;
      const bool both = sweep + 2 >= kSweeps;
      for (size_t i = 0; i < layers_.layers.size(); ++i) {
        Settle(layers_.layers[down ? i : layers_.layers.size() - 1 - i],
               [&](size_t cell) { return BetweenNeighbours(cell, down || both, !down || both); });
      }
    }
    for (const auto& layer : layers_.layers) {
      Settle(layer, [this](size_t cell) { return StraightBelow(cell); });
    }
  }

  // The bands side by side. Each was placed as if it were alone.
  void PlaceBands() {
    if (layers_.band_count == 1) return;
    constexpr double kBetween = 2 * kFrame + kGapX;
    std::vector<Interval> extents(layers_.band_count, {0, -kBetween});
    std::vector<bool> any(layers_.band_count, false);
    for (size_t cell = 0; cell < x_.size(); ++cell) {
      const Interval extent{x_[cell] - HalfWidth(cell), x_[cell] + HalfWidth(cell)};
      Interval& band = extents[BandOf(cell)];
      if (!any[BandOf(cell)]) band = extent;
      any[BandOf(cell)] = true;
      band = {std::min(band.begin, extent.begin), std::max(band.end, extent.end)};
    }
    std::vector<double> shifts;
    double left = 0;
    for (const Interval& extent : extents) {
      shifts.push_back(left - extent.begin);
      left += extent.end - extent.begin + kBetween;
    }
    for (size_t cell = 0; cell < x_.size(); ++cell) x_[cell] += shifts[BandOf(cell)];
  }

  Wish BetweenNeighbours(size_t cell, bool look_up, bool look_down) const {
    double sum = 0;
    size_t count = 0;
    const auto look = [&](const std::vector<size_t>& others) {
      for (size_t other : others) {
        if (BandOf(other) != BandOf(cell)) continue;
        sum += x_[other];
        ++count;
      }
    };
    if (look_up) look(layers_.cells[cell].above);
    if (look_down) look(layers_.cells[cell].below);
    return {count > 0 ? sum / static_cast<double>(count) : x_[cell]};
  }

  // In a chain without branches each cell stands straight below the one before it.
  Wish StraightBelow(size_t cell) const {
    constexpr double kFirmly = 50;
    const auto& above = layers_.cells[cell].above;
    const bool chained = above.size() == 1 && layers_.cells[above[0]].below.size() == 1 &&
                         BandOf(above[0]) == BandOf(cell);
    return chained ? Wish{x_[above[0]], kFirmly} : Wish{x_[cell]};
  }

  // Places the cells of each band of a layer.
  template <class GetWish>
  void Settle(const std::vector<size_t>& layer, GetWish&& get_wish) {
    for (size_t begin = 0; begin < layer.size();) {
      size_t end = begin;
      std::vector<Wish> wishes;
      std::vector<double> offsets;
      for (; end < layer.size() && BandOf(layer[end]) == BandOf(layer[begin]); ++end) {
        offsets.push_back(end == begin ? 0 : offsets.back() + Distance(layer[end - 1], layer[end]));
        wishes.push_back(get_wish(layer[end]));
      }
      const std::vector<double> places = Spread(wishes, offsets);
      for (size_t i = begin; i < end; ++i) x_[layer[i]] = places[i - begin];
      begin = end;
    }
  }

  // Edges without a path run beside everything, on the side that is nearer.
  void ChooseLanes() {
    double left = std::numeric_limits<double>::max();
    double right = std::numeric_limits<double>::lowest();
    for (size_t cell = 0; cell < x_.size(); ++cell) {
      left = std::min(left, x_[cell] - HalfWidth(cell));
      right = std::max(right, x_[cell] + HalfWidth(cell));
    }
    lanes_.resize(edges_.size());
    for (const bool on_right : {false, true}) {
      std::vector<size_t> members;
      std::vector<Interval> spans;
      for (size_t i = 0; i < edges_.size(); ++i) {
        if (!layers_.paths[i].empty()) continue;
        const auto [from, to] = edges_[i];
        if ((x_[from] + x_[to] >= left + right) != on_right) continue;
        members.push_back(i);
        const auto [low, high] = std::minmax({LayerOf(from), LayerOf(to)});
        spans.push_back({static_cast<double>(low), static_cast<double>(high) + 0.9});
      }
      size_t count = 0;
      const std::vector<size_t> tracks = AssignTracks(spans, count);
      for (size_t i = 0; i < members.size(); ++i) {
        const double away = kGapX / 2 + kTrack * static_cast<double>(tracks[i]);
        SetLane(members[i], on_right, on_right ? right + away : left - away);
      }
    }
  }

  void SetLane(size_t edge, bool right, double x) {
    const auto outermost = [&](size_t cell) {
      const auto& layer = layers_.layers[LayerOf(cell)];
      return (right ? layer.back() : layer.front()) == cell;
    };
    const auto [from, to] = edges_[edge];
    lanes_[edge] = {right, x, outermost(from), outermost(to) && from != to};
  }

  void CollectTracks() {
    for (size_t i = 0; i < edges_.size(); ++i) {
      const auto& path = layers_.paths[i];
      for (size_t k = 1; k < path.size(); ++k) {
        if (Straight(path[k - 1], path[k])) continue;
        gaps_[LayerOf(path[k])].Add(false, path[k - 1], x_[path[k - 1]], x_[path[k]]);
      }
      if (!path.empty()) continue;
      const auto [from, to] = edges_[i];
      const Lane& lane = lanes_[i];
      if (!lane.from_side) gaps_[LayerOf(from) + 1].Add(false, from, x_[from], lane.x);
      if (!lane.to_side) gaps_[LayerOf(to)].Add(true, to, x_[to], lane.x);
    }
  }

  bool Straight(size_t upper, size_t lower) const {
    return std::abs(x_[upper] - x_[lower]) < kSame;
  }

  void PlaceDown() {
    double y = 0;
    for (size_t i = 0; i <= layers_.layers.size(); ++i) {
      y = PlaceGap(gaps_[i], y, i == 0 || i == layers_.layers.size());
      if (!groups_.empty() && i > 0) y += kFrame;
      if (i == layers_.layers.size()) break;
      double height = 0;
      for (size_t cell : layers_.layers[i]) {
        if (layers_.cells[cell].box != Cell::kPassing) {
          height = std::max(height, out_.boxes[cell].height);
        }
      }
      for (size_t cell : layers_.layers[i]) {
        if (layers_.cells[cell].box == Cell::kPassing) continue;
        Box& box = out_.boxes[cell];
        box.left = x_[cell] - box.width / 2;
        box.top = y + (height - box.height) / 2;
      }
      y += height;
    }
  }

  // The gap's tracks stand in its middle. Nothing is kept free at the outside.
  static double PlaceGap(Gap& gap, double y, bool outside) {
    size_t count = 0;
    const std::vector<size_t> tracks = AssignTracks(gap.extents, count);
    if (outside && count == 0) return y;
    const double between = count > 1 ? kTrack * static_cast<double>(count - 1) : 0;
    for (size_t track : tracks) {
      gap.track_y.push_back(y + kGapY / 2 + kTrack * static_cast<double>(track));
    }
    return y + kGapY + between;
  }

  void MakeRoutes() {
    for (size_t i = 0; i < edges_.size(); ++i) {
      out_.routes[i] = layers_.paths[i].empty() ? AroundRoute(i) : PathRoute(layers_.paths[i]);
    }
  }

  Route PathRoute(const std::vector<size_t>& path) const {
    Route route{Side::kBottom, Side::kTop, {}};
    for (size_t k = 1; k < path.size(); ++k) {
      if (Straight(path[k - 1], path[k])) continue;
      const double y = gaps_[LayerOf(path[k])].TrackOf(false, path[k - 1]);
      route.bends.push_back({x_[path[k - 1]], y});
      route.bends.push_back({x_[path[k]], y});
    }
    return route;
  }

  Route AroundRoute(size_t edge) const {
    const auto [from, to] = edges_[edge];
    const Lane& lane = lanes_[edge];
    const Side outside = lane.right ? Side::kRight : Side::kLeft;
    Route route{lane.from_side ? outside : Side::kBottom, lane.to_side ? outside : Side::kTop, {}};
    double y = out_.boxes[from].CentreY();
    if (!lane.from_side) {
      y = gaps_[LayerOf(from) + 1].TrackOf(false, from);
      route.bends.push_back({x_[from], y});
    }
    route.bends.push_back({lane.x, y});
    y = lane.to_side ? out_.boxes[to].CentreY() : gaps_[LayerOf(to)].TrackOf(true, to);
    route.bends.push_back({lane.x, y});
    if (!lane.to_side) route.bends.push_back({x_[to], y});
    return route;
  }

  void MoveToOrigin() {
    Point low{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    Point high{std::numeric_limits<double>::lowest(), std::numeric_limits<double>::lowest()};
    const auto include = [&](Point point) {
      low = {std::min(low.x, point.x), std::min(low.y, point.y)};
      high = {std::max(high.x, point.x), std::max(high.y, point.y)};
    };
    for (const Box& box : out_.boxes) {
      include({box.left, box.top});
      include({box.Right(), box.Bottom()});
    }
    for (const Route& route : out_.routes) {
      for (const Point& bend : route.bends) include(bend);
    }
    if (out_.boxes.empty()) return;
    for (Box& box : out_.boxes) {
      box.left -= low.x;
      box.top -= low.y;
    }
    for (Route& route : out_.routes) {
      for (Point& bend : route.bends) bend = {bend.x - low.x, bend.y - low.y};
    }
    out_.width = high.x - low.x;
    out_.height = high.y - low.y;
  }

  const std::vector<LayoutEdge>& edges_;
  const std::vector<size_t>& groups_;
  Layering layers_;
  Layout out_;
  std::vector<double> x_;     // the centres of the cells
  std::vector<size_t> part_;  // of each cell
  std::vector<Gap> gaps_;
  std::vector<Lane> lanes_;
};

}  // namespace

Layout LayOut(const std::vector<Box>& boxes, const std::vector<LayoutEdge>& edges,
              const std::vector<size_t>& groups) {
  return Placer(boxes, edges, groups).Place();
}

}  // namespace vndoc6::drawing
