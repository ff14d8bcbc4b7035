#include "label_layers.h"

#include <algorithm>

namespace vndoc6::drawing {
namespace {

class LabelLayerMaker {
 public:
  LabelLayerMaker(const LayeredGraph& graph, const std::vector<LayoutEdge>& edges)
      : graph_(graph),
        edges_(edges),
        bears_label_(graph.segments.size()),
        new_layer_(graph.layers.size()),
        has_labels_(graph.layers.size()) {}

  LayeredGraph Make() {
    FindLabels();
    CopyCells();
    for (size_t layer = 0; layer < graph_.layers.size(); ++layer) {
      if (has_labels_[layer]) AddLabelLayer(layer);
    }
    CopySegments();
    for (size_t layer = 0; layer < out_.layers.size(); ++layer) out_.NumberLayer(layer);
    return std::move(out_);
  }

 private:
  void FindLabels() {
    for (size_t edge = 0; edge < edges_.size(); ++edge) {
      const auto& segments = graph_.edge_segments[edge];
      if (edges_[edge].label_width <= 0 || segments.empty()) continue;
      const size_t segment = graph_.reversed[edge] ? segments.back() : segments.front();
      bears_label_[segment] = true;
      has_labels_[graph_.cells[graph_.segments[segment].lower].layer - 1] = true;
    }
  }

  void CopyCells() {
    out_.cells = graph_.cells;
    out_.up.resize(out_.cells.size());
    out_.down.resize(out_.cells.size());
    out_.reversed = graph_.reversed;
    out_.edge_segments.resize(graph_.edge_segments.size());
    out_.groups = graph_.groups;
    out_.title_widths = graph_.title_widths;
    out_.style = graph_.style;
    for (size_t layer = 0; layer < graph_.layers.size(); ++layer) {
      new_layer_[layer] = out_.layers.size();
      out_.layers.push_back(graph_.layers[layer]);
      out_.label_layer.push_back(false);
      if (!has_labels_[layer]) continue;
      out_.layers.emplace_back();
      out_.label_layer.push_back(true);
    }
    for (Cell& cell : out_.cells) cell.layer = new_layer_[cell.layer];
    for (LayeredGraph::Span& span : out_.groups) {
      if (span.first == kNone) continue;
      span.first = new_layer_[span.first];
      span.last = new_layer_[span.last];
    }
    middle_.assign(graph_.segments.size(), kNone);
  }

  // In the order of the layer above, so that lines cross below their labels.
  void AddLabelLayer(size_t layer) {
    for (const size_t cell : graph_.layers[layer]) {
      std::vector<size_t> segments = graph_.down[cell];
      std::stable_sort(segments.begin(), segments.end(),
                       [this](size_t a, size_t b) { return LowerOrder(a) < LowerOrder(b); });
      for (const size_t segment : segments) AddMiddle(segment, new_layer_[layer] + 1);
    }
  }

  size_t LowerOrder(size_t segment) const {
    const Cell& lower = graph_.cells[graph_.segments[segment].lower];
    return lower.far ? kNone : lower.order;
  }

  void AddMiddle(size_t number, size_t layer) {
    const Segment& segment = graph_.segments[number];
    const Cell& upper = out_.cells[segment.upper];
    Cell cell;
    cell.kind = segment.IsFrame() ? CellKind::kFrame : CellKind::kLine;
    cell.owner = segment.IsFrame() ? upper.owner : segment.edge;
    cell.group = out_.groups[upper.group].last > layer ? upper.group : 0;
    cell.layer = layer;
    if (segment.IsFrame()) cell.right = upper.right;
    if (bears_label_[number]) cell.kind = CellKind::kLabel;
    middle_[number] = out_.AddCell(cell);
    out_.layers[layer].push_back(middle_[number]);
  }

  void CopySegments() {
    for (size_t number = 0; number < graph_.segments.size(); ++number) {
      Segment segment = graph_.segments[number];
      if (middle_[number] == kNone) {
        if (out_.cells[segment.upper].far) MoveDown(segment, bears_label_[number]);
        Add(segment);
        continue;
      }
      Segment lower = segment;
      segment.lower = lower.upper = middle_[number];
      Add(segment);
      Add(lower);
    }
    for (auto& segments : out_.edge_segments) {
      std::sort(segments.begin(), segments.end(), [this](size_t a, size_t b) {
        return out_.cells[out_.segments[a].lower].layer < out_.cells[out_.segments[b].lower].layer;
      });
    }
  }

  void Add(const Segment& segment) {
    const size_t added = out_.AddSegment(segment);
    if (!segment.IsFrame()) out_.edge_segments[segment.edge].push_back(added);
  }

  // The lower end of a line beside all others comes next to its box.
  void MoveDown(const Segment& segment, bool bears_label) {
    Cell& upper = out_.cells[segment.upper];
    const Cell& lower = out_.cells[segment.lower];
    if (lower.far) return;
    upper.layer = lower.layer - 1;
    if (bears_label) upper.kind = CellKind::kLabel;
  }

  const LayeredGraph& graph_;
  const std::vector<LayoutEdge>& edges_;
  std::vector<bool> bears_label_;
  std::vector<size_t> new_layer_;
  std::vector<bool> has_labels_;  // for each layer: the gap below it
  std::vector<size_t> middle_;    // for each segment its cell in a label layer
  LayeredGraph out_;
};

}  // namespace

LayeredGraph WithLabelLayers(const LayeredGraph& graph, const std::vector<LayoutEdge>& edges) {
  return LabelLayerMaker(graph, edges).Make();
}

}  // namespace vndoc6::drawing
