#include "routes.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "coordinates.h"
#include "ports.h"
#include "tracks.h"

namespace vndoc6::drawing {
namespace {

constexpr double kTrackGap = 10;
// Between layers without tracks, and beside the tracks: room for arrow heads.
constexpr double kBoxesApart = 28;
constexpr double kBoxToLabel = 6;
constexpr double kLabelToBox = 16;
constexpr double kBelowBox = 10;
constexpr double kBelowArrow = 18;
constexpr double kAboveBox = 17;
constexpr double kBelowLabel = 4;
constexpr double kAboveLabel = 5;
constexpr double kLaneGap = 12;
constexpr double kBesideLanes = 20;
constexpr double kLabelGap = 6;

class Drawer {
 public:
  Drawer(LayeredGraph& graph, const std::vector<LayoutBox>& boxes,
         const std::vector<LayoutEdge>& edges)
      : graph_(graph), boxes_(boxes), edges_(edges), loops_(FindLoops(boxes.size(), edges)) {
    out_.boxes.resize(boxes.size());
    out_.lines.resize(edges.size());
    out_.labels.resize(edges.size());
    out_.frames.resize(graph.groups.size());
  }

  ChartLayout Make() {
    PlaceLanes();
    FindTracks();
    PlaceLayers();
    PlaceBoxes();
    for (size_t edge = 0; edge < edges_.size(); ++edge) {
      if (!graph_.edge_segments[edge].empty()) DrawLine(edge);
    }
    for (size_t box = 0; box < boxes_.size(); ++box) DrawLoops(box);
    PlaceLabels();
    PlaceFrames();
    MoveToOrigin();
    return std::move(out_);
  }

 private:
  // What is between a layer and the next.
  struct Channel {
    std::vector<size_t> segments;  // those with a level part
    Tracks tracks;
    double first_track = 0;  // y
    double height = 0;
  };

  // Lines beside all others, each on the first lane that is free between its ends.
  void PlaceLanes() {
    double right = 0;
    for (const auto& layer : graph_.layers) {
      if (layer.empty()) continue;
      const Cell& last = graph_.cells[layer.back()];
      right = std::max(right, last.x + last.right);
    }
    struct Lane {
      double x;
      size_t free_from;
    };
    std::vector<Lane> lanes;
    double next = right + kBesideLanes;
    for (const Segment& segment : graph_.segments) {
      Cell& upper = graph_.cells[segment.upper];
      Cell& lower = graph_.cells[segment.lower];
      if (!upper.far || !lower.far) continue;
      const bool label = upper.kind == CellKind::kLabel || lower.kind == CellKind::kLabel;
      auto lane = std::find_if(lanes.begin(), lanes.end(), [&](const Lane& other) {
        return !label && other.free_from <= upper.layer;
      });
      if (lane == lanes.end()) {
        lane = lanes.insert(lanes.end(), {next, 0});
        next += kLaneGap + (label ? std::max(upper.right, lower.right) : 0);
      }
      lane->free_from = lower.layer + 1;
      upper.x = lower.x = lane->x;
    }
  }

  double UpperX(const Segment& segment) const {
    return graph_.cells[segment.upper].x + segment.upper_port;
  }
  double LowerX(const Segment& segment) const {
    return graph_.cells[segment.lower].x + segment.lower_port;
  }
  bool IsInLane(const Segment& segment) const {
    return graph_.cells[segment.upper].far && graph_.cells[segment.lower].far;
  }

  void FindTracks() {
    channels_.resize(graph_.layers.size());
    run_of_.assign(graph_.segments.size(), kNone);
    std::vector<std::vector<Run>> runs(channels_.size());
    std::vector<std::vector<double>> straight(channels_.size());
    for (size_t i = 0; i < graph_.segments.size(); ++i) {
      const Segment& segment = graph_.segments[i];
      if (segment.IsFrame() || IsInLane(segment)) continue;
      const size_t layer = graph_.cells[segment.lower].layer - 1;
      if (Skew(graph_, segment) == 0) {
        straight[layer].push_back(UpperX(segment));
        continue;
      }
      run_of_[i] = runs[layer].size();
      channels_[layer].segments.push_back(i);
      runs[layer].push_back({UpperX(segment), LowerX(segment)});
    }
    for (size_t layer = 0; layer < channels_.size(); ++layer) {
      channels_[layer].tracks = ChooseTracks(runs[layer], straight[layer]);
    }
  }

