#include "layout.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

#include "coordinates.h"
#include "label_layers.h"
#include "layered.h"
#include "ordering.h"
#include "packing.h"
#include "ports.h"
#include "routes.h"
#include "shorten.h"
#include "slide_ports.h"
#include "tighten.h"

namespace vndoc6::drawing {
namespace {

constexpr double kPartsApart = 40;

// How much is done for a graph of so many cells.
struct Effort {
  size_t orders;  // of the layers that are tried
  int repeats;
  int rounds;
  size_t pivots;  // for lines as short as can be
};

Effort EffortFor(size_t cells) {
  if (cells < 150) return {12, 1, 20, 20'000};
  if (cells < 500) return {4, 1, 20, 20'000};
  if (cells < 2'000) return {1, 1, 20, 20'000};
  if (cells < 20'000) return {1, 6, 8, 0};
  if (cells < 200'000) return {1, 3, 2, 0};
  return {1, 1, 2, 0};
}

LayeredGraph PlacedAcross(LayeredGraph graph, const std::vector<LayoutBox>& boxes,
                          const Effort& effort) {
  AlignCells(graph);
  for (int i = 0; i < effort.repeats; ++i) {
    Tighten(graph, effort.rounds);
    SlidePorts(graph, boxes);
  }
  if (effort.pivots > 0) {
    Shorten(graph, boxes, effort.pivots);
    Straighten(graph);
  }
  AvoidJogs(graph, boxes);
  SlidePorts(graph, boxes);
  return graph;
}

// What lines or a group join.
ChartLayout LayOutPart(const std::vector<LayoutBox>& boxes, const std::vector<LayoutEdge>& edges,
                       const std::vector<size_t>& groups, const std::vector<double>& title_widths,
                       const LayoutStyle& style) {
  LayeredGraph graph = MakeLayers(boxes, edges, groups, title_widths, style);
  FindMainPaths(graph);
  const Effort effort = EffortFor(graph.cells.size());
  LayeredGraph best;
  double least = -1;
  for (LayerOrder& order : OrderLayers(graph, effort.orders)) {
    graph.layers = std::move(order);
    for (size_t layer = 0; layer < graph.layers.size(); ++layer) graph.NumberLayer(layer);
    LayeredGraph labelled = WithLabelLayers(graph, edges);
    ChoosePorts(labelled, boxes, edges);
    labelled = PlacedAcross(std::move(labelled), boxes, effort);
    const double cost = CostOf(labelled);
    if (least >= 0 && cost >= least) continue;
    least = cost;
    best = std::move(labelled);
  }
  ExtendSides(best, boxes);
  return Draw(best, boxes, edges);
}

// A part of the whole, under numbers of its own.
struct Part {
  std::vector<size_t> boxes, edges, groups;  // their numbers in the whole
  std::vector<LayoutBox> part_boxes;
  std::vector<LayoutEdge> part_edges;
  std::vector<size_t> part_groups;
  std::vector<double> title_widths;
};

class Whole {
 public:
  Whole(const std::vector<LayoutBox>& boxes, const std::vector<LayoutEdge>& edges,
        const std::vector<size_t>& groups, const std::vector<double>& title_widths,
        const LayoutStyle& style)
      : boxes_(boxes), edges_(edges), groups_(groups), title_widths_(title_widths), style_(style) {
    out_.boxes.resize(boxes.size());
    out_.lines.resize(edges.size());
    out_.labels.resize(edges.size());
    const size_t group_count =
        groups.empty() ? 1 : *std::max_element(groups.begin(), groups.end()) + 1;
    out_.frames.resize(group_count);
  }

  ChartLayout LayOut() {
    FindParts();
    std::vector<ChartLayout> layouts;
    std::vector<Box> places;
    for (const Part& part : parts_) {
      layouts.push_back(LayOutPart(part.part_boxes, part.part_edges, part.part_groups,
                                   part.title_widths, style_));
      places.push_back({0, 0, layouts.back().width, layouts.back().height});
    }
    Pack(places, kPartsApart);
    for (size_t i = 0; i < parts_.size(); ++i) Take(parts_[i], layouts[i], places[i]);
    return std::move(out_);
  }

 private:
  size_t Find(size_t box) {
    while (leader_[box] != box) box = leader_[box] = leader_[leader_[box]];
    return box;
  }

  void FindParts() {
    leader_.resize(boxes_.size());
    std::iota(leader_.begin(), leader_.end(), size_t{0});
    for (const LayoutEdge& edge : edges_) leader_[Find(edge.to)] = Find(edge.from);
    for (size_t box = 1; style_.lanes && box < boxes_.size(); ++box) leader_[Find(box)] = Find(0);
    std::vector<size_t> first_of_group(out_.frames.size(), kNone);
    for (size_t box = 0; box < groups_.size(); ++box) {
      if (groups_[box] == 0) continue;
      size_t& first = first_of_group[groups_[box]];
      if (first == kNone) first = box;
      leader_[Find(box)] = Find(first);
    }
    std::vector<size_t> part_of(boxes_.size(), kNone), number(boxes_.size());
    std::vector<size_t> group_number(out_.frames.size());
    for (size_t box = 0; box < boxes_.size(); ++box) {
      size_t& part = part_of[Find(box)];
      if (part == kNone) {
        part = parts_.size();
        parts_.emplace_back();
      }
      Part& to = parts_[part];
      number[box] = to.boxes.size();
      to.boxes.push_back(box);
      to.part_boxes.push_back(boxes_[box]);
      if (!groups_.empty()) to.part_groups.push_back(GroupIn(to, groups_[box], group_number));
    }
    for (size_t i = 0; i < edges_.size(); ++i) {
      Part& part = parts_[part_of[Find(edges_[i].from)]];
      part.edges.push_back(i);
      LayoutEdge edge = edges_[i];
      edge.from = number[edge.from];
      edge.to = number[edge.to];
      part.part_edges.push_back(edge);
    }
  }

  // A group's number in its part, which has all of it.
  size_t GroupIn(Part& part, size_t group, std::vector<size_t>& numbers) const {
    if (group == 0) return 0;
    if (part.groups.empty()) {
      part.groups.push_back(0);
      part.title_widths.push_back(0);
    }
    if (numbers[group] == 0) {
      numbers[group] = part.groups.size();
      part.groups.push_back(group);
      part.title_widths.push_back(group < title_widths_.size() ? title_widths_[group] : 0);
    }
    return numbers[group];
  }

  void Take(const Part& part, ChartLayout& layout, const Box& place) {
    const auto moved = [&](Box box) {
      box.left += place.left;
      box.top += place.top;
      return box;
    };
    for (size_t i = 0; i < part.boxes.size(); ++i) {
      out_.boxes[part.boxes[i]] = moved(layout.boxes[i]);
    }
    for (size_t i = 0; i < part.edges.size(); ++i) {
      for (Point& point : layout.lines[i]) {
        point = {point.x + place.left, point.y + place.top};
      }
      out_.lines[part.edges[i]] = std::move(layout.lines[i]);
      out_.labels[part.edges[i]] = moved(layout.labels[i]);
    }
    for (size_t i = 1; i < part.groups.size(); ++i) {
      out_.frames[part.groups[i]] = moved(layout.frames[i]);
    }
    out_.width = std::max(out_.width, place.Right());
    out_.height = std::max(out_.height, place.Bottom());
  }

  const std::vector<LayoutBox>& boxes_;
  const std::vector<LayoutEdge>& edges_;
  const std::vector<size_t>& groups_;
  const std::vector<double>& title_widths_;
  const LayoutStyle& style_;
  std::vector<size_t> leader_;
  std::vector<Part> parts_;
  ChartLayout out_;
};

Box Turned(const Box& box) { return {box.top, box.left, box.height, box.width}; }

// The layers beside each other: the same with both directions exchanged.
void Turn(ChartLayout& layout) {
  for (auto* const boxes : {&layout.boxes, &layout.labels, &layout.frames}) {
    std::transform(boxes->begin(), boxes->end(), boxes->begin(), Turned);
  }
  for (auto& line : layout.lines) {
    for (Point& point : line) std::swap(point.x, point.y);
  }
  std::swap(layout.width, layout.height);
}

}  // namespace

ChartLayout LayOut(const std::vector<LayoutBox>& boxes, const std::vector<LayoutEdge>& edges,
                   const std::vector<size_t>& groups, const std::vector<double>& title_widths,
                   const LayoutStyle& style) {
  if (!style.to_right) return Whole(boxes, edges, groups, title_widths, style).LayOut();
  std::vector<LayoutBox> turned = boxes;
  for (LayoutBox& box : turned) std::swap(box.width, box.height);
  std::vector<LayoutEdge> turned_edges = edges;
  for (LayoutEdge& edge : turned_edges) std::swap(edge.label_width, edge.label_height);
  // Titles stand along the layers, where there is room.
  ChartLayout layout = Whole(turned, turned_edges, groups, {}, style).LayOut();
  Turn(layout);
  return layout;
}

}  // namespace vndoc6::drawing
