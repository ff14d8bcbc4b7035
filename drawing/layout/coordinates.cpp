#include "coordinates.h"

#include <algorithm>
#include <limits>
#include <map>
#include <numeric>

#include "ports.h"

namespace vndoc6::drawing {
namespace {

constexpr double kBoxGap = 24;
constexpr double kBoxLineGap = 12;
constexpr double kLabelToBox = 6;  // labels have margins of their own
constexpr double kLabelToLabel = 4;
constexpr double kFrameToFrame = 16;
constexpr double kSame = 0.01;

// Which segments may be straight. Frames, main paths and the inner parts of long lines come first,
// in this order, as far as they don't cross each other; what crosses them may not.
class Straightness {
 public:
  explicit Straightness(const LayeredGraph& graph)
      : graph_(graph),
        allowed_(graph.segments.size()),
        forced_up_(graph.cells.size(), kNone),
        forced_down_(graph.cells.size(), kNone) {
    std::vector<std::vector<size_t>> by_layer(graph.layers.size());
    for (size_t i = 0; i < graph.segments.size(); ++i) {
      if (!graph.IsFar(graph.segments[i])) {
        by_layer[graph.cells[graph.segments[i].upper].layer].push_back(i);
      }
    }
    for (std::vector<size_t>& segments : by_layer) Decide(segments);
  }

  bool IsAllowed(size_t segment) const { return allowed_[segment]; }

 private:
  size_t Importance(const Segment& segment) const {
    if (segment.IsFrame()) return 0;
    if (segment.path != kNone) return segment.path + 1;
    const bool inner = graph_.cells[segment.upper].kind != CellKind::kBox &&
                       graph_.cells[segment.lower].kind != CellKind::kBox;
    return inner ? kNone - 1 : kNone;
  }

  // Those taken, by their upper place; their lower places ascend as well.
  using Taken = std::map<size_t, size_t>;

  bool CrossesTaken(const Taken& taken, const Segment& segment) const {
    const size_t upper = graph_.cells[segment.upper].order;
    const size_t lower = graph_.cells[segment.lower].order;
    const auto next = taken.upper_bound(upper);
    if (next != taken.end() && next->second < lower) return true;
    auto before = taken.lower_bound(upper);
    return before != taken.begin() && std::prev(before)->second > lower;
  }

  void Decide(std::vector<size_t>& segments) {
    std::stable_sort(segments.begin(), segments.end(), [this](size_t a, size_t b) {
      return Importance(graph_.segments[a]) < Importance(graph_.segments[b]);
    });
    Taken taken;
    for (const size_t number : segments) {
      const Segment& segment = graph_.segments[number];
      if (CrossesTaken(taken, segment)) continue;
      if (forced_down_[segment.upper] != kNone || forced_up_[segment.lower] != kNone) continue;
      allowed_[number] = true;
      if (Importance(segment) == kNone) continue;
      forced_down_[segment.upper] = forced_up_[segment.lower] = number;
      taken.emplace(graph_.cells[segment.upper].order, graph_.cells[segment.lower].order);
    }
  }

  const LayeredGraph& graph_;
  std::vector<bool> allowed_;
  std::vector<size_t> forced_up_, forced_down_;
};

// One of the four: cells are aligned with their neighbours in the layer before, from the first to
// the last of a layer, and pushed towards the first.
class Alignment {
 public:
  Alignment(const LayeredGraph& graph, const Straightness& straight, bool from_bottom,
            bool from_right)
      : graph_(graph),
        straight_(straight),
        from_bottom_(from_bottom),
        from_right_(from_right),
        root_(graph.cells.size()),
        offset_(graph.cells.size()) {}

  std::vector<double> Place() {
    std::iota(root_.begin(), root_.end(), size_t{0});
    const size_t count = graph_.layers.size();
    for (size_t i = 1; i < count; ++i) AlignLayer(from_bottom_ ? count - 1 - i : i);
    return Compact();
  }

 private:
  struct Candidate {
    size_t cell;
    size_t place;
    double offset;  // of the cell from this neighbour when both are aligned
  };

