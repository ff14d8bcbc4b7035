#include "ordering.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "crossings.h"

namespace vndoc6::drawing {
namespace {

// A line's crossing counts four, one of a frame's side two: a line had better not run through a
// frame that it has nothing to do with.
constexpr int64_t kLineWeight = 2;
constexpr int64_t kFrameWeight = 1;

struct Effort {
  int starts;
  int sweeps;
  int patience;  // sweeps without a better result
  int exchanges;
};

Effort EffortFor(size_t size) {
  if (size < 400) return {16, 24, 8, 12};
  if (size < 1'200) return {5, 16, 6, 8};
  if (size < 5'000) return {2, 12, 4, 4};
  if (size < 60'000) return {2, 6, 3, 2};
  if (size < 400'000) return {1, 4, 2, 1};
  return {1, 2, 1, 1};
}

// The same numbers everywhere.
class Random {
 public:
  explicit Random(uint32_t seed) : state_(seed * 2654435761U + 12345) {}
  uint32_t Next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return state_;
  }

 private:
  uint32_t state_;
};

class Orderer {
 public:
  explicit Orderer(LayeredGraph& graph)
      : graph_(graph),
        up_(graph.cells.size()),
        down_(graph.cells.size()),
        value_(graph.cells.size()),
        group_rank_(graph.groups.size()) {
    for (const Segment& segment : graph.segments) {
      if (graph.IsFar(segment)) continue;
      const int64_t weight = segment.IsFrame() ? kFrameWeight : kLineWeight;
      up_[segment.lower].push_back({segment.upper, weight});
      down_[segment.upper].push_back({segment.lower, weight});
    }
    PutMainPathsInTheMiddle();
    for (const LayeredGraph::Span& span : graph.groups) has_groups_ |= span.first != kNone;
  }

  std::vector<LayerOrder> Run(size_t most) {
    most_ = most;
    const Effort effort = EffortFor(graph_.cells.size() + graph_.segments.size());
    for (int start = 0; start < effort.starts && !IsEnough(); ++start) {
      Begin(start);
      Improve(effort);
    }
    if (effort.starts > 1) TryGroupOrders(effort);
    return std::move(best_layers_);
  }

 private:
  struct Neighbour {
    size_t cell;
    int64_t weight;
  };
  // What moves as one: a cell without a group, or a group's part in a layer.
  struct Unit {
    std::vector<size_t> cells;
    size_t group = 0;
    double value = -1;
  };

  // Of the lines that leave a box, those beside the main path go to its left and right in turn.
  void PutMainPathsInTheMiddle() {
    std::vector<size_t> main(graph_.cells.size(), kNone);
    for (const Segment& segment : graph_.segments) {
      if (segment.path != kNone) main[segment.upper] = segment.lower;
    }
    for (size_t cell = 0; cell < main.size(); ++cell) {
      if (main[cell] == kNone || down_[cell].size() < 2) continue;
      std::vector<Neighbour> left, right;
      Neighbour middle{};
      for (const Neighbour& next : down_[cell]) {
        if (next.cell == main[cell] && middle.weight == 0) {
          middle = next;
        } else {
          (right.size() <= left.size() ? right : left).push_back(next);
        }
      }
      left.push_back(middle);
      left.insert(left.end(), right.begin(), right.end());
      down_[cell] = std::move(left);
    }
  }

  // Beginnings: searches from the top and from the bottom, then from the top with the choices in
  // another order each time.
  void Begin(int start) {
    std::vector<size_t> visits;
    std::vector<bool> seen(graph_.cells.size());
    const bool from_top = start != 1;
    Random random(static_cast<uint32_t>(start));
    const auto& ahead = from_top ? down_ : up_;
    const auto& behind = from_top ? up_ : down_;
    std::vector<size_t> waiting;
    const auto visit = [&](size_t first) {
      waiting.push_back(first);
      while (!waiting.empty()) {
        const size_t cell = waiting.back();
        waiting.pop_back();
        if (seen[cell]) continue;
        seen[cell] = true;
        visits.push_back(cell);
        const size_t begin = waiting.size();
        for (const Neighbour& next : ahead[cell]) waiting.push_back(next.cell);
        std::reverse(waiting.begin() + static_cast<std::ptrdiff_t>(begin), waiting.end());
        if (start < 2) continue;
        for (size_t i = begin; i + 1 < waiting.size(); ++i) {
          std::swap(waiting[i], waiting[i + random.Next() % (waiting.size() - i)]);
        }
      }
    };
    for (size_t cell = 0; cell < graph_.cells.size(); ++cell) {
      if (behind[cell].empty() && !graph_.cells[cell].far) visit(cell);
    }
    layers_.assign(graph_.layers.size(), {});
    for (const size_t cell : visits) layers_[graph_.cells[cell].layer].push_back(cell);
    for (size_t layer = 0; layer < layers_.size(); ++layer) {
      Number(layer);
      for (const size_t cell : layers_[layer]) value_[cell] = Place(cell);
    }
    RankGroups();
    ArrangeAll();
  }

  double Place(size_t cell) const { return static_cast<double>(graph_.cells[cell].order); }

  void Number(size_t layer) {
    for (size_t i = 0; i < layers_[layer].size(); ++i) graph_.cells[layers_[layer][i]].order = i;
  }

  // Groups from left to right, by where their cells are on the whole.
  void RankGroups() {
    if (!has_groups_) return;
    std::vector<double> sum(graph_.groups.size()), count(graph_.groups.size());
    for (const std::vector<size_t>& layer : layers_) {
      for (const size_t cell : layer) {
        const size_t group = graph_.cells[cell].group;
        if (graph_.cells[cell].kind == CellKind::kFrame) continue;
        sum[group] += (Place(cell) + .5) / static_cast<double>(layer.size());
        count[group] += 1;
      }
    }
    std::vector<size_t> order(graph_.groups.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
      return sum[a] / std::max(count[a], 1.0) < sum[b] / std::max(count[b], 1.0);
    });
    for (size_t i = 0; i < order.size(); ++i) group_rank_[order[i]] = i;
  }

  void ArrangeAll() {
    if (!has_groups_) return;
    for (size_t layer = 0; layer < layers_.size(); ++layer) {
      for (const size_t cell : layers_[layer]) value_[cell] = Place(cell);
      Arrange(layer, false);
    }
  }

  void Improve(const Effort& effort) {
    int since_best = 0;
    int64_t best_here = -1;
    for (int sweep = 0; sweep < effort.sweeps && since_best < effort.patience; ++sweep) {
      Sweep(sweep % 2 == 0, sweep % 4 >= 2);
      Exchange(effort.exchanges, sweep % 4 >= 2);
      const int64_t crossings = Count();
      if (best_here < 0 || crossings < best_here) {
        best_here = crossings;
        since_best = 0;
      } else {
        ++since_best;
      }
      Keep(crossings);
      if (best_here == 0) return;
    }
  }

  bool IsEnough() const { return best_ == 0 && best_layers_.size() >= most_; }

  void Keep(int64_t crossings) {
    if (best_ >= 0 && crossings > best_) return;
    if (best_ < 0 || crossings < best_) {
      best_layers_.clear();
      best_ = crossings;
      best_rank_ = group_rank_;
    }
    if (best_layers_.size() >= most_) return;
    if (std::find(best_layers_.begin(), best_layers_.end(), layers_) == best_layers_.end()) {
      best_layers_.push_back(layers_);
    }
  }

  // Groups that share layers change places, two by two.
  void TryGroupOrders(const Effort& effort) {
    if (!has_groups_ || graph_.groups.size() > 24) return;
    const Effort small{1, std::max(4, effort.sweeps / 3), 3, effort.exchanges};
    for (size_t rank = 0; rank + 1 < best_rank_.size() && !IsEnough(); ++rank) {
      group_rank_ = best_rank_;
      layers_ = best_layers_.front();
      for (size_t layer = 0; layer < layers_.size(); ++layer) Number(layer);
      for (size_t& other : group_rank_) {
        if (other == rank) {
          other = rank + 1;
        } else if (other == rank + 1) {
          other = rank;
        }
      }
      ArrangeAll();
      Improve(small);
    }
  }

  void Sweep(bool down, bool ties_backwards) {
    const size_t count = layers_.size();
    for (size_t i = 1; i < count; ++i) {
      const size_t layer = down ? i : count - 1 - i;
      for (const size_t cell : layers_[layer]) {
        value_[cell] = Median(down ? up_[cell] : down_[cell]);
      }
      Arrange(layer, ties_backwards);
    }
  }

  // The weighted median of the neighbours' places; -1 without neighbours.
  double Median(const std::vector<Neighbour>& neighbours) {
    if (neighbours.empty()) return -1;
    places_.clear();
    for (const Neighbour& neighbour : neighbours) places_.push_back(Place(neighbour.cell));
    std::sort(places_.begin(), places_.end());
    const size_t count = places_.size();
    const size_t middle = count / 2;
    if (count % 2 == 1) return places_[middle];
    if (count == 2) return (places_[0] + places_[1]) / 2;
    const double left = places_[middle - 1] - places_[0];
    const double right = places_[count - 1] - places_[middle];
    if (left + right == 0) return places_[middle];
    return (places_[middle - 1] * right + places_[middle] * left) / (left + right);
  }

  // Sorts by value; what has none stays where it is.
  template <class T, class Value>
  static void SortAround(std::vector<T>& members, Value value, bool ties_backwards) {
    std::vector<size_t> slots, order;
    for (size_t i = 0; i < members.size(); ++i) {
      if (value(members[i]) >= 0) slots.push_back(i);
    }
    order = slots;
    if (ties_backwards) std::reverse(order.begin(), order.end());
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return value(members[a]) < value(members[b]); });
    std::vector<T> sorted = members;
    for (size_t i = 0; i < slots.size(); ++i) sorted[slots[i]] = std::move(members[order[i]]);
    members = std::move(sorted);
  }

  void Arrange(size_t layer, bool ties_backwards) {
    if (!has_groups_) {
      SortAround(
          layers_[layer], [this](size_t cell) { return value_[cell]; }, ties_backwards);
      return Number(layer);
    }
    std::vector<Unit> units = Units(layer);
    for (Unit& unit : units) {
      if (unit.group != 0) ArrangeGroup(unit, ties_backwards);
    }
    KeepGroupOrder(units);
    SortAround(
        units, [](const Unit& unit) { return unit.value; }, ties_backwards);
    layers_[layer].clear();
    for (const Unit& unit : units) {
      layers_[layer].insert(layers_[layer].end(), unit.cells.begin(), unit.cells.end());
    }
    Number(layer);
  }

  std::vector<Unit> Units(size_t layer) {
    std::vector<Unit> units;
    unit_of_.resize(graph_.groups.size(), kNone);
    for (const size_t cell : layers_[layer]) {
      const size_t group = graph_.cells[cell].group;
      if (group != 0 && unit_of_[group] != kNone) {
        units[unit_of_[group]].cells.push_back(cell);
        continue;
      }
      if (group != 0) unit_of_[group] = units.size();
      units.push_back({{cell}, group, group == 0 ? value_[cell] : -1});
    }
    for (const Unit& unit : units) unit_of_[unit.group] = kNone;
    return units;
  }

  // The frame's sides stay outermost. The group stands where its members would, on the whole.
  void ArrangeGroup(Unit& unit, bool ties_backwards) {
    std::vector<size_t> members;
    size_t sides[2] = {kNone, kNone};
    double sum = 0, count = 0, places = 0;
    for (const size_t cell : unit.cells) {
      places += Place(cell);
      if (graph_.cells[cell].kind == CellKind::kFrame) {
        // The left side was made before the right one.
        sides[0] = std::min(sides[0], cell);
        sides[1] = sides[1] == kNone ? cell : std::max(sides[1], cell);
        continue;
      }
      members.push_back(cell);
      if (value_[cell] < 0) continue;
      sum += value_[cell];
      count += 1;
    }
    unit.value = count > 0 ? sum / count : places / static_cast<double>(unit.cells.size());
    SortAround(
        members, [this](size_t cell) { return value_[cell]; }, ties_backwards);
    unit.cells.assign(1, sides[0]);
    unit.cells.insert(unit.cells.end(), members.begin(), members.end());
    unit.cells.push_back(sides[1]);
  }

  // Groups that would change places meet in the middle, in their order.
  void KeepGroupOrder(std::vector<Unit>& units) const {
    std::vector<Unit*> in_order;
    for (Unit& unit : units) {
      if (unit.group != 0) in_order.push_back(&unit);
    }
    std::sort(in_order.begin(), in_order.end(), [this](const Unit* a, const Unit* b) {
      return group_rank_[a->group] < group_rank_[b->group];
    });
    struct Pool {
      double sum, count;
    };
    std::vector<Pool> pools;
    for (const Unit* unit : in_order) {
      pools.push_back({unit->value, 1});
      while (pools.size() > 1) {
        Pool& left = pools[pools.size() - 2];
        if (left.sum / left.count <= pools.back().sum / pools.back().count) break;
        left.sum += pools.back().sum;
        left.count += pools.back().count;
        pools.pop_back();
      }
    }
    size_t next = 0;
    for (const Pool& pool : pools) {
      for (double i = 0; i < pool.count; ++i, ++next) {
        in_order[next]->value = pool.sum / pool.count + static_cast<double>(next) * 1e-6;
      }
    }
  }

  // By how much the crossings change when the cells of [begin, middle) and those of [middle, end)
  // change places.
  int64_t ExchangeGain(const std::vector<size_t>& layer, size_t begin, size_t middle, size_t end) {
    int64_t gain = 0;
    for (size_t i = begin; i < middle; ++i) {
      for (size_t k = middle; k < end; ++k) {
        gain += Gain(up_[layer[i]], up_[layer[k]]) + Gain(down_[layer[i]], down_[layer[k]]);
      }
    }
    return gain;
  }

  int64_t Gain(const std::vector<Neighbour>& left, const std::vector<Neighbour>& right) const {
    int64_t gain = 0;
    for (const Neighbour& a : left) {
      const size_t place = graph_.cells[a.cell].order;
      for (const Neighbour& b : right) {
        const size_t other = graph_.cells[b.cell].order;
        if (place > other) gain += a.weight * b.weight;
        if (place < other) gain -= a.weight * b.weight;
      }
    }
    return gain;
  }

  void Exchange(int rounds, bool equals) {
    bool better = true;
    for (int round = 0; round < rounds && better; ++round) {
      better = false;
      for (size_t layer = 0; layer < layers_.size(); ++layer) {
        better |= ExchangeLayer(layer, equals && round == 0);
      }
    }
  }

  size_t UnitEnd(const std::vector<size_t>& layer, size_t begin) const {
    const size_t group = graph_.cells[layer[begin]].group;
    size_t end = begin + 1;
    while (group != 0 && end < layer.size() && graph_.cells[layer[end]].group == group) ++end;
    return end;
  }

  bool ExchangeLayer(size_t number, bool equals) {
    std::vector<size_t>& layer = layers_[number];
    bool better = false;
    const auto exchange = [&](size_t begin, size_t middle, size_t end) {
      const int64_t gain = ExchangeGain(layer, begin, middle, end);
      if (gain < 0 || (gain == 0 && !equals)) return false;
      std::rotate(layer.begin() + static_cast<std::ptrdiff_t>(begin),
                  layer.begin() + static_cast<std::ptrdiff_t>(middle),
                  layer.begin() + static_cast<std::ptrdiff_t>(end));
      for (size_t i = begin; i < end; ++i) graph_.cells[layer[i]].order = i;
      better |= gain > 0;
      return true;
    };
    for (size_t begin = 0; begin < layer.size();) {
      const size_t middle = UnitEnd(layer, begin);
      for (size_t i = begin + 1; i + 2 < middle; ++i) exchange(i, i + 1, i + 2);
      if (middle == layer.size()) break;
      const size_t end = UnitEnd(layer, middle);
      const bool two_groups =
          graph_.cells[layer[begin]].group != 0 && graph_.cells[layer[middle]].group != 0;
      begin = !two_groups && exchange(begin, middle, end) ? begin + (end - middle) : middle;
    }
    return better;
  }

  int64_t Count() {
    int64_t crossings = 0;
    for (size_t layer = 0; layer + 1 < layers_.size(); ++layer) {
      crossers_.clear();
      for (const size_t cell : layers_[layer]) {
        for (const Neighbour& next : down_[cell]) {
          crossers_.push_back(
              {graph_.cells[cell].order, graph_.cells[next.cell].order, next.weight});
        }
      }
      crossings += CountCrossings(crossers_, layers_[layer + 1].size());
    }
    return crossings;
  }

  LayeredGraph& graph_;
  std::vector<std::vector<Neighbour>> up_, down_;
  std::vector<double> value_;
  std::vector<size_t> group_rank_;  // from left to right
  bool has_groups_ = false;
  LayerOrder layers_;
  size_t most_ = 1;
  std::vector<LayerOrder> best_layers_;
  std::vector<size_t> best_rank_;
  int64_t best_ = -1;
  std::vector<double> places_;
  std::vector<size_t> unit_of_;  // of each group in the layer at hand
  std::vector<Crosser> crossers_;
};

}  // namespace

std::vector<LayerOrder> OrderLayers(LayeredGraph& graph, size_t most) {
  return Orderer(graph).Run(most);
}

}  // namespace vndoc6::drawing
