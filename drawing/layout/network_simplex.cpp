#include "network_simplex.h"

#include <algorithm>
#include <limits>
#include <queue>
#include <utility>

namespace vndoc6::drawing {
namespace {

constexpr size_t kNone = static_cast<size_t>(-1);

class NetworkSimplex {
 public:
  NetworkSimplex(size_t node_count, const std::vector<RankEdge>& edges)
      : edges_(edges),
        rank_(node_count),
        nodes_(node_count),
        in_tree_(edges.size()),
        cut_(edges.size()) {
    for (size_t i = 0; i < edges.size(); ++i) {
      nodes_[edges[i].tail].edges.push_back(i);
      nodes_[edges[i].head].edges.push_back(i);
    }
  }

  void StartAt(const std::vector<int>& ranks) { rank_ = ranks; }

  void RankByLongestPaths() {
    std::vector<size_t> arriving(nodes_.size());
    for (const RankEdge& edge : edges_) ++arriving[edge.head];
    std::vector<size_t> ready;
    for (size_t node = 0; node < nodes_.size(); ++node) {
      if (arriving[node] == 0) ready.push_back(node);
    }
    for (size_t i = 0; i < ready.size(); ++i) {
      for (const size_t edge : nodes_[ready[i]].edges) {
        if (edges_[edge].tail != ready[i]) continue;
        int& rank = rank_[edges_[edge].head];
        rank = std::max(rank, rank_[ready[i]] + edges_[edge].length);
        if (--arriving[edges_[edge].head] == 0) ready.push_back(edges_[edge].head);
      }
    }
  }

  std::vector<int> Run(size_t most_pivots) {
    GrowTrees();
    for (const size_t root : roots_) Number(root, post_order_.size());
    for (const size_t node : post_order_) SetCutValue(nodes_[node].parent);
    for (size_t i = 0; i < most_pivots; ++i) {
      const size_t leaving = LeavingEdge();
      if (leaving == kNone) break;
      Exchange(leaving, EnteringEdge(leaving));
    }
    StartAtZero();
    return std::move(rank_);
  }

 private:
  struct Node {
    std::vector<size_t> edges;
    std::vector<size_t> tree_edges;
    size_t parent = kNone;  // the tree edge towards the root
    size_t root = kNone;
    size_t low = 0, lim = 0;  // of the numbers in post-order below the node: the least, its own
  };

  int Slack(size_t edge) const {
    return rank_[edges_[edge].head] - rank_[edges_[edge].tail] - edges_[edge].length;
  }
  size_t Other(size_t edge, size_t node) const {
    return edges_[edge].tail == node ? edges_[edge].head : edges_[edge].tail;
  }

  // A tree of edges without slack in each part of the graph. A tree grows by the edge that has the
  // least slack, after the whole tree moved by that much. Two queues hold the edges that leave and
  // that enter the tree, with their slack as if the tree had not moved.
  void GrowTrees() {
    for (size_t node = 0; node < nodes_.size(); ++node) {
      if (nodes_[node].root == kNone) GrowTree(node);
    }
  }

  void GrowTree(size_t root) {
    using Waiting = std::pair<int, size_t>;
    std::priority_queue<Waiting, std::vector<Waiting>, std::greater<>> leaving, entering;
    std::vector<size_t> members;
    int moved = 0;
    const auto add = [&](size_t node) {
      nodes_[node].root = root;
      rank_[node] -= moved;
      members.push_back(node);
      for (const size_t edge : nodes_[node].edges) {
        const size_t other = Other(edge, node);
        if (nodes_[other].root == root) continue;
        if (edges_[edge].tail == node) {
          leaving.emplace(rank_[other] - rank_[node] - edges_[edge].length, edge);
        } else {
          entering.emplace(rank_[node] - rank_[other] - edges_[edge].length, edge);
        }
      }
    };
    const auto clean = [&](auto& queue) {
      while (!queue.empty()) {
        const RankEdge& edge = edges_[queue.top().second];
        if (nodes_[edge.tail].root != root || nodes_[edge.head].root != root) break;
        queue.pop();
      }
    };
    add(root);
    while (true) {
      clean(leaving);
      clean(entering);
      if (leaving.empty() && entering.empty()) break;
      constexpr int kMost = std::numeric_limits<int>::max();
      const int out = leaving.empty() ? kMost : leaving.top().first - moved;
      const int in = entering.empty() ? kMost : entering.top().first + moved;
      const bool leaves = out <= in;
      const size_t edge = leaves ? leaving.top().second : entering.top().second;
      moved += leaves ? out : -in;
      const size_t tail = edges_[edge].tail;
      in_tree_[edge] = true;
      nodes_[tail].tree_edges.push_back(edge);
      nodes_[edges_[edge].head].tree_edges.push_back(edge);
      add(nodes_[tail].root == root ? edges_[edge].head : tail);
    }
    for (const size_t member : members) rank_[member] += moved;
    roots_.push_back(root);
  }

  // Numbers a node and those below it in post-order.
  void Number(size_t top, size_t number) {
    struct Visit {
      size_t node, next;
    };
    std::vector<Visit> path = {{top, 0}};
    nodes_[top].low = number;
    while (!path.empty()) {
      Visit& visit = path.back();
      Node& node = nodes_[visit.node];
      if (visit.next < node.tree_edges.size()) {
        const size_t edge = node.tree_edges[visit.next++];
        if (edge == node.parent) continue;
        const size_t child = Other(edge, visit.node);
        nodes_[child].parent = edge;
        nodes_[child].low = number;
        path.push_back({child, 0});
        continue;
      }
      node.lim = number;
      if (number == post_order_.size()) post_order_.push_back(visit.node);
      post_order_[number++] = visit.node;
      path.pop_back();
    }
  }