  // Lines that lead up end at the lower sides of boxes.
  bool HasArrowsUp(size_t layer) const {
    for (const size_t cell : graph_.layers[layer]) {
      for (const size_t segment : graph_.down[cell]) {
        if (graph_.segments[segment].reversed && graph_.segments[segment].upper_side == 0) {
          return true;
        }
      }
    }
    return false;
  }

  void PlaceLayers() {
    MeasureLayers();
    const size_t count = graph_.layers.size();
    top_.resize(count);
    bottom_.resize(count);
    std::vector<bool> frame_begins(count + 1), frame_ends(count + 1);
    for (size_t group = 1; group < graph_.groups.size(); ++group) {
      if (graph_.groups[group].first == kNone) continue;
      frame_begins[graph_.groups[group].first] = frame_ends[graph_.groups[group].last] = true;
    }
    double y = count > 0 && frame_begins[0] ? graph_.FrameTop() : 0;
    for (size_t layer = 0; layer < count; ++layer) {
      top_[layer] = y;
      bottom_[layer] = y + heights_[layer];
      if (layer + 1 == count) break;
      Channel& channel = channels_[layer];
      const double frames = frame_ends[layer] ? kFrameMargin : 0;
      const double before = frames + Before(layer);
      const double after = After(layer + 1) + (frame_begins[layer + 1] ? graph_.FrameTop() : 0);
      channel.first_track = bottom_[layer] + before;
      if (channel.tracks.count == 0) {
        channel.height = frames + Gap(layer) + (frame_begins[layer + 1] ? graph_.FrameTop() : 0);
      } else {
        channel.height = before + after + kTrackGap * static_cast<double>(channel.tracks.count - 1);
      }
      y = bottom_[layer] + channel.height;
    }
  }

  double Before(size_t layer) const {
    if (graph_.label_layer[layer]) return kBelowLabel;
    return HasArrowsUp(layer) ? kBelowArrow : kBelowBox;
  }
  double After(size_t layer) const { return graph_.label_layer[layer] ? kAboveLabel : kAboveBox; }
  double Gap(size_t layer) const {
    if (graph_.label_layer[layer]) return kLabelToBox;
    return graph_.label_layer[layer + 1] ? (HasArrowsUp(layer) ? kBelowArrow : kBoxToLabel)
                                         : kBoxesApart;
  }

  double LoopLabelsHeight(size_t box) const {
    double height = 0;
    for (const size_t edge : loops_[box]) height += edges_[edge].label_height;
    return height;
  }

  void MeasureLayers() {
    heights_.assign(graph_.layers.size(), 0);
    for (const Cell& cell : graph_.cells) {
      double& height = heights_[cell.layer];
      if (cell.kind == CellKind::kLabel) height = std::max(height, edges_[cell.owner].label_height);
      if (cell.kind != CellKind::kBox) continue;
      height = std::max({height, boxes_[cell.owner].height, LoopLabelsHeight(cell.owner)});
    }
  }

  void PlaceBoxes() {
    for (size_t box = 0; box < boxes_.size(); ++box) {
      const Cell& cell = graph_.cells[box];
      const double middle = (top_[cell.layer] + bottom_[cell.layer]) / 2;
      out_.boxes[box] = {cell.x - boxes_[box].width / 2, middle - boxes_[box].height / 2,
                         boxes_[box].width, boxes_[box].height};
    }
  }

  // Where lines end on a side of a box, from the top down: those that go up, those to the box
  // itself, those that go down.
  double PinY(size_t box, int side, double number_from_top) const {
    const Box& at = out_.boxes[box];
    return at.top + at.height * (number_from_top + 1) / (PinCount(box, side) + 1);
  }
  double PinCount(size_t box, int side) const {
    return UpPins(box, side) + DownPins(box, side) +
           (side > 0 ? 2 * static_cast<double>(loops_[box].size()) : 0);
  }
  double UpPins(size_t box, int side) const {
    return static_cast<double>(
        std::count_if(graph_.up[box].begin(), graph_.up[box].end(),
                      [&](size_t s) { return graph_.segments[s].lower_side == side; }));
  }
  double DownPins(size_t box, int side) const {
    return static_cast<double>(
        std::count_if(graph_.down[box].begin(), graph_.down[box].end(),
                      [&](size_t s) { return graph_.segments[s].upper_side == side; }));
  }

