// A graph in layers: what the passes of a layout hand on to each other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "layout.h"

namespace vndoc6::drawing {

constexpr size_t kNone = static_cast<size_t>(-1);

enum class CellKind : uint8_t {
  kBox,
  kLine,   // where a line passes through a layer
  kLabel,  // where it has its label as well
  kFrame   // the left or the right side of a group's frame
};

struct Cell {
  CellKind kind = CellKind::kBox;
  size_t owner = 0;  // the box, the edge or the group
  size_t group = 0;  // 0 is none
  size_t layer = 0;
  size_t order = 0;  // within the layer
  double left = 0;   // so far it reaches from its place
  double right = 0;
  double x = 0;  // its place
  // An end of a line over very many layers, which is led beside all others between its two ends.
  bool far = false;
};

// A line's part between two neighbouring layers, or a part of a frame's side.
struct Segment {
  size_t upper = 0;  // cells
  size_t lower = 0;
  size_t edge = kNone;  // none for a frame
  bool reversed = false;
  size_t path = kNone;    // the main path that it is part of, the most important first
  double upper_port = 0;  // where it ends, from the cell's place
  double lower_port = 0;
  int upper_side = 0;  // -1: leaves by the left side, 1: by the right
  int lower_side = 0;

  bool IsFrame() const { return edge == kNone; }
};

struct LayeredGraph {
  std::vector<Cell> cells;                  // the boxes first, under their own numbers
  std::vector<std::vector<size_t>> layers;  // the layers' cells, from left to right
  std::vector<Segment> segments;
  std::vector<std::vector<size_t>> up, down;  // of each cell, segments to the next layers
  // For each edge its segments from the top down; empty for one that leads to its own box.
  std::vector<std::vector<size_t>> edge_segments;
  std::vector<bool> reversed;  // for each edge: its path leads upwards
  // Of each group, the first and the last layer.
  struct Span {
    size_t first = kNone;
    size_t last = 0;
  };
  std::vector<Span> groups;
  LayoutStyle style;
  // How far a frame reaches beyond its first layer.
  double FrameTop() const { return style.to_right ? kFrameMargin : kFrameTop; }
  std::vector<double> title_widths;  // of each group's frame; may be empty
  std::vector<bool> label_layer;     // for each layer: it holds labels, and no boxes

  size_t AddCell(const Cell& cell);
  size_t AddSegment(const Segment& segment);
  void NumberLayer(size_t layer);
  double TitleWidth(size_t group) const {
    return group < title_widths.size() ? title_widths[group] : 0;
  }
  // The left and the right side of each group's frame in its first layer; none for no group.
  std::vector<std::pair<size_t, size_t>> FrameSides() const;
  bool IsFar(const Segment& segment) const {
    return cells[segment.upper].far || cells[segment.lower].far;
  }
};

// Finds the layers, and the cells of boxes, lines and frames. Far cells are in no layer's list.
LayeredGraph MakeLayers(const std::vector<LayoutBox>& boxes, const std::vector<LayoutEdge>& edges,
                        const std::vector<size_t>& groups, const std::vector<double>& title_widths,
                        const LayoutStyle& style);

}  // namespace vndoc6::drawing
