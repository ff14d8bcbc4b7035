#include "layers.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

#include "bands.h"

namespace vndoc6::drawing {
namespace {

// A line over more layers than this goes around, or a few long lines would need more cells than
// there are boxes.
constexpr size_t kLongestPath = 12;
constexpr int kSweeps = 8;

class LayerMaker {
 public:
  LayerMaker(size_t box_count, const std::vector<LayoutEdge>& edges,
             const std::vector<size_t>& groups)
      : box_count_(box_count), edges_(edges), groups_(groups) {}

  Layering Make() {
    out_.cells.resize(box_count_);
    out_.paths.resize(edges_.size());
    for (size_t i = 0; i < box_count_; ++i) out_.cells[i].box = i;
    FindEdgesUpwards();
    AssignLayers();
    AddLooseBoxes();
    AddPaths();
    ChooseBands(out_, groups_);
    FillLayers();
    ReduceCrossings();
    return std::move(out_);
  }

 private:
  // Depth first, from the first box on: an edge to a box that is still being visited closes a
  // circle, and leads upwards.
  void FindEdgesUpwards() {
    std::vector<std::vector<size_t>> leaving(box_count_);
    for (size_t i = 0; i < edges_.size(); ++i) leaving[edges_[i].from].push_back(i);
    enum class State : char { kNew, kOpen, kDone };
    std::vector<State> states(box_count_, State::kNew);
    visited_.assign(box_count_, 0);
    upwards_.assign(edges_.size(), false);
    std::vector<std::pair<size_t, size_t>> stack;  // a box, and the next of its edges
    size_t number = 0;
    const auto open = [&](size_t box) {
      states[box] = State::kOpen;
      visited_[box] = number++;
      stack.emplace_back(box, 0);
    };
    for (size_t root = 0; root < box_count_; ++root) {
      if (states[root] == State::kNew) open(root);
      while (!stack.empty()) {
        auto& [box, next] = stack.back();
        if (next == leaving[box].size()) {
          states[box] = State::kDone;
          stack.pop_back();
          continue;
        }
        const size_t edge = leaving[box][next++];
        const size_t to = edges_[edge].to;
        if (states[to] == State::kOpen) upwards_[edge] = true;
        if (states[to] == State::kNew) open(to);
      }
    }
  }

  // Each box one below the lowest that leads to it. What nothing leads to stands just above what it
  // leads to.
  void AssignLayers() {
    std::vector<std::vector<size_t>> next(box_count_);
    std::vector<size_t> waiting(box_count_, 0);
    for (size_t i = 0; i < edges_.size(); ++i) {
      if (upwards_[i]) continue;
      next[edges_[i].from].push_back(edges_[i].to);
      ++waiting[edges_[i].to];
    }
    std::vector<size_t> ready;
    std::vector<size_t> first;
    for (size_t i = 0; i < box_count_; ++i) {
      if (waiting[i] == 0) ready.push_back(i);
    }
    first = ready;
    for (size_t i = 0; i < ready.size(); ++i) {
      for (size_t to : next[ready[i]]) {
        out_.cells[to].layer = std::max(out_.cells[to].layer, out_.cells[ready[i]].layer + 1);
        if (--waiting[to] == 0) ready.push_back(to);
      }
    }
    for (size_t box : first) {
      if (next[box].empty()) continue;
      size_t layer = out_.cells[next[box].front()].layer;
      for (size_t to : next[box]) layer = std::min(layer, out_.cells[to].layer);
      out_.cells[box].layer = layer - 1;
    }
  }

  // Boxes without any edge fill rows of their own below the others, those of each group together.
  void AddLooseBoxes() {
    std::vector<bool> joined(box_count_, false);
    for (const LayoutEdge& edge : edges_) joined[edge.from] = joined[edge.to] = true;
    size_t row = 0;
    std::map<size_t, std::vector<size_t>> loose;  // by group
    for (size_t i = 0; i < box_count_; ++i) {
      if (joined[i]) {
        row = std::max(row, out_.cells[i].layer + 1);
      } else {
        loose[groups_.empty() ? 0 : groups_[i]].push_back(i);
      }
    }
    for (const auto& [group, members] : loose) {
      const double side = std::sqrt(static_cast<double>(members.size()));
      const auto columns = static_cast<size_t>(std::ceil(side));
      for (size_t i = 0; i < members.size(); ++i) out_.cells[members[i]].layer = row + i / columns;
      row += (members.size() + columns - 1) / columns;
    }
  }