  void AddEnd(std::vector<Point>& points, const Segment& segment, bool upper) const {
    const size_t cell = upper ? segment.upper : segment.lower;
    const int side = upper ? segment.upper_side : segment.lower_side;
    const double x = upper ? UpperX(segment) : LowerX(segment);
    const Box& box = out_.boxes[cell];
    if (side == 0) {
      points.push_back({x, upper ? box.Bottom() : box.top});
      return;
    }
    const double number = upper ? PinCount(cell, side) - 1 : 0;
    const Point pin{side < 0 ? box.left : box.Right(), PinY(cell, side, number)};
    const Point corner{x, pin.y};
    if (upper) {
      points.insert(points.end(), {pin, corner});
    } else {
      points.insert(points.end(), {corner, pin});
    }
  }

  void DrawLine(size_t edge) {
    const auto& segments = graph_.edge_segments[edge];
    std::vector<Point> points;
    AddEnd(points, graph_.segments[segments.front()], true);
    for (const size_t number : segments) AddRun(points, number);
    AddEnd(points, graph_.segments[segments.back()], false);
    if (graph_.reversed[edge]) std::reverse(points.begin(), points.end());
    out_.lines[edge] = WithoutStraightPoints(points);
  }

  void AddRun(std::vector<Point>& points, size_t number) const {
    if (run_of_[number] == kNone) return;
    const Segment& segment = graph_.segments[number];
    const Channel& channel = channels_[graph_.cells[segment.lower].layer - 1];
    const Track& track = channel.tracks.of_run[run_of_[number]];
    const auto y = [&](size_t at) {
      return channel.first_track + kTrackGap * static_cast<double>(at);
    };
    points.push_back({UpperX(segment), y(track.track)});
    if (track.bent) {
      points.push_back({track.middle, y(track.track)});
      points.push_back({track.middle, y(track.second)});
      points.push_back({LowerX(segment), y(track.second)});
    } else {
      points.push_back({LowerX(segment), y(track.track)});
    }
  }

  static std::vector<Point> WithoutStraightPoints(const std::vector<Point>& points) {
    constexpr double kSame = 0.05;
    const auto same = [](double a, double b) { return std::abs(a - b) < kSame; };
    std::vector<Point> out;
    for (Point point : points) {
      // What is straight is so exactly.
      if (!out.empty() && same(out.back().x, point.x)) point.x = out.back().x;
      if (!out.empty() && same(out.back().y, point.y)) point.y = out.back().y;
      if (!out.empty() && out.back() == point) continue;
      while (out.size() > 1) {
        const Point& before = out[out.size() - 2];
        const Point& last = out.back();
        const bool level = last.y == before.y && point.y == last.y;
        const bool upright = last.x == before.x && point.x == last.x;
        if (!level && !upright) break;
        out.pop_back();
      }
      out.push_back(point);
    }
    return out;
  }

  // Around the right side, the first loop innermost.
  void DrawLoops(size_t box) {
    const size_t count = loops_[box].size();
    if (count == 0) return;
    const double first = UpPins(box, 1);
    const Box& at = out_.boxes[box];
    double label_top = at.CentreY() - LoopLabelsHeight(box) / 2;
    const double reach = at.Right() + kLoop + kLineGap * static_cast<double>(count - 1);
    for (size_t i = 0; i < count; ++i) {
      const double upper = PinY(box, 1, first + static_cast<double>(count - 1 - i));
      const double lower = PinY(box, 1, first + static_cast<double>(count + i));
      const double x = at.Right() + kLoop + kLineGap * static_cast<double>(i);
      out_.lines[loops_[box][i]] = {
          {at.Right(), lower}, {x, lower}, {x, upper}, {at.Right(), upper}};
      const LayoutEdge& edge = edges_[loops_[box][i]];
      if (edge.label_width <= 0) continue;
      const double beside = PinCount(box, 1) > 2 * static_cast<double>(count) ? kSideGap : 0;
      out_.labels[loops_[box][i]] = {reach + beside + kLabelGap, label_top, edge.label_width,
                                     edge.label_height};
      label_top += edge.label_height;
    }
  }

