#include "ports.h"

#include <algorithm>
#include <numeric>

namespace vndoc6::drawing {
namespace {

constexpr double kLabelGap = 6;     // between a label and its line
constexpr double kLabelMargin = 6;  // on its other side

class PathFinder {
 public:
  explicit PathFinder(LayeredGraph& graph) : graph_(graph), reach_(graph.cells.size(), -1) {}

  void Run() {
    std::vector<size_t> boxes;
    for (size_t cell = 0; cell < graph_.cells.size(); ++cell) {
      if (graph_.cells[cell].kind == CellKind::kBox) boxes.push_back(cell);
    }
    std::stable_sort(boxes.begin(), boxes.end(), [this](size_t a, size_t b) {
      return graph_.cells[a].layer > graph_.cells[b].layer;
    });
    for (const size_t box : boxes) reach_[box] = 1 + Next(box, false).second;
    // The longest ways first; of equals, what comes first in the procedure.
    std::sort(boxes.begin(), boxes.end());
    std::stable_sort(boxes.begin(), boxes.end(),
                     [this](size_t a, size_t b) { return reach_[a] > reach_[b]; });
    std::vector<bool> left(graph_.cells.size());
    entered_.resize(graph_.cells.size());
    size_t number = 0;
    for (const size_t start : boxes) {
      for (size_t box = start; !left[box];) {
        left[box] = true;
        const size_t edge = Next(box, true).first;
        if (edge == kNone) break;
        for (const size_t segment : graph_.edge_segments[edge])
          graph_.segments[segment].path = number;
        box = End(edge);
        entered_[box] = true;
      }
      ++number;
    }
  }

 private:
  size_t End(size_t edge) const { return graph_.segments[graph_.edge_segments[edge].back()].lower; }

  // The edge from a box to where the way is longest, and how long. Of two equals the first in the
  // procedure, of several the one in the middle.
  std::pair<size_t, int> Next(size_t box, bool to_free) const {
    int longest = 0;
    std::vector<size_t> equals;
    for (const size_t segment : graph_.down[box]) {
      const size_t edge = graph_.segments[segment].edge;
      if (graph_.segments[segment].reversed || graph_.IsFar(graph_.segments[segment])) continue;
      const size_t end = End(edge);
      if ((to_free && entered_[end]) || reach_[end] < longest) continue;
      if (reach_[end] > longest) equals.clear();
      longest = reach_[end];
      equals.push_back(segment);
    }
    if (equals.empty()) return {kNone, 0};
    if (to_free && equals.size() > 2) {
      const auto middle = equals.begin() + static_cast<std::ptrdiff_t>((equals.size() - 1) / 2);
      std::nth_element(equals.begin(), middle, equals.end(), [this](size_t a, size_t b) {
        const size_t order = graph_.cells[graph_.segments[a].lower].order;
        const size_t other = graph_.cells[graph_.segments[b].lower].order;
        return order != other ? order < other : a < b;
      });
      std::swap(equals.front(), *middle);
    }
    return {graph_.segments[equals.front()].edge, longest};
  }

  LayeredGraph& graph_;
  std::vector<int> reach_;
  std::vector<bool> entered_;
};

class PortChooser {
 public:
  PortChooser(LayeredGraph& graph, const std::vector<LayoutBox>& boxes,
              const std::vector<LayoutEdge>& edges)
      : graph_(graph), boxes_(boxes), edges_(edges), loops_(FindLoops(boxes.size(), edges)) {}

  void Run() {
    for (size_t cell = 0; cell < graph_.cells.size(); ++cell) {
      if (graph_.cells[cell].kind == CellKind::kBox) ChooseFor(cell);
    }
    for (size_t cell = 0; cell < graph_.cells.size(); ++cell) {
      if (graph_.cells[cell].kind == CellKind::kLabel) MakeRoomForLabel(cell);
    }
  }

 private:
  Segment& At(size_t segment) { return graph_.segments[segment]; }

  void ChooseFor(size_t box) {
    box_ = box;
    used_[0] = used_[1] = 0;
    down_ = Sorted(graph_.down[box], true);
    up_ = Sorted(graph_.up[box], false);
    ChooseSides(up_, false);
    ChooseSides(down_, true);
    SpreadPorts(up_, false);
    SpreadPorts(down_, true);
    Widen();
  }

  std::vector<size_t> Sorted(std::vector<size_t> segments, bool down) {
    const auto order = [&](size_t segment) {
      const Cell& cell = graph_.cells[down ? At(segment).lower : At(segment).upper];
      return cell.far ? kNone : cell.order;
    };
    std::stable_sort(segments.begin(), segments.end(),
                     [&](size_t a, size_t b) { return order(a) < order(b); });
    return segments;
  }

  int& Side(size_t segment, bool down) {
    return down ? At(segment).upper_side : At(segment).lower_side;
  }

