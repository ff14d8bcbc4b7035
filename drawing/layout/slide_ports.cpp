#include "slide_ports.h"

#include <algorithm>
#include <cmath>

#include "coordinates.h"
#include "ports.h"
#include "tighten.h"

namespace vndoc6::drawing {
namespace {

constexpr double kSame = 0.01;

// The ends of lines on one side of a box, from left to right.
class PortSlider {
 public:
  PortSlider(LayeredGraph& graph, const std::vector<LayoutBox>& boxes)
      : graph_(graph), boxes_(boxes) {}

  void Run() {
    for (size_t box = 0; box < boxes_.size(); ++box) {
      if (boxes_[box].has_corners) continue;
      Slide(box, true);
      Slide(box, false);
    }
  }

 private:
  double& Port(size_t segment) {
    Segment& at = graph_.segments[segment];
    return down_ ? at.upper_port : at.lower_port;
  }
  // How far the port is from straight above or below the line's other end.
  double Wish(size_t segment) const {
    const double skew = Skew(graph_, graph_.segments[segment]);
    return down_ ? skew : -skew;
  }

  void Slide(size_t box, bool down) {
    down_ = down;
    ports_.clear();
    for (const size_t segment : down ? graph_.down[box] : graph_.up[box]) {
      const Segment& at = graph_.segments[segment];
      if ((down ? at.upper_side : at.lower_side) == 0) ports_.push_back(segment);
    }
    std::sort(ports_.begin(), ports_.end(),
              [this](size_t a, size_t b) { return Port(a) < Port(b); });
    half_ = boxes_[box].width / 2 - kPortMargin;
    // The outermost first: it makes room for the next.
    for (size_t i = ports_.size(); i-- > 0;) Move(i, true);
    for (size_t i = 0; i < ports_.size(); ++i) Move(i, false);
  }

  void Move(size_t number, bool right) {
    const Segment& segment = graph_.segments[ports_[number]];
    if (segment.path == 0 || graph_.IsFar(segment)) return;
    const double wish = Wish(ports_[number]);
    if (wish == 0 || (wish > 0) != right) return;
    double& port = Port(ports_[number]);
    double room = right ? half_ - port : half_ + port;
    const size_t next = right ? number + 1 : number - 1;
    if (next < ports_.size()) room = std::min(room, std::abs(Port(ports_[next]) - port) - kLineGap);
    double move = std::min(std::abs(wish), room);
    const double left = std::abs(wish) - move;
    if (left > kSame && left < kShortest) move = std::abs(wish) - kShortest;
    if (move > 0) port += right ? move : -move;
  }

  LayeredGraph& graph_;
  const std::vector<LayoutBox>& boxes_;
  bool down_ = true;
  double half_ = 0;
  std::vector<size_t> ports_;
};

// Moves ends of nearly straight lines along the sides of their boxes.
class PortMover {
 public:
  PortMover(LayeredGraph& graph, const std::vector<LayoutBox>& boxes)
      : graph_(graph), boxes_(boxes) {}

  // Those that are nearly straight; or else all that leave or enter sideways.
  void Run(bool sideways) {
    for (size_t i = 0; i < graph_.segments.size(); ++i) {
      const Segment& segment = graph_.segments[i];
      if (segment.IsFrame() || graph_.IsFar(segment)) continue;
      const double skew = Skew(graph_, segment);
      if (skew == 0 || (!sideways && std::abs(skew) >= kShortest)) continue;
      if (!Move(i, true, skew, sideways)) Move(i, false, -skew, sideways);
    }
  }

 private:
  bool Move(size_t number, bool upper, double by, bool sideways) {
    Segment& segment = graph_.segments[number];
    const size_t box = upper ? segment.upper : segment.lower;
    if (graph_.cells[box].kind != CellKind::kBox) return false;
    const int side = upper ? segment.upper_side : segment.lower_side;
    double& port = upper ? segment.upper_port : segment.lower_port;
    if (side != 0) return MoveOut(graph_.cells[box], side, port, port + by);
    return !sideways && MoveAlong(number, box, upper, port, port + by);
  }

  // Away from the box, as far as there is room.
  bool MoveOut(Cell& box, int side, double& port, double wanted) {
    if ((wanted - port) * side < 0) return false;
    double& reach = side < 0 ? box.left : box.right;
    const double old = reach;
    reach = std::max(reach, std::abs(wanted));
    const auto& layer = graph_.layers[box.layer];
    const size_t next = box.order + static_cast<size_t>(side);
    if (next < layer.size()) {
      const Cell& other = graph_.cells[layer[next]];
      const double least = side < 0 ? Distance(other, box) : Distance(box, other);
      if (std::abs(other.x - box.x) < least - kSame) {
        reach = old;
        return false;
      }
    }
    port = wanted;
    return true;
  }

  bool MoveAlong(size_t number, size_t box, bool upper, double& port, double wanted) const {
    constexpr double kMargin = 6;
    constexpr double kLeast = 8;
    if (std::abs(wanted) > boxes_[box].width / 2 - kMargin || boxes_[box].has_corners) return false;
    for (const size_t other : upper ? graph_.down[box] : graph_.up[box]) {
      if (other == number) continue;
      const Segment& at = graph_.segments[other];
      const double place = upper ? at.upper_port : at.lower_port;
      if ((place < port) != (place < wanted) || std::abs(place - wanted) < kLeast) return false;
    }
    port = wanted;
    return true;
  }

  LayeredGraph& graph_;
  const std::vector<LayoutBox>& boxes_;
};

}  // namespace

void SlidePorts(LayeredGraph& graph, const std::vector<LayoutBox>& boxes) {
  PortSlider(graph, boxes).Run();
}

void StraightenByPorts(LayeredGraph& graph, const std::vector<LayoutBox>& boxes) {
  PortMover(graph, boxes).Run(false);
}

void ExtendSides(LayeredGraph& graph, const std::vector<LayoutBox>& boxes) {
  PortMover(graph, boxes).Run(true);
}

}  // namespace vndoc6::drawing
