#include "back_edges.h"

namespace vndoc6::drawing {
namespace {

class Search {
 public:
  Search(size_t node_count, const std::vector<std::pair<size_t, size_t>>& edges)
      : edges_(edges), leaving_(node_count), state_(node_count), back_(edges.size()) {
    for (size_t i = 0; i < edges.size(); ++i) leaving_[edges[i].first].push_back(i);
  }

  std::vector<bool> Run() {
    std::vector<bool> arrived(state_.size());
    for (const auto& [from, to] : edges_) {
      if (from != to) arrived[to] = true;
    }
    // From the beginnings first: nothing leads back to them.
    for (size_t node = 0; node < state_.size(); ++node) {
      if (node == 0 || !arrived[node]) From(node);
    }
    for (size_t node = 0; node < state_.size(); ++node) From(node);
    return std::move(back_);
  }

 private:
  enum class State : char { kNew, kOnPath, kDone };

  void From(size_t start) {
    struct Visit {
      size_t node, next;
    };
    if (state_[start] != State::kNew) return;
    std::vector<Visit> path = {{start, 0}};
    state_[start] = State::kOnPath;
    while (!path.empty()) {
      Visit& visit = path.back();
      if (visit.next == leaving_[visit.node].size()) {
        state_[visit.node] = State::kDone;
        path.pop_back();
        continue;
      }
      const size_t edge = leaving_[visit.node][visit.next++];
      const size_t to = edges_[edge].second;
      if (to == visit.node) continue;
      if (state_[to] == State::kOnPath) back_[edge] = true;
      if (state_[to] != State::kNew) continue;
      state_[to] = State::kOnPath;
      path.push_back({to, 0});
    }
  }

  const std::vector<std::pair<size_t, size_t>>& edges_;
  std::vector<std::vector<size_t>> leaving_;
  std::vector<State> state_;
  std::vector<bool> back_;
};

}  // namespace

std::vector<bool> FindBackEdges(size_t node_count,
                                const std::vector<std::pair<size_t, size_t>>& edges) {
  return Search(node_count, edges).Run();
}

}  // namespace vndoc6::drawing