  void AddPaths() {
    for (size_t i = 0; i < edges_.size(); ++i) {
      const auto [from, to] = edges_[i];
      if (upwards_[i] || out_.cells[to].layer - out_.cells[from].layer > kLongestPath) continue;
      std::vector<size_t>& path = out_.paths[i];
      path.push_back(from);
      for (size_t layer = out_.cells[from].layer + 1; layer < out_.cells[to].layer; ++layer) {
        path.push_back(out_.cells.size());
        visited_.push_back(visited_[from]);
        out_.cells.push_back({Cell::kPassing, layer, 0, 0, {}, {}});
      }
      path.push_back(to);
      for (size_t k = 1; k < path.size(); ++k) {
        out_.cells[path[k - 1]].below.push_back(path[k]);
        out_.cells[path[k]].above.push_back(path[k - 1]);
      }
    }
  }

  void FillLayers() {
    std::vector<size_t> by_visit(out_.cells.size());
    std::iota(by_visit.begin(), by_visit.end(), size_t{0});
    std::stable_sort(by_visit.begin(), by_visit.end(), [this](size_t a, size_t b) {
      return std::pair(out_.cells[a].band, visited_[a]) <
             std::pair(out_.cells[b].band, visited_[b]);
    });
    for (size_t cell : by_visit) {
      const size_t layer = out_.cells[cell].layer;
      if (out_.layers.size() <= layer) out_.layers.resize(layer + 1);
      out_.layers[layer].push_back(cell);
    }
    for (const auto& layer : out_.layers) Number(layer);
  }

  void Number(const std::vector<size_t>& layer) {
    for (size_t i = 0; i < layer.size(); ++i) out_.cells[layer[i]].order = i;
  }

  // Puts each cell of a band where its neighbours are on the average, in one direction after the
  // other, and keeps the best order seen.
  void ReduceCrossings() {
    auto best = out_.layers;
    size_t fewest = Crossings();
    for (int sweep = 0; sweep < kSweeps && fewest > 0; ++sweep) {
      const bool down = sweep % 2 == 0;
      for (size_t i = 1; i < out_.layers.size(); ++i) {
        SortByNeighbours(out_.layers[down ? i : out_.layers.size() - 1 - i],
                         down ? &Cell::above : &Cell::below);
      }
      const size_t crossings = Crossings();
      if (crossings >= fewest) continue;
      fewest = crossings;
      best = out_.layers;
    }
    out_.layers = std::move(best);
    for (const auto& layer : out_.layers) Number(layer);
  }

  void SortByNeighbours(std::vector<size_t>& layer, std::vector<size_t> Cell::*neighbours) {
    std::vector<std::pair<double, size_t>> keyed;
    for (size_t cell : layer) {
      const auto& others = out_.cells[cell].*neighbours;
      auto centre = static_cast<double>(out_.cells[cell].order);
      if (!others.empty()) {
        double sum = 0;
        for (size_t other : others) sum += static_cast<double>(out_.cells[other].order);
        centre = sum / static_cast<double>(others.size());
      }
      keyed.emplace_back(centre, cell);
    }
    std::stable_sort(keyed.begin(), keyed.end(), [this](const auto& a, const auto& b) {
      return std::pair(out_.cells[a.second].band, a.first) <
             std::pair(out_.cells[b.second].band, b.first);
    });
    for (size_t i = 0; i < layer.size(); ++i) layer[i] = keyed[i].second;
    Number(layer);
  }

  size_t Crossings() const {
    size_t crossings = 0;
    for (size_t i = 0; i + 1 < out_.layers.size(); ++i) crossings += CrossingsBelow(i);
    return crossings;
  }

  // The pairs of edges whose ends stand in opposite orders, counted with a binary indexed tree.
  size_t CrossingsBelow(size_t index) const {
    std::vector<size_t> ends;
    for (size_t cell : out_.layers[index]) {
      const size_t begin = ends.size();
      for (size_t below : out_.cells[cell].below) ends.push_back(out_.cells[below].order);
      std::sort(ends.begin() + static_cast<std::ptrdiff_t>(begin), ends.end());
    }
    std::vector<size_t> tree(out_.layers[index + 1].size() + 1, 0);
    size_t crossings = 0;
    for (size_t seen = 0; seen < ends.size(); ++seen) {
      size_t not_right = 0;
      for (size_t i = ends[seen] + 1; i > 0; i &= i - 1) not_right += tree[i];
      crossings += seen - not_right;
      for (size_t i = ends[seen] + 1; i < tree.size(); i += i & (~i + 1)) ++tree[i];
    }
    return crossings;
  }

  size_t box_count_;
  const std::vector<LayoutEdge>& edges_;
  const std::vector<size_t>& groups_;
  Layering out_;
  std::vector<bool> upwards_;
  std::vector<size_t> visited_;  // when each cell was first seen
};

}  // namespace

Layering MakeLayers(size_t box_count, const std::vector<LayoutEdge>& edges,
                    const std::vector<size_t>& groups) {
  return LayerMaker(box_count, edges, groups).Make();
}

}  // namespace vndoc6::drawing
