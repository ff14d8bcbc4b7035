#include "layered.h"

#include <algorithm>
#include <numeric>

#include "back_edges.h"
#include "network_simplex.h"

namespace vndoc6::drawing {
namespace {

// So many steps of work the search for the best layers may take, in sum.
constexpr size_t kRankWork = 40'000'000;
// What keeps a group's first and last layer near each other, beside the edges' own weight of 1.
constexpr int kGroupWeight = 2;

class LayerMaker {
 public:
  LayerMaker(const std::vector<LayoutBox>& boxes, const std::vector<LayoutEdge>& edges,
             const std::vector<size_t>& groups, const LayoutStyle& style)
      : boxes_(boxes), edges_(edges), groups_(groups) {
    out_.style = style;
  }

  LayeredGraph Make() {
    FindReversed();
    FindRanks();
    AddBoxes();
    AddLines();
    AddFrames();
    return std::move(out_);
  }

 private:
  void FindReversed() {
    std::vector<std::pair<size_t, size_t>> pairs;
    pairs.reserve(edges_.size());
    for (const LayoutEdge& edge : edges_) pairs.emplace_back(edge.from, edge.to);
    out_.reversed = FindBackEdges(boxes_.size(), pairs);
  }

  size_t Upper(size_t edge) const {
    return out_.reversed[edge] ? edges_[edge].to : edges_[edge].from;
  }
  size_t Lower(size_t edge) const {
    return out_.reversed[edge] ? edges_[edge].from : edges_[edge].to;
  }

  // A group has a node above and one below all its boxes, as near to each other as can be (G.
  // Sander, "Layout of Compound Directed Graphs", 1996).
  void FindRanks() {
    const size_t group_count =
        groups_.empty() ? 1 : *std::max_element(groups_.begin(), groups_.end()) + 1;
    out_.groups.resize(group_count);
    std::vector<RankEdge> rank_edges;
    for (size_t i = 0; i < edges_.size(); ++i) {
      if (edges_[i].from != edges_[i].to) rank_edges.push_back({Upper(i), Lower(i), 1, 1});
    }
    const size_t rank_groups = out_.style.lanes ? 1 : group_count;
    const auto top_of = [&](size_t group) { return boxes_.size() + 2 * (group - 1); };
    for (size_t i = 0; i < groups_.size(); ++i) {
      if (groups_[i] == 0 || out_.style.lanes) continue;
      rank_edges.push_back({top_of(groups_[i]), i, 0, 0});
      rank_edges.push_back({i, top_of(groups_[i]) + 1, 0, 0});
    }
    for (size_t group = 1; group < rank_groups; ++group) {
      rank_edges.push_back({top_of(group), top_of(group) + 1, 0, kGroupWeight});
    }
    AddRows(rank_edges);
    const size_t node_count = boxes_.size() + 2 * (rank_groups - 1);
    ranks_ = RankNodes(node_count, rank_edges, kRankWork / (rank_edges.size() + 1));
  }

  // Boxes of a group that no line joins stand in rows, not all in one layer.
  void AddRows(std::vector<RankEdge>& rank_edges) const {
    std::vector<bool> joined(boxes_.size());
    for (const LayoutEdge& edge : edges_) joined[edge.from] = joined[edge.to] = true;
    std::vector<std::vector<size_t>> loose(out_.groups.size());
    for (size_t i = 0; i < groups_.size(); ++i) {
      if (groups_[i] != 0 && !joined[i]) loose[groups_[i]].push_back(i);
    }
    for (const std::vector<size_t>& members : loose) {
      size_t columns = 1;
      while (columns * columns * 2 < members.size() * 3) ++columns;
      for (size_t i = columns; i < members.size(); ++i) {
        rank_edges.push_back({members[i - columns], members[i], 1, 1});
      }
    }
  }

  void AddBoxes() {
    size_t layer_count = 0;
    for (size_t i = 0; i < boxes_.size(); ++i) {
      layer_count = std::max(layer_count, static_cast<size_t>(ranks_[i]) + 1);
    }
    std::vector<size_t> used(layer_count);
    for (size_t i = 0; i < boxes_.size(); ++i) used[static_cast<size_t>(ranks_[i])] = 1;
    std::vector<size_t> layer_of(layer_count);
    std::partial_sum(used.begin(), used.end(), layer_of.begin());
    out_.layers.resize(layer_count == 0 ? 0 : layer_of.back());
    out_.label_layer.resize(out_.layers.size());
    for (size_t i = 0; i < boxes_.size(); ++i) {
      Cell cell;
      cell.owner = i;
      cell.group = groups_.empty() ? 0 : groups_[i];
      cell.layer = layer_of[static_cast<size_t>(ranks_[i])] - 1;
      cell.left = cell.right = boxes_[i].width / 2;
      out_.AddCell(cell);
      LayeredGraph::Span& span = out_.groups[cell.group];
      span.first = std::min(span.first, cell.layer);
      span.last = std::max(span.last, cell.layer);
    }
    if (!out_.style.lanes) return;
    for (LayeredGraph::Span& span : out_.groups) {
      if (span.first != kNone) span = {0, out_.layers.size() - 1};
    }
  }

