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
#include "slide_ports.h"
#include "tighten.h"

namespace vndoc6::drawing {
namespace {

constexpr double kPartsApart = 40;

// How much is done for a graph of so many cells.
struct Effort {
  size_t orders;  // of the layers that are tried
  bool try_all;   // each of the alignments, not only their average
  int rounds;
};

Effort EffortFor(size_t cells) {
  if (cells < 150) return {12, true, 20};
  if (cells < 500) return {4, true, 20};
  if (cells < 2'000) return {1, true, 20};
  if (cells < 20'000) return {1, false, 8};
  return {1, false, 2};
}

// The best that is found for a graph, and how good it is.
struct Best {
  LayeredGraph graph;
  double cost = -1;
};

// Places the cells across: the best of what the alignments lead to.
void PlaceAcross(const LayeredGraph& graph, const std::vector<LayoutBox>& boxes,
                 const Effort& effort, Best& best) {
  std::vector<std::vector<double>> places = AlignCells(graph);
  if (!effort.try_all) places.erase(places.begin(), places.end() - 1);
  for (const std::vector<double>& x : places) {
    LayeredGraph attempt = graph;
    for (size_t cell = 0; cell < x.size(); ++cell) attempt.cells[cell].x = x[cell];
    Tighten(attempt, effort.rounds);
    SlidePorts(attempt, boxes);
    Tighten(attempt, effort.rounds);
    AvoidJogs(attempt, boxes);
    SlidePorts(attempt, boxes);
    const double cost = CostOf(attempt);
    if (best.cost >= 0 && cost >= best.cost) continue;
    best.cost = cost;
    best.graph = std::move(attempt);
  }
}

// What lines or a group join.
ChartLayout LayOutPart(const std::vector<LayoutBox>& boxes, const std::vector<LayoutEdge>& edges,
                       const std::vector<size_t>& groups, const std::vector<double>& title_widths) {
  LayeredGraph graph = MakeLayers(boxes, edges, groups, title_widths);
  FindMainPaths(graph);
  const Effort effort = EffortFor(graph.cells.size());
  Best best;
  for (LayerOrder& order : OrderLayers(graph, effort.orders)) {
    graph.layers = std::move(order);
    for (size_t layer = 0; layer < graph.layers.size(); ++layer) graph.NumberLayer(layer);
    LayeredGraph labelled = WithLabelLayers(graph, edges);
    ChoosePorts(labelled, boxes, edges);
    PlaceAcross(labelled, boxes, effort, best);
  }
  ExtendSides(best.graph, boxes);
  return Draw(best.graph, boxes, edges);
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
        const std::vector<size_t>& groups, const std::vector<double>& title_widths)
      : boxes_(boxes), edges_(edges), groups_(groups), title_widths_(title_widths) {
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
      layouts.push_back(
          LayOutPart(part.part_boxes, part.part_edges, part.part_groups, part.title_widths));
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
  std::vector<size_t> leader_;
  std::vector<Part> parts_;
  ChartLayout out_;
};

}  // namespace

ChartLayout LayOut(const std::vector<LayoutBox>& boxes, const std::vector<LayoutEdge>& edges,
                   const std::vector<size_t>& groups, const std::vector<double>& title_widths) {
  return Whole(boxes, edges, groups, title_widths).LayOut();
}

}  // namespace vndoc6::drawing
