#include "tighten.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <numeric>

#include "coordinates.h"
#include "slide_ports.h"

namespace vndoc6::drawing {
namespace {

constexpr double kSame = 0.01;
constexpr double kBendCost = 24;
constexpr double kMainBendCost = 120;  // on the main path
constexpr double kFrameCost = 0.7;     // of a pixel that a frame is wide
constexpr double kJogCost = 400;
constexpr size_t kMostTogether = 300;  // blocks that are pushed at once
constexpr size_t kWorkPerPull = 400;   // after which the best so far has to do
constexpr size_t kMostWork = 2'000;    // to weigh what would move as one

double SegmentCost(double skew, bool main) {
  const double length = std::abs(skew);
  if (length < kSame) return 0;
  return length + (length < kShortest ? kJogCost : main ? kMainBendCost : kBendCost);
}

// Cells joined by straight lines, and how blocks stand beside each other.
class Blocks {
 public:
  explicit Blocks(LayeredGraph& graph) : graph_(graph) {
    Unite();
    Number();
    FindNeighbours();
    FindPulls();
  }

  void Tighten(int rounds) {
    std::vector<size_t> order(x_.size());
    std::iota(order.begin(), order.end(), size_t{0});
    for (int round = 0; round < rounds; ++round) {
      bool moved = false;
      for (const bool right : {true, false}) {
        std::stable_sort(order.begin(), order.end(),
                         [&](size_t a, size_t b) { return right ? x_[a] > x_[b] : x_[a] < x_[b]; });
        for (const size_t block : order) moved |= MoveTowards(block, right);
      }
      if (!moved || work_ > kWorkPerPull * (pulls_.size() + 1'000)) break;
    }
    Store();
  }

  void AvoidJogs() {
    for (int round = 0; round < 4; ++round) {
      bool found = false;
      for (const Pull& pull : pulls_) {
        if (pull.frame || !IsJog(pull)) continue;
        const double skew = SkewOf(pull);
        const double away = skew > 0 ? kShortest : -kShortest;
        found |= MoveAnEnd(pull, {-skew, away - skew, -away - skew});
      }
      if (!found) break;
    }
    Store();
  }

  void Straighten() {
    for (int round = 0; round < 4; ++round) {
      bool found = false;
      for (const Pull& pull : pulls_) {
        const double skew = SkewOf(pull);
        if (!pull.frame && std::abs(skew) >= kSame) found |= MoveAnEnd(pull, {-skew});
      }
      if (!found) break;
    }
    Store();
  }

 private:
  struct Neighbour {
    size_t block;
    double distance;
  };
  // A line between two blocks, or a frame's two sides, which had better be near each other.
  struct Pull {
    size_t from, to;
    double offset;  // the skew is x[to] - x[from] + offset
    bool frame;
    bool main;
  };

  size_t Find(size_t cell) {
    while (leader_[cell] != cell) cell = leader_[cell] = leader_[leader_[cell]];
    return cell;
  }

  void Unite() {
    leader_.resize(graph_.cells.size());
    std::iota(leader_.begin(), leader_.end(), size_t{0});
    for (const Segment& segment : graph_.segments) {
      if (!graph_.IsFar(segment) && Skew(graph_, segment) == 0) {
        leader_[Find(segment.lower)] = Find(segment.upper);
      }
    }
  }

  void Number() {
    block_.assign(graph_.cells.size(), kNone);
    for (size_t cell = 0; cell < block_.size(); ++cell) {
      const size_t leader = Find(cell);
      if (block_[leader] == kNone) {
        block_[leader] = x_.size();
        x_.push_back(graph_.cells[leader].x);
      }
      block_[cell] = block_[leader];
    }
    offset_.resize(block_.size());
    for (size_t cell = 0; cell < block_.size(); ++cell) {
      offset_[cell] = graph_.cells[cell].x - x_[block_[cell]];
    }
  }

  void FindNeighbours() {
    left_.resize(x_.size());
    right_.resize(x_.size());
    const auto add = [this](size_t a, size_t b, double distance) {
      const double between = distance + offset_[a] - offset_[b];
      if (block_[a] == block_[b]) return;
      right_[block_[a]].push_back({block_[b], between});
      left_[block_[b]].push_back({block_[a], between});
    };
    for (const auto& layer : graph_.layers) {
      for (size_t i = 1; i < layer.size(); ++i) {
        add(layer[i - 1], layer[i], Distance(graph_.cells[layer[i - 1]], graph_.cells[layer[i]]));
      }
    }
    const auto sides = graph_.FrameSides();
    for (size_t group = 1; group < sides.size(); ++group) {
      const auto [left, right] = sides[group];
      if (left == kNone) continue;
      add(left, right, graph_.TitleWidth(group));
      AddPull(left, right, 0, true, false);
    }
  }

  void AddPull(size_t a, size_t b, double skew_offset, bool frame, bool main) {
    pulls_.push_back({block_[a], block_[b], offset_[b] - offset_[a] + skew_offset, frame, main});
  }

  void FindPulls() {
    for (const Segment& segment : graph_.segments) {
      if (segment.IsFrame() || graph_.IsFar(segment)) continue;
      if (block_[segment.upper] == block_[segment.lower]) continue;
      AddPull(segment.upper, segment.lower, segment.lower_port - segment.upper_port, false,
              segment.path == 0);
    }
    pulls_of_.resize(x_.size());
    for (size_t i = 0; i < pulls_.size(); ++i) {
      pulls_of_[pulls_[i].from].push_back(i);
      pulls_of_[pulls_[i].to].push_back(i);
    }
    mark_.resize(x_.size());
  }

  double SkewOf(const Pull& pull) const { return x_[pull.to] - x_[pull.from] + pull.offset; }
  bool IsJog(const Pull& pull) const {
    const double length = std::abs(SkewOf(pull));
    return length >= kSame && length < kShortest - kSame;
  }

  // Moves a block and what touches it on that side, as long as lines get shorter.
  bool MoveTowards(size_t block, bool right) {
    bool moved = false;
    for (int step = 0; step < 6; ++step) {
      if (!FindTouching(block, right)) break;
      double change = 0;
      double most = std::numeric_limits<double>::max();
      for (const size_t member : together_) Weigh(member, right, change, most);
      if (change >= 0 || most < kSame || most == std::numeric_limits<double>::max()) break;
      for (const size_t member : together_) x_[member] += right ? most : -most;
      moved = true;
    }
    return moved;
  }

  // False when so much touches the block that weighing it all would take too long.
  bool FindTouching(size_t block, bool right) {
    ++marks_;
    together_.assign(1, block);
    mark_[block] = marks_;
    size_t work = 0;
    for (size_t i = 0; i < together_.size(); ++i, ++work_) {
      const auto& neighbours = (right ? right_ : left_)[together_[i]];
      const size_t here = neighbours.size() + pulls_of_[together_[i]].size();
      work += here;
      work_ += here;
      if (work > kMostWork && together_.size() > 1) return false;
      for (const Neighbour& next : neighbours) {
        if (mark_[next.block] == marks_ || Slack(together_[i], next, right) >= kSame) continue;
        mark_[next.block] = marks_;
        together_.push_back(next.block);
      }
    }
    return true;
  }

  double Slack(size_t block, const Neighbour& next, bool right) const {
    return (right ? x_[next.block] - x_[block] : x_[block] - x_[next.block]) - next.distance;
  }

  // How lengths change when the marked blocks move, for one of them, and how far they may.
  void Weigh(size_t block, bool right, double& change, double& most) const {
    for (const Neighbour& next : (right ? right_ : left_)[block]) {
      if (mark_[next.block] != marks_) most = std::min(most, Slack(block, next, right));
    }
    for (const size_t number : pulls_of_[block]) {
      const Pull& pull = pulls_[number];
      const bool is_to = pull.to == block;
      if (mark_[is_to ? pull.from : pull.to] == marks_) continue;
      double ahead = is_to ? -SkewOf(pull) : SkewOf(pull);
      if (!right) ahead = -ahead;
      change += ahead > kSame ? -1 : 1;
      if (ahead > kSame) most = std::min(most, ahead);
    }
  }

  // Of the ways to change how far a line is from straight, the cheapest; none when all cost more
  // than they save.
  bool MoveAnEnd(const Pull& pull, std::initializer_list<double> changes) {
    double best = -kSame;
    std::vector<std::pair<size_t, double>> best_move;
    for (const double change : changes) {
      for (const bool move_to : {true, false}) {
        Push(move_to ? pull.to : pull.from, move_to ? change : -change);
        const double cost = PushCost();
        if (cost >= best) continue;
        best = cost;
        best_move = pushed_;
      }
    }
    for (const auto& [block, move] : best_move) x_[block] += move;
    return !best_move.empty();
  }

  // A block by so much, and others out of its way.
  void Push(size_t block, double distance) {
    const bool right = distance > 0;
    ++marks_;
    pushed_.assign(1, {block, distance});
    place_of_.resize(x_.size());
    mark_[block] = marks_;
    place_of_[block] = 0;
    went_too_far_ = false;
    for (size_t i = 0; i < pushed_.size(); ++i) {
      if (pushed_.size() > kMostTogether) {
        went_too_far_ = true;
        return;
      }
      const auto [from, move] = pushed_[i];
      for (const Neighbour& next : (right ? right_ : left_)[from]) {
        const double needed = std::abs(move) - Slack(from, next, right);
        if (needed < kSame / 10) continue;
        const double signed_move = right ? needed : -needed;
        if (mark_[next.block] == marks_) {
          double& old = pushed_[place_of_[next.block]].second;
          if (std::abs(old) >= needed) continue;
          old = signed_move;
          // Those behind it have to be looked at again.
          if (place_of_[next.block] <= i) {
            place_of_[next.block] = pushed_.size();
            pushed_.emplace_back(next.block, signed_move);
          }
          continue;
        }
        mark_[next.block] = marks_;
        place_of_[next.block] = pushed_.size();
        pushed_.emplace_back(next.block, signed_move);
      }
    }
    KeepLatest();
  }

  void KeepLatest() {
    std::vector<std::pair<size_t, double>> latest;
    for (size_t i = 0; i < pushed_.size(); ++i) {
      if (place_of_[pushed_[i].first] == i) latest.push_back(pushed_[i]);
    }
    pushed_ = std::move(latest);
    for (size_t i = 0; i < pushed_.size(); ++i) place_of_[pushed_[i].first] = i;
  }

  double MoveOf(size_t block) const {
    return mark_[block] == marks_ ? pushed_[place_of_[block]].second : 0;
  }

  // The change of cost by what was pushed; nothing is gained by a push that went on too far.
  double PushCost() const {
    if (went_too_far_) return 0;
    double cost = 0;
    for (const auto& [block, move] : pushed_) {
      for (const size_t number : pulls_of_[block]) {
        const Pull& pull = pulls_[number];
        const bool both = mark_[pull.from] == marks_ && mark_[pull.to] == marks_;
        if (both && block != pull.from) continue;
        const double skew = SkewOf(pull);
        if (pull.frame) {
          cost += kFrameCost * (MoveOf(pull.to) - MoveOf(pull.from));
          continue;
        }
        cost += SegmentCost(skew + MoveOf(pull.to) - MoveOf(pull.from), pull.main) -
                SegmentCost(skew, pull.main);
      }
    }
    return cost;
  }

  void Store() {
    for (size_t cell = 0; cell < block_.size(); ++cell) {
      if (!graph_.cells[cell].far) graph_.cells[cell].x = x_[block_[cell]] + offset_[cell];
    }
  }

  LayeredGraph& graph_;
  std::vector<size_t> leader_;
  std::vector<size_t> block_;   // of each cell
  std::vector<double> offset_;  // of each cell from its block's place
  std::vector<double> x_;
  std::vector<std::vector<Neighbour>> left_, right_;
  std::vector<Pull> pulls_;
  std::vector<std::vector<size_t>> pulls_of_;
  std::vector<size_t> mark_;
  size_t marks_ = 0;
  size_t work_ = 0;
  std::vector<size_t> together_;
  std::vector<std::pair<size_t, double>> pushed_;
  bool went_too_far_ = false;     // the push; nothing is known of what it costs
  std::vector<size_t> place_of_;  // of a block among those pushed
};

}  // namespace

void Tighten(LayeredGraph& graph, int rounds) { Blocks(graph).Tighten(rounds); }

void Straighten(LayeredGraph& graph) {
  for (int i = 0; i < 2; ++i) Blocks(graph).Straighten();
}

void AvoidJogs(LayeredGraph& graph, const std::vector<LayoutBox>& boxes) {
  StraightenByPorts(graph, boxes);
  Blocks(graph).AvoidJogs();
  StraightenByPorts(graph, boxes);
}

double CostOf(const LayeredGraph& graph) {
  double cost = 0;
  for (const Segment& segment : graph.segments) {
    if (!segment.IsFrame() && !graph.IsFar(segment)) {
      cost += SegmentCost(Skew(graph, segment), segment.path == 0);
    }
  }
  return cost;
}

}  // namespace vndoc6::drawing