  size_t PlaceOf(size_t cell) const {
    const Cell& at = graph_.cells[cell];
    return from_right_ ? graph_.layers[at.layer].size() - 1 - at.order : at.order;
  }
  size_t CellAt(size_t layer, size_t place) const {
    const auto& cells = graph_.layers[layer];
    return cells[from_right_ ? cells.size() - 1 - place : place];
  }

  void FindCandidates(size_t cell) {
    candidates_.clear();
    for (const size_t number : from_bottom_ ? graph_.down[cell] : graph_.up[cell]) {
      if (!straight_.IsAllowed(number)) continue;
      const Segment& segment = graph_.segments[number];
      double offset = segment.upper_port - segment.lower_port;
      if (from_bottom_) offset = -offset;
      const size_t neighbour = from_bottom_ ? segment.lower : segment.upper;
      candidates_.push_back({neighbour, PlaceOf(neighbour), offset});
    }
    std::sort(candidates_.begin(), candidates_.end(),
              [](const Candidate& a, const Candidate& b) { return a.place < b.place; });
  }

  void AlignLayer(size_t layer) {
    std::ptrdiff_t last = -1;
    for (size_t place = 0; place < graph_.layers[layer].size(); ++place) {
      const size_t cell = CellAt(layer, place);
      FindCandidates(cell);
      if (candidates_.empty()) continue;
      const size_t count = candidates_.size();
      for (size_t middle = (count - 1) / 2; middle <= count / 2; ++middle) {
        const Candidate& candidate = candidates_[middle];
        if (static_cast<std::ptrdiff_t>(candidate.place) <= last) continue;
        last = static_cast<std::ptrdiff_t>(candidate.place);
        root_[cell] = root_[candidate.cell];
        offset_[cell] = offset_[candidate.cell] + candidate.offset;
        break;
      }
    }
  }

  double Gap(size_t before, size_t after) const {
    const Cell& a = graph_.cells[before];
    const Cell& b = graph_.cells[after];
    return from_right_ ? Distance(b, a) : Distance(a, b);
  }
  // Mirrored, so that places ascend.
  double OffsetOf(size_t cell) const { return from_right_ ? -offset_[cell] : offset_[cell]; }

  // Each block as near to the first place as those before it let it.
  std::vector<double> Compact() const {
    struct Push {
      size_t block;
      double distance;
    };
    const size_t count = graph_.cells.size();
    std::vector<std::vector<Push>> pushes(count);
    std::vector<size_t> pending(count);
    for (size_t layer = 0; layer < graph_.layers.size(); ++layer) {
      for (size_t place = 1; place < graph_.layers[layer].size(); ++place) {
        const size_t before = CellAt(layer, place - 1);
        const size_t after = CellAt(layer, place);
        pushes[root_[before]].push_back(
            {root_[after], Gap(before, after) + OffsetOf(before) - OffsetOf(after)});
        ++pending[root_[after]];
      }
    }
    const auto sides = graph_.FrameSides();
    for (size_t group = 1; group < sides.size(); ++group) {
      auto [before, after] = sides[group];
      if (before == kNone) continue;
      if (from_right_) std::swap(before, after);
      pushes[root_[before]].push_back(
          {root_[after], graph_.TitleWidth(group) + OffsetOf(before) - OffsetOf(after)});
      ++pending[root_[after]];
    }
    std::vector<size_t> ready;
    for (size_t cell = 0; cell < count; ++cell) {
      if (root_[cell] == cell && pending[cell] == 0) ready.push_back(cell);
    }
    constexpr double kFree = -std::numeric_limits<double>::max();
    std::vector<double> at(count, kFree);
    for (size_t i = 0; i < ready.size(); ++i) {
      double& place = at[ready[i]];
      if (place == kFree) place = 0;
      for (const Push& push : pushes[ready[i]]) {
        at[push.block] = std::max(at[push.block], place + push.distance);
        if (--pending[push.block] == 0) ready.push_back(push.block);
      }
    }
    std::vector<double> x(count);
    for (size_t cell = 0; cell < count; ++cell) {
      x[cell] = at[root_[cell]] + OffsetOf(cell);
      if (from_right_) x[cell] = -x[cell];
    }
    return x;
  }

