#include "shorten.h"

#include <algorithm>
#include <cmath>

#include "coordinates.h"
#include "network_simplex.h"
#include "ports.h"

namespace vndoc6::drawing {
namespace {

// What a pixel costs, by what it would make longer.
constexpr int kLine = 6;
constexpr int kLineBetweenLayers = 10;  // the inner parts of long lines: a bend more each
constexpr int kPath = 9;                // of the main paths after the first
constexpr int kMainPath = 60;
constexpr int kFrame = 2;
constexpr int kOffCentre = 1;  // a line's end away from the middle of its side

class Shortener {
 public:
  Shortener(LayeredGraph& graph, const std::vector<LayoutBox>& boxes)
      : graph_(graph), boxes_(boxes), node_of_(graph.cells.size(), kNone) {}

  void Run(size_t most_pivots) {
    AddCells();
    AddPorts();
    KeepApart();
    AddLines();
    const std::vector<int> places = RankNodes(start_, edges_, most_pivots);
    Store(places);
  }

 private:
  struct Port {
    size_t segment;
    size_t box;
    bool upper;
    size_t node;
  };

  size_t AddNode(double place) {
    start_.push_back(static_cast<int>(std::lround(place)));
    return start_.size() - 1;
  }

  // Rounding may have brought the two nearer by a pixel; they then stay so.
  void Apart(size_t left, size_t right, double distance) {
    const int least = std::min(static_cast<int>(std::ceil(distance)), start_[right] - start_[left]);
    edges_.push_back({left, right, least, 0});
  }

  // A side of a frame is one node: it is straight.
  void AddCells() {
    std::vector<std::pair<size_t, size_t>> sides(graph_.groups.size(), {kNone, kNone});
    for (const auto& layer : graph_.layers) {
      for (const size_t number : layer) {
        const Cell& cell = graph_.cells[number];
        if (cell.kind != CellKind::kFrame) {
          node_of_[number] = AddNode(cell.x);
          continue;
        }
        // The left side comes first in each layer.
        const bool right = open_group_ == cell.group;
        open_group_ = right ? 0 : cell.group;
        size_t& side = right ? sides[cell.group].second : sides[cell.group].first;
        if (side == kNone) side = AddNode(cell.x);
        node_of_[number] = side;
      }
    }
    for (size_t group = 1; group < sides.size(); ++group) {
      const auto [left, right] = sides[group];
      if (left == kNone) continue;
      Apart(left, right, graph_.TitleWidth(group));
      edges_.push_back({left, right, 0, kFrame});
    }
  }

  bool Moves(const Segment& segment, bool upper) const {
    const size_t box = upper ? segment.upper : segment.lower;
    return graph_.cells[box].kind == CellKind::kBox && segment.path != 0 && !graph_.IsFar(segment);
  }

  void AddPorts() {
    upper_port_.assign(graph_.segments.size(), kNone);
    lower_port_.assign(graph_.segments.size(), kNone);
    for (size_t box = 0; box < boxes_.size(); ++box) {
      AddSide(box, true);
      AddSide(box, false);
    }
  }

  double PortOf(size_t segment, bool upper) const {
    const Segment& at = graph_.segments[segment];
    return upper ? at.upper_port : at.lower_port;
  }

  // The ends of lines on the lower or the upper side of a box, in their order.
  void AddSide(size_t box, bool upper) {
    std::vector<size_t> ends = upper ? graph_.down[box] : graph_.up[box];
    std::erase_if(ends, [&](size_t end) {
      const Segment& segment = graph_.segments[end];
      return (upper ? segment.upper_side : segment.lower_side) != 0;
    });
    std::stable_sort(ends.begin(), ends.end(),
                     [&](size_t a, size_t b) { return PortOf(a, upper) < PortOf(b, upper); });
    if (boxes_[box].has_corners) return;
    const double half = boxes_[box].width / 2 - kPortMargin;
    const size_t middle = node_of_[box];
    size_t before = kNone;
    double before_at = 0;
    for (const size_t end : ends) {
      const double at = PortOf(end, upper);
      const bool moves = Moves(graph_.segments[end], upper);
      const size_t node = moves ? AddPort(end, box, upper) : middle;
      if (moves) {
        Apart(middle, node, -half);
        Apart(node, middle, -half);
        Pull(middle, node, 0, kOffCentre);
      }
      if (before != kNone && (moves || before != middle)) {
        // From a node that doesn't move, its port's distance from the box counts.
        const double distance = std::min(kLineGap, at - before_at);
        Apart(before, node, distance + (before == middle ? before_at : 0) - (moves ? 0 : at));
      }
      before = node;
      before_at = at;
    }
  }

  size_t AddPort(size_t segment, size_t box, bool upper) {
    const size_t node = AddNode(graph_.cells[box].x + PortOf(segment, upper));
    (upper ? upper_port_ : lower_port_)[segment] = node;
    ports_.push_back({segment, box, upper, node});
    return node;
  }

  void KeepApart() {
    for (const auto& layer : graph_.layers) {
      for (size_t i = 1; i < layer.size(); ++i) {
        const size_t left = node_of_[layer[i - 1]], right = node_of_[layer[i]];
        Apart(left, right, Distance(graph_.cells[layer[i - 1]], graph_.cells[layer[i]]));
      }
    }
  }

  // A node for the left end of the distance between two.
  void Pull(size_t a, size_t b, int offset, int weight) {
    const size_t least = AddNode(std::min(start_[a], start_[b] + offset));
    edges_.push_back({least, a, 0, weight});
    edges_.push_back({least, b, -offset, weight});
  }

  void AddLines() {
    for (size_t i = 0; i < graph_.segments.size(); ++i) {
      const Segment& segment = graph_.segments[i];
      if (segment.IsFrame() || graph_.IsFar(segment)) continue;
      const bool upper = upper_port_[i] != kNone, lower = lower_port_[i] != kNone;
      const double offset = (lower ? 0 : segment.lower_port) - (upper ? 0 : segment.upper_port);
      Pull(upper ? upper_port_[i] : node_of_[segment.upper],
           lower ? lower_port_[i] : node_of_[segment.lower], static_cast<int>(std::lround(offset)),
           WeightOf(segment));
    }
  }

  int WeightOf(const Segment& segment) const {
    if (segment.path == 0) return kMainPath;
    if (segment.path != kNone) return kPath;
    const bool inner = graph_.cells[segment.upper].kind != CellKind::kBox &&
                       graph_.cells[segment.lower].kind != CellKind::kBox;
    return inner ? kLineBetweenLayers : kLine;
  }

  void Store(const std::vector<int>& places) {
    for (size_t cell = 0; cell < node_of_.size(); ++cell) {
      if (node_of_[cell] != kNone) graph_.cells[cell].x = places[node_of_[cell]];
    }
    for (const Port& port : ports_) {
      Segment& segment = graph_.segments[port.segment];
      (port.upper ? segment.upper_port : segment.lower_port) =
          places[port.node] - graph_.cells[port.box].x;
    }
  }

  LayeredGraph& graph_;
  const std::vector<LayoutBox>& boxes_;
  std::vector<size_t> node_of_;  // of each cell
  std::vector<size_t> upper_port_, lower_port_;
  std::vector<Port> ports_;
  size_t open_group_ = 0;
  std::vector<int> start_;  // of each node
  std::vector<RankEdge> edges_;
};

}  // namespace

void Shorten(LayeredGraph& graph, const std::vector<LayoutBox>& boxes, size_t most_pivots) {
  Shortener(graph, boxes).Run(most_pivots);
}

}  // namespace vndoc6::drawing