  // Beside the line, at the end of the layer that is nearer to the label's box.
  void PlaceLabels() {
    for (size_t number = boxes_.size(); number < graph_.cells.size(); ++number) {
      const Cell& cell = graph_.cells[number];
      if (cell.kind != CellKind::kLabel) continue;
      const LayoutEdge& edge = edges_[cell.owner];
      const double left =
          cell.left > 0 ? cell.x - kLabelGap - edge.label_width : cell.x + kLabelGap;
      const double top =
          graph_.reversed[cell.owner] ? bottom_[cell.layer] - edge.label_height : top_[cell.layer];
      out_.labels[cell.owner] = {left, top, edge.label_width, edge.label_height};
    }
  }

  void PlaceFrames() {
    const auto sides = graph_.FrameSides();
    for (size_t group = 1; group < sides.size(); ++group) {
      if (sides[group].first == kNone) continue;
      const double left = graph_.cells[sides[group].first].x;
      const double top = top_[graph_.groups[group].first] - graph_.FrameTop();
      out_.frames[group] = {left, top, graph_.cells[sides[group].second].x - left,
                            bottom_[graph_.groups[group].last] + kFrameMargin - top};
    }
    if (graph_.style.lanes) JoinLanes();
  }

  // Lanes touch each other.
  void JoinLanes() {
    std::vector<Box*> lanes;
    for (Box& frame : out_.frames) {
      if (frame.width > 0) lanes.push_back(&frame);
    }
    std::sort(lanes.begin(), lanes.end(),
              [](const Box* a, const Box* b) { return a->left < b->left; });
    for (size_t i = 1; i < lanes.size(); ++i) {
      Box &before = *lanes[i - 1], &after = *lanes[i];
      const double border = std::round((before.Right() + after.left) / 2);
      after.width += after.left - border;
      after.left = border;
      before.width = border - before.left;
    }
  }

  void MoveToOrigin() {
    Box extent{0, 0, -1, -1};
    const auto include = [&](const Box& box) {
      extent = extent.width < 0 ? box : Union(extent, box);
    };
    for (const Box& box : out_.boxes) include(box);
    for (size_t group = 1; group < out_.frames.size(); ++group) {
      if (out_.frames[group].width > 0) include(out_.frames[group]);
    }
    for (const Box& label : out_.labels) {
      if (label.width > 0) include(label);
    }
    for (const auto& line : out_.lines) {
      for (const Point& point : line) include({point.x, point.y, 0, 0});
    }
    const auto move = [&](Box& box) {
      box.left -= extent.left;
      box.top -= extent.top;
    };
    std::for_each(out_.boxes.begin(), out_.boxes.end(), move);
    std::for_each(out_.frames.begin(), out_.frames.end(), move);
    std::for_each(out_.labels.begin(), out_.labels.end(), move);
    for (auto& line : out_.lines) {
      for (Point& point : line) point = {point.x - extent.left, point.y - extent.top};
    }
    out_.width = std::max(extent.width, 0.0);
    out_.height = std::max(extent.height, 0.0);
  }

  LayeredGraph& graph_;
  const std::vector<LayoutBox>& boxes_;
  const std::vector<LayoutEdge>& edges_;
  std::vector<std::vector<size_t>> loops_;
  std::vector<Channel> channels_;  // below each layer
  std::vector<size_t> run_of_;     // of each segment in its channel; none when it is straight
  std::vector<double> heights_, top_, bottom_;
  ChartLayout out_;
};

}  // namespace

ChartLayout Draw(LayeredGraph& graph, const std::vector<LayoutBox>& boxes,
                 const std::vector<LayoutEdge>& edges) {
  return Drawer(graph, boxes, edges).Make();
}

}  // namespace vndoc6::drawing