  // The outermost lines go sideways: those that lead back, and exits of a box with corners, of
  // which one keeps the lower corner.
  void ChooseSides(const std::vector<size_t>& segments, bool down) {
    const bool corners = boxes_[box_].has_corners;
    const bool one = segments.size() == 1;
    for (const bool left : {false, true}) {
      if (segments.empty()) return;
      const size_t segment = left ? segments.front() : segments.back();
      if (Side(segment, down) != 0 || At(segment).path != kNone) continue;
      const bool exit = down != At(segment).reversed;
      const bool sideways = At(segment).reversed || (corners && exit && down && !one);
      if (!sideways || (corners && used_[left] > 0)) continue;
      if (!At(segment).reversed && left && OnBottom(segments) <= 1) continue;
      Side(segment, down) = left ? -1 : 1;
      ++used_[left];
    }
  }

  size_t OnBottom(const std::vector<size_t>& segments) {
    return static_cast<size_t>(std::count_if(segments.begin(), segments.end(),
                                             [this](size_t s) { return At(s).upper_side == 0; }));
  }

  // Around the main path's line, which keeps the middle.
  void SpreadPorts(const std::vector<size_t>& segments, bool down) {
    std::vector<size_t> spread;
    size_t main = kNone;
    for (const size_t segment : segments) {
      if (Side(segment, down) != 0) continue;
      if (At(segment).path != kNone) main = spread.size();
      spread.push_back(segment);
    }
    const double half = boxes_[box_].width / 2 - kPortMargin;
    const double middle =
        main != kNone ? static_cast<double>(main) : static_cast<double>(spread.size() - 1) / 2;
    const double most = std::max(middle, static_cast<double>(spread.size()) - 1 - middle);
    const double gap = most > 0 ? std::min(kLineGap, half / most) : 0;
    for (size_t i = 0; i < spread.size(); ++i) {
      const double port = (static_cast<double>(i) - middle) * gap;
      (down ? At(spread[i]).upper_port : At(spread[i]).lower_port) = port;
    }
  }

  void Widen() {
    Cell& cell = graph_.cells[box_];
    const double half = boxes_[box_].width / 2;
    const auto& loops = loops_[box_];
    double loop_reach = 0;
    double label_width = 0;
    if (!loops.empty()) loop_reach = kLoop + kLineGap * static_cast<double>(loops.size() - 1);
    for (const size_t edge : loops) label_width = std::max(label_width, edges_[edge].label_width);
    const double right = half + loop_reach + (used_[0] > 0 ? kSideGap : 0);
    const double left = half + kSideGap;
    for (const bool down : {false, true}) {
      for (const size_t segment : down ? down_ : up_) {
        const int side = Side(segment, down);
        if (side == 0) continue;
        (down ? At(segment).upper_port : At(segment).lower_port) = side < 0 ? -left : right;
      }
    }
    if (used_[1] > 0) cell.left = left;
    cell.right = right + (label_width > 0 ? kLabelGap + label_width + kLabelMargin : 0);
  }

  // On the outer side of its line where the line leaves the box left of the main path.
  void MakeRoomForLabel(size_t number) {
    Cell& cell = graph_.cells[number];
    const Segment* end = nullptr;
    bool left = false;
    if (graph_.reversed[cell.owner]) {
      end = &At(graph_.down[number].front());
      left = end->lower_side < 0;
    } else {
      end = &At(graph_.up[number].front());
      left = end->upper_side < 0 || end->upper_port < 0;
      // Beside the main path where it pushes fewer others away.
      if (end->upper_port == 0) left = 2 * cell.order < graph_.layers[cell.layer].size() - 1;
    }
    const double room = kLabelGap + edges_[cell.owner].label_width + kLabelMargin;
    cell.left = left ? room : 0;
    cell.right = left ? 0 : room;
  }

  LayeredGraph& graph_;
  const std::vector<LayoutBox>& boxes_;
  const std::vector<LayoutEdge>& edges_;
  std::vector<std::vector<size_t>> loops_;
  size_t box_ = 0;
  std::vector<size_t> down_, up_;
  int used_[2] = {};  // lines by the right and by the left side
};

}  // namespace

void FindMainPaths(LayeredGraph& graph) { PathFinder(graph).Run(); }

void ChoosePorts(LayeredGraph& graph, const std::vector<LayoutBox>& boxes,
                 const std::vector<LayoutEdge>& edges) {
  PortChooser(graph, boxes, edges).Run();
}

std::vector<std::vector<size_t>> FindLoops(size_t box_count, const std::vector<LayoutEdge>& edges) {
  std::vector<std::vector<size_t>> loops(box_count);
  for (size_t i = 0; i < edges.size(); ++i) {
    if (edges[i].from == edges[i].to) loops[edges[i].from].push_back(i);
  }
  return loops;
}

}  // namespace vndoc6::drawing