  size_t SpanOf(size_t edge) const {
    return out_.cells[Lower(edge)].layer - out_.cells[Upper(edge)].layer;
  }

  void AddLines() {
    // Cells in proportion to boxes and edges; the longest edges get none.
    size_t budget = 30'000 + 6 * (boxes_.size() + edges_.size());
    std::vector<size_t> by_span;
    for (size_t i = 0; i < edges_.size(); ++i) {
      if (edges_[i].from != edges_[i].to) by_span.push_back(i);
    }
    std::stable_sort(by_span.begin(), by_span.end(),
                     [this](size_t a, size_t b) { return SpanOf(a) < SpanOf(b); });
    out_.edge_segments.resize(edges_.size());
    for (const size_t edge : by_span) {
      const size_t passed = SpanOf(edge) - 1;
      const bool far = passed > budget && passed > 3;
      if (!far) budget -= std::min(budget, passed);
      AddLine(edge, far);
    }
  }

  // The group whose frame a line stays in while it passes a layer: that of both its ends; a lane
  // is never left before the last layer.
  size_t GroupAt(size_t edge, size_t layer) const {
    const size_t group = out_.cells[Upper(edge)].group;
    if (out_.style.lanes) return group;
    if (group == 0 || group != out_.cells[Lower(edge)].group) return 0;
    return layer <= out_.groups[group].last ? group : 0;
  }

  void AddLine(size_t edge, bool far) {
    const size_t first = out_.cells[Upper(edge)].layer + 1;
    const size_t end = out_.cells[Lower(edge)].layer;
    size_t previous = Upper(edge);
    for (size_t layer = first; layer < end; ++layer) {
      if (far && layer != first && layer + 1 != end) continue;
      Cell cell;
      cell.kind = CellKind::kLine;
      cell.owner = edge;
      cell.layer = layer;
      cell.group = far ? 0 : GroupAt(edge, layer);
      cell.far = far;
      const size_t added = out_.AddCell(cell);
      AddLinePart(edge, previous, added);
      previous = added;
    }
    AddLinePart(edge, previous, Lower(edge));
  }

  void AddLinePart(size_t edge, size_t upper, size_t lower) {
    Segment segment;
    segment.upper = upper;
    segment.lower = lower;
    segment.edge = edge;
    segment.reversed = out_.reversed[edge];
    out_.edge_segments[edge].push_back(out_.AddSegment(segment));
  }

  void AddFrames() {
    for (size_t group = 1; group < out_.groups.size(); ++group) {
      const LayeredGraph::Span span = out_.groups[group];
      if (span.first == kNone) continue;
      for (int side = 0; side < 2; ++side) {
        size_t previous = kNone;
        for (size_t layer = span.first; layer <= span.last; ++layer) {
          Cell cell;
          cell.kind = CellKind::kFrame;
          cell.owner = cell.group = group;
          cell.layer = layer;
          // The title is there when the layers stand beside each other.
          if (side == 0 && out_.style.to_right) cell.right = kFrameTop - kFrameMargin;
          const size_t added = out_.AddCell(cell);
          if (previous != kNone) {
            Segment segment;
            segment.upper = previous;
            segment.lower = added;
            out_.AddSegment(segment);
          }
          previous = added;
        }
      }
    }
  }

  const std::vector<LayoutBox>& boxes_;
  const std::vector<LayoutEdge>& edges_;
  const std::vector<size_t>& groups_;
  std::vector<int> ranks_;
  LayeredGraph out_;
};

}  // namespace

size_t LayeredGraph::AddCell(const Cell& cell) {
  cells.push_back(cell);
  up.emplace_back();
  down.emplace_back();
  return cells.size() - 1;
}

size_t LayeredGraph::AddSegment(const Segment& segment) {
  segments.push_back(segment);
  down[segment.upper].push_back(segments.size() - 1);
  up[segment.lower].push_back(segments.size() - 1);
  return segments.size() - 1;
}

void LayeredGraph::NumberLayer(size_t layer) {
  for (size_t i = 0; i < layers[layer].size(); ++i) cells[layers[layer][i]].order = i;
}

std::vector<std::pair<size_t, size_t>> LayeredGraph::FrameSides() const {
  std::vector<std::pair<size_t, size_t>> sides(groups.size(), {kNone, kNone});
  for (const auto& layer : layers) {
    for (const size_t number : layer) {
      const Cell& cell = cells[number];
      if (cell.kind != CellKind::kFrame || cell.layer != groups[cell.group].first) continue;
      auto& [left, right] = sides[cell.group];
      (left == kNone ? left : right) = number;
    }
  }
  return sides;
}

LayeredGraph MakeLayers(const std::vector<LayoutBox>& boxes, const std::vector<LayoutEdge>& edges,
                        const std::vector<size_t>& groups, const std::vector<double>& title_widths,
                        const LayoutStyle& style) {
  LayeredGraph graph = LayerMaker(boxes, edges, groups, style).Make();
  graph.title_widths = title_widths;
  return graph;
}

}  // namespace vndoc6::drawing