  bool IsBelow(size_t node, size_t top) const {
    return nodes_[top].root == nodes_[node].root && nodes_[top].low <= nodes_[node].lim &&
           nodes_[node].lim <= nodes_[top].lim;
  }

  // The node at the tree edge's end away from the root.
  size_t LowerEnd(size_t edge) const {
    return nodes_[edges_[edge].tail].parent == edge ? edges_[edge].tail : edges_[edge].head;
  }

  // The weight of the edges from the tail's side to the head's, less that of those back, when the
  // tree edge is cut; from the cut values of the tree edges below.
  void SetCutValue(size_t edge) {
    if (edge == kNone) return;
    const size_t below = LowerEnd(edge);
    const bool tail_below = edges_[edge].tail == below;
    int sum = 0;
    for (const size_t other : nodes_[below].edges) {
      const bool leaves = edges_[other].tail == below;
      int value = leaves == tail_below ? edges_[other].weight : -edges_[other].weight;
      if (other != edge && in_tree_[other]) {
        value -= leaves == tail_below ? cut_[other] : -cut_[other];
      }
      sum += value;
    }
    cut_[edge] = sum;
  }

  size_t LeavingEdge() {
    for (size_t i = 0; i < edges_.size(); ++i) {
      const size_t edge = (search_from_ + i) % edges_.size();
      if (!in_tree_[edge] || cut_[edge] >= 0) continue;
      search_from_ = edge;
      return edge;
    }
    return kNone;
  }

  // The edge with the least slack from the head's side of a tree edge to its tail's.
  size_t EnteringEdge(size_t leaving) const {
    const size_t top = LowerEnd(leaving);
    const bool tail_below = edges_[leaving].tail == top;
    size_t best = kNone;
    int least = std::numeric_limits<int>::max();
    for (size_t number = nodes_[top].low; number <= nodes_[top].lim; ++number) {
      const size_t node = post_order_[number];
      for (const size_t edge : nodes_[node].edges) {
        if (in_tree_[edge] || (edges_[edge].head == node) != tail_below) continue;
        if (IsBelow(Other(edge, node), top) || Slack(edge) >= least) continue;
        least = Slack(edge);
        best = edge;
      }
    }
    return best;
  }

  void Exchange(size_t leaving, size_t entering) {
    const size_t below = LowerEnd(leaving);
    const int slack = Slack(entering);
    const int move = edges_[leaving].tail == below ? -slack : slack;
    for (size_t number = nodes_[below].low; number <= nodes_[below].lim; ++number) {
      rank_[post_order_[number]] += move;
    }
    const size_t top = CommonTop(edges_[entering].tail, edges_[entering].head);
    Unlink(leaving, edges_[leaving].tail);
    Unlink(leaving, edges_[leaving].head);
    in_tree_[leaving] = false;
    in_tree_[entering] = true;
    nodes_[edges_[entering].tail].tree_edges.push_back(entering);
    nodes_[edges_[entering].head].tree_edges.push_back(entering);
    const std::vector<size_t> changed = PathTo(top, edges_[leaving].tail, edges_[leaving].head,
                                               edges_[entering].tail, edges_[entering].head);
    Number(top, nodes_[top].low);
    SetCutValues(changed);
  }

  void Unlink(size_t edge, size_t node) {
    auto& tree_edges = nodes_[node].tree_edges;
    tree_edges.erase(std::find(tree_edges.begin(), tree_edges.end(), edge));
  }

  size_t CommonTop(size_t node, size_t other) const {
    while (!IsBelow(other, node)) node = Other(nodes_[node].parent, node);
    return node;
  }

  // The nodes whose cut values an exchange changes: those on the ways to the common top.
  template <class... Ends>
  std::vector<size_t> PathTo(size_t top, Ends... ends) const {
    std::vector<size_t> nodes;
    for (size_t node : {ends...}) {
      while (node != top && IsBelow(node, top)) {
        nodes.push_back(node);
        node = Other(nodes_[node].parent, node);
      }
    }
    return nodes;
  }

  // From the bottom up.
  void SetCutValues(std::vector<size_t> nodes) {
    std::sort(nodes.begin(), nodes.end(),
              [this](size_t a, size_t b) { return nodes_[a].lim < nodes_[b].lim; });
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
    for (const size_t node : nodes) SetCutValue(nodes_[node].parent);
  }

  void StartAtZero() {
    std::vector<int> least(nodes_.size(), std::numeric_limits<int>::max());
    for (size_t i = 0; i < nodes_.size(); ++i) {
      least[nodes_[i].root] = std::min(least[nodes_[i].root], rank_[i]);
    }
    for (size_t i = 0; i < nodes_.size(); ++i) rank_[i] -= least[nodes_[i].root];
  }

  const std::vector<RankEdge>& edges_;
  std::vector<int> rank_;
  std::vector<Node> nodes_;
  std::vector<bool> in_tree_;
  std::vector<int> cut_;
  std::vector<size_t> roots_;
  std::vector<size_t> post_order_;
  size_t search_from_ = 0;
};

}  // namespace

std::vector<int> RankNodes(size_t node_count, const std::vector<RankEdge>& edges,
                           size_t most_pivots) {
  NetworkSimplex simplex(node_count, edges);
  simplex.RankByLongestPaths();
  return simplex.Run(most_pivots);
}

std::vector<int> RankNodes(const std::vector<int>& start, const std::vector<RankEdge>& edges,
                           size_t most_pivots) {
  NetworkSimplex simplex(start.size(), edges);
  simplex.StartAt(start);
  return simplex.Run(most_pivots);
}

}  // namespace vndoc6::drawing