  const LayeredGraph& graph_;
  const Straightness& straight_;
  const bool from_bottom_;
  const bool from_right_;
  std::vector<size_t> root_;    // of the cell's block
  std::vector<double> offset_;  // from its root
  std::vector<Candidate> candidates_;
};

struct Range {
  double least = std::numeric_limits<double>::max();
  double most = -std::numeric_limits<double>::max();
};

Range RangeOf(const LayeredGraph& graph, const std::vector<double>& x) {
  Range range;
  for (const auto& layer : graph.layers) {
    if (layer.empty()) continue;
    range.least = std::min(range.least, x[layer.front()]);
    range.most = std::max(range.most, x[layer.back()]);
  }
  return range;
}

// The mean of the two middle ones of the four, after those from the left were moved to the left
// side of the narrowest, and those from the right to its right side.
std::vector<double> Average(const LayeredGraph& graph, std::vector<std::vector<double>>& places) {
  size_t narrowest = 0;
  std::vector<Range> ranges;
  for (const auto& x : places) {
    ranges.push_back(RangeOf(graph, x));
    const Range& best = ranges[narrowest];
    if (ranges.back().most - ranges.back().least < best.most - best.least) {
      narrowest = ranges.size() - 1;
    }
  }
  for (size_t i = 0; i < places.size(); ++i) {
    const bool from_right = i % 2 == 1;
    const double move = from_right ? ranges[narrowest].most - ranges[i].most
                                   : ranges[narrowest].least - ranges[i].least;
    for (double& x : places[i]) x += move;
  }
  std::vector<double> average(graph.cells.size());
  for (size_t cell = 0; cell < average.size(); ++cell) {
    double four[] = {places[0][cell], places[1][cell], places[2][cell], places[3][cell]};
    std::sort(std::begin(four), std::end(four));
    average[cell] = (four[1] + four[2]) / 2;
  }
  return average;
}

bool IsLine(const Cell& cell) { return cell.kind == CellKind::kLine; }
bool IsFrame(const Cell& cell) { return cell.kind == CellKind::kFrame; }
bool IsLabel(const Cell& cell) { return cell.kind == CellKind::kLabel; }

double GapBetween(const Cell& left, const Cell& right) {
  if (IsFrame(left) && IsFrame(right))
    return left.group == right.group ? kFrameMargin : kFrameToFrame;
  if (IsFrame(left) || IsFrame(right)) {
    const bool line = IsLine(left) || IsLine(right);
    return line ? kLineGap : kFrameMargin;
  }
  if (IsLabel(left) || IsLabel(right)) {
    return left.kind == right.kind ? kLabelToLabel : kLabelToBox;
  }
  if (IsLine(left) && IsLine(right)) return kLineGap;
  return IsLine(left) || IsLine(right) ? kBoxLineGap : kBoxGap;
}

}  // namespace

double Distance(const Cell& left, const Cell& right) {
  // The line of a label that stands on its other side is as near as any line.
  const double gap = left.right + GapBetween(left, right) + right.left;
  return std::max(gap, kLineGap);
}

double Skew(const LayeredGraph& graph, const Segment& segment) {
  const double skew = graph.cells[segment.lower].x + segment.lower_port -
                      graph.cells[segment.upper].x - segment.upper_port;
  return skew > -kSame && skew < kSame ? 0 : skew;
}

void AlignCells(LayeredGraph& graph) {
  const Straightness straight(graph);
  std::vector<std::vector<double>> places;
  for (const bool from_bottom : {false, true}) {
    for (const bool from_right : {false, true}) {
      places.push_back(Alignment(graph, straight, from_bottom, from_right).Place());
    }
  }
  const std::vector<double> average = Average(graph, places);
  for (size_t cell = 0; cell < average.size(); ++cell) graph.cells[cell].x = average[cell];
}

}  // namespace vndoc6::drawing
