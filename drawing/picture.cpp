#include "picture.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

#include "label.h"
#include "label_places.h"
#include "layout/layout.h"
#include "model.h"
#include "router.h"

namespace vndoc6::drawing {
namespace {

// Where the model puts a figure that nobody placed.
constexpr float kUnplaced = 15;
constexpr float kUsualWidth = 1200;
constexpr float kUsualHeight = 600;
constexpr double kMargin = 24;
// Beyond this nobody sees anything, and arithmetic stays exact.
constexpr double kFarthest = 1e7;

double Pixels(double twips) {
  const double pixels = twips / kTwipsPerPixel;
  return std::isfinite(pixels) ? std::clamp(pixels, -kFarthest, kFarthest) : 0;
}

double WholeTwips(double pixels) { return std::round(pixels * kTwipsPerPixel) / kTwipsPerPixel; }
// Half of it is a whole number, too.
double Even(double pixels) { return 2 * std::ceil(pixels / 2); }

TextFont FontOf(const automation::Font& font) {
  constexpr double kPixelsPerPoint = 96.0 / 72;
  const double size = static_cast<double>(font.Size().scaled) / 10000 * kPixelsPerPoint;
  return {font.Name(),      std::clamp(size, 4.0, 400.0), font.Bold(), font.Italic(),
          font.Underline(), font.Strikethrough()};
}

Pen ReadPen(int32_t colour, int32_t width, int32_t style) {
  return {colour, static_cast<double>(std::clamp(width, 1, 40)), style};
}

std::vector<uint8_t> BytesOf(const Ref<automation::Picture>& picture) {
  return picture ? picture->Bytes() : std::vector<uint8_t>();
}

// A size below 0 spreads to the other side.
Box ReadBox(const vnFigure& figure) {
  Box box{Pixels(figure.Left()), Pixels(figure.Top()), Pixels(figure.Width()),
          Pixels(figure.Height())};
  if (box.width < 0) box = {box.left + box.width, box.top, -box.width, box.height};
  if (box.height < 0) box = {box.left, box.top + box.height, box.width, -box.height};
  return box;
}

Figure ReadFigure(vnFigure& figure) {
  Figure out;
  out.tooltip = figure.Tooltip();
  out.box = ReadBox(figure);
  out.outline = &OutlineOf(figure.Shape());
  out.quarters = figure.ShapeOrientation() & 3;
  out.filled = !figure.Transparent();
  out.fill = figure.FillColour();
  out.pen = ReadPen(figure.DrawColour(), figure.DrawWidth(), figure.DrawStyle());
  out.text_colour = figure.ForeColour();
  out.font = FontOf(*figure.Font());
  out.alignment = figure.Alignment();
  out.margin = {Pixels(figure.TextMarginX()), Pixels(figure.TextMarginY())};
  out.shadow = figure.Shadow() != 0;
  out.picture = BytesOf(figure.Picture());
  out.picture_position = figure.PicturePosition();
  out.z_order = figure.ZOrderIndex();
  return out;
}

bool IsUnplaced(const vnFigure& figure) {
  return figure.Left() == kUnplaced && figure.Top() == kUnplaced;
}

// A box with room for its label, for a figure that nobody gave a place or a size.
void FitToLabel(Figure& figure) {
  const Insets& insets = figure.outline->text;
  const double kWidest = std::max(84.0, 150 * (1 - insets.left - insets.right));
  const std::vector<Text> lines =
      WrapText(figure.label, kWidest / figure.font.size, figure.font.bold);
  double width = 0;
  for (const Text& line : lines) width = std::max(width, TextWidth(line, figure.font.bold));
  const double text_width = width * figure.font.size + 12;
  const double text_height = static_cast<double>(lines.size()) * figure.font.size * 1.25 + 10;
  figure.box.width = Even(std::max(110.0, text_width / (1 - insets.left - insets.right)));
  figure.box.height = Even(std::max(44.0, text_height / (1 - insets.top - insets.bottom)));
}

// Room for the lines at the sides of such a box.
void FitToLines(Figure& figure, int above, int below, int loops) {
  constexpr double kBetween = 9;
  constexpr double kMost = 400;  // beyond, lines share their places
  const double needed = Even(kBetween * (std::max(above, below) + 1));
  figure.box.width = std::max(figure.box.width, std::min(needed, kMost));
  if (loops > 0) {
    const double high = (kBetween + 1) * (2 * loops + 3);
    figure.box.height = std::max(figure.box.height, std::min(high, kMost));
  }
}

class Reader {
 public:
  Reader(vnDocument& document, Places places) : document_(document), places_(places) {}

  Drawing Read() {
    out_.title = document_.Details()->Title();
    out_.description = document_.Details()->Description();
    ReadChart();
    ReadSteps();
    ReadLinks();
    ReadContainers();
    PlaceSteps();
    PlaceContainers();
    SortByOrder(out_.containers);
    SortByOrder(out_.lines);
    SortByOrder(out_.steps);
    PlaceLabels(out_);
    MeasureExtent();
    return std::move(out_);
  }

 private:
  struct Link {
    Ref<vnLink> link;
    size_t number;    // among the document's, from 1 on
    size_t from, to;  // places in out_.steps
    bool has_points;
    LineLabel label;
  };
  struct Container {
    Text key;
    Figure figure;
    bool unplaced;
  };

  void ReadChart() {
    const auto chart = document_.Chart();
    out_.back_colour = chart->BackColour();
    out_.shadow_colour = chart->ShadowColour();
    out_.shadow_offset = {Pixels(chart->ShadowOffsetX()), Pixels(chart->ShadowOffsetY())};
    out_.ellipsis = chart->Ellipsis();
    out_.grid = {Pixels(chart->GridSizeX()), Pixels(chart->GridSizeY())};
    out_.grid_colour = chart->GridColour();
    out_.page = {Pixels(chart->PageWidth()), Pixels(chart->PageHeight())};
    // -1 is what a load leaves of a colour that was never chosen.
    const int32_t margins = chart->PageMarginsColour();
    out_.page_colour = margins == -1 ? 0xA0A0A0 : margins;
    out_.picture = BytesOf(chart->Picture());
    show_numbers_ = chart->ShowStepIndex();
    number_separator_ = chart->StepIndexSeparator();
  }

  void ReadSteps() {
    const auto steps = document_.Steps();
    for (int32_t i = 1; i <= steps->Count(); ++i) {
      const Ref<vnStep> step = steps->Item(Variant(i));
      const PassingRead reading(*step);
      const auto figure = step->Figure();
      container_of_.push_back(step->ContainerKey());
      if (figure->Hidden()) continue;
      Figure out = ReadFigure(*figure);
      out.step = static_cast<size_t>(i);
      out.label = step->Label();
      if (show_numbers_ && step->StepIndex() > 0) {
        out.label = automation::NumberText(step->StepIndex()) + number_separator_ + out.label;
      }
      if (out.tooltip.empty()) out.tooltip = step->Description();
      const auto jumps = step->Jumps();
      for (int32_t k = 1; k <= jumps->Count(); ++k) {
        const auto jump = jumps->Item(Variant(k));
        if (k > 1) out.jumps += u'\n';
        out.jumps += jump->DisplayName().empty() ? jump->FileName() : jump->DisplayName();
      }
      unplaced_.push_back(IsToPlace(*figure));
      usual_size_.push_back(figure->Width() == kUsualWidth && figure->Height() == kUsualHeight);
      place_of_.emplace(step->Key(), out_.steps.size());
      out_.steps.push_back(std::move(out));
    }
  }

  bool IsToPlace(const vnFigure& figure) const {
    return places_ == Places::kAllAnew || IsUnplaced(figure);
  }

  void ReadLinks() {
    const auto links = document_.Links();
    for (int32_t i = 1; i <= links->Count(); ++i) {
      const Ref<vnLink> link = links->Item(Variant(i));
      const PassingRead reading(*link);
      const auto from = place_of_.find(link->OriginStepKey());
      const auto to = place_of_.find(link->DestinationStepKey());
      if (from == place_of_.end() || to == place_of_.end() || link->Line()->Hidden()) continue;
      const auto line = link->Line();
      const TextFont font = FontOf(*line->Font());
      const bool has_points = places_ == Places::kOfDocument && HasCoordinates(*line);
      links_.push_back({link, static_cast<size_t>(i), from->second, to->second, has_points,
                        SetLineLabel(link->Text(), font.size, font.bold)});
    }
  }

  // One step alone at the usual place is where it belongs; several are a pile.
  void PlaceSteps() {
    if (places_ == Places::kOfDocument && out_.steps.size() > 1 &&
        std::count(unplaced_.begin(), unplaced_.end(), true) < 2) {
      unplaced_.assign(unplaced_.size(), false);
    }
    LayOutPile();
    std::vector<Box> boxes;
    for (const Figure& figure : out_.steps) boxes.push_back(figure.box);
    Router router(boxes);
    for (size_t i = 0; i < links_.size(); ++i) AddLine(i, router);
  }

  // The unplaced steps go below everything else.
  void LayOutPile() {
    std::vector<size_t> members;
    std::vector<size_t> place(out_.steps.size(), 0);
    Point origin{kMargin, kMargin};
    for (size_t i = 0; i < out_.steps.size(); ++i) {
      if (!unplaced_[i]) {
        origin.y = std::max(origin.y, out_.steps[i].box.Bottom() + 2 * kMargin);
        continue;
      }
      place[i] = members.size();
      members.push_back(i);
    }
    if (members.empty()) return;
    std::vector<LayoutEdge> edges;
    std::vector<size_t> edge_links;
    for (size_t i = 0; i < links_.size(); ++i) {
      if (!unplaced_[links_[i].from] || !unplaced_[links_[i].to] || links_[i].has_points) continue;
      edges.push_back({place[links_[i].from], place[links_[i].to], links_[i].label.width,
                       links_[i].label.height});
      edge_links.push_back(i);
    }
    const ChartLayout layout = LayOutMembers(members, edges);
    // Whole pixels: the document can hold them as they are.
    const auto moved = [&](Point point) {
      return Point{std::round(point.x + origin.x), std::round(point.y + origin.y)};
    };
    for (size_t i = 0; i < members.size(); ++i) {
      Figure& figure = out_.steps[members[i]];
      const Point corner = moved({layout.boxes[i].left, layout.boxes[i].top});
      figure.box = {corner.x, corner.y, layout.boxes[i].width, layout.boxes[i].height};
      figure.laid_out = true;
    }
    for (size_t i = 0; i < edges.size(); ++i) {
      std::vector<Point> points = layout.lines[i];
      std::transform(points.begin(), points.end(), points.begin(), moved);
      laid_out_.emplace(edge_links[i], std::move(points));
    }
    for (const auto& [key, group] : groups_) {
      const Box& frame = layout.frames[group];
      const Point corner = moved({frame.left, frame.top});
      const Point opposite = moved({frame.Right(), frame.Bottom()});
      frames_.emplace(key, Box{corner.x, corner.y, opposite.x - corner.x, opposite.y - corner.y});
    }
  }

  ChartLayout LayOutMembers(const std::vector<size_t>& members,
                            const std::vector<LayoutEdge>& edges) {
    std::vector<int> above(members.size()), below(members.size()), loops(members.size());
    for (const LayoutEdge& edge : edges) {
      if (edge.from == edge.to) {
        ++loops[edge.from];
      } else {
        ++below[edge.from];
        ++above[edge.to];
      }
    }
    std::vector<LayoutBox> boxes;
    for (size_t i = 0; i < members.size(); ++i) {
      Figure& figure = out_.steps[members[i]];
      if (usual_size_[members[i]]) {
        FitToLabel(figure);
        FitToLines(figure, above[i], below[i], loops[i]);
      }
      boxes.push_back(
          {figure.box.width, figure.box.height, HasCorners(*figure.outline, figure.quarters)});
    }
    const std::vector<size_t> groups = ContainersOf(members);
    return LayOut(boxes, edges, groups, TitleWidths());
  }

  // Numbers from 1 on; empty when no step is in a container.
  std::vector<size_t> ContainersOf(const std::vector<size_t>& members) {
    std::vector<size_t> groups;
    for (const size_t member : members) {
      const Text& key = container_of_[out_.steps[member].step - 1];
      groups.push_back(key.empty() ? 0
                                   : groups_.try_emplace(key, groups_.size() + 1).first->second);
    }
    return groups_.empty() ? std::vector<size_t>() : groups;
  }

  std::vector<double> TitleWidths() {
    std::vector<double> widths(groups_.size() + 1);
    for (const Container& container : containers_) {
      const auto group = groups_.find(container.key);
      if (group == groups_.end()) continue;
      const Figure& figure = container.figure;
      widths[group->second] =
          TextWidth(figure.label, figure.font.bold) * figure.font.size + kFrameMargin;
    }
    return widths;
  }

  Point End(size_t step, Side side) const {
    const Figure& figure = out_.steps[step];
    return EndPoint(*figure.outline, figure.box, figure.quarters, side);
  }

  void AddLine(size_t index, Router& router) {
    const Link& link = links_[index];
    const PassingRead reading(*link.link);
    const auto source = link.link->Line();
    Line line = ReadLine(*source);
    line.link = link.number;
    line.from = out_.steps[link.from].step;
    line.to = out_.steps[link.to].step;
    line.label = link.link->Text();
    line.tooltip = link.link->Tooltip();
    const auto laid_out = laid_out_.find(index);
    if (laid_out != laid_out_.end()) {
      SetLaidOutWay(line, link, laid_out->second);
    } else if (link.has_points) {
      SetOwnPoints(line, link, *source);
    } else {
      Point from[4], to[4];
      for (size_t side = 0; side < 4; ++side) {
        from[side] = End(link.from, static_cast<Side>(side));
        to[side] = End(link.to, static_cast<Side>(side));
      }
      SetWay(line, link, router.Between(link.from, from, link.to, to));
    }
    out_.lines.push_back(std::move(line));
  }

  static Line ReadLine(vnLine& source) {
    Line line;
    line.curved = source.LinkStyle() == 1 || source.LinkStyle() == 2;
    line.hops = source.ShowJump() != 0;
    line.pen = ReadPen(source.DrawColour(), source.DrawWidth(), source.DrawStyle());
    line.orig = {source.ArrowOrig(), source.ArrowOrigSize()};
    line.mid = {source.ArrowMid(), source.ArrowMidSize()};
    line.dest = {source.ArrowDest(), source.ArrowDestSize()};
    line.text_segment = source.TextSegment();
    line.text_colour = source.ForeColour();
    line.font = FontOf(*source.Font());
    line.opaque = source.BackMode() != 1;
    line.z_order = source.ZOrderIndex();
    return line;
  }

  static bool HasOrigin(const vnLine& line) { return line.OrigX() != 0 || line.OrigY() != 0; }
  static bool HasDestination(const vnLine& line) { return line.DestX() != 0 || line.DestY() != 0; }
  static bool HasCoordinates(const vnLine& line) {
    return line.ExtraPointCount() > 0 || (HasOrigin(line) && HasDestination(line));
  }

  void SetWay(Line& line, const Link& link, const Route& route) const {
    line.points.push_back(End(link.from, route.from));
    line.points.insert(line.points.end(), route.bends.begin(), route.bends.end());
    line.points.push_back(End(link.to, route.to));
  }

  // The layout knows boxes; a line ends where the shape does.
  void SetLaidOutWay(Line& line, const Link& link, std::vector<Point>& points) const {
    line.points = std::move(points);
    line.laid_out = true;
    MeetShape(link.from, line.points[1], line.points.front());
    MeetShape(link.to, line.points[line.points.size() - 2], line.points.back());
  }

  void MeetShape(size_t step, Point before, Point& end) const {
    const Figure& figure = out_.steps[step];
    const Side side = before.x == end.x ? (before.y < end.y ? Side::kTop : Side::kBottom)
                                        : (before.x < end.x ? Side::kLeft : Side::kRight);
    end = MeetBorder(*figure.outline, figure.box, figure.quarters, side, end);
    end = {WholeTwips(end.x), WholeTwips(end.y)};
  }

  void SetOwnPoints(Line& line, const Link& link, const vnLine& source) const {
    for (const int32_t i : source.ExtraPointNumbers()) {
      line.points.push_back({Pixels(source.ExtraPointX(i)), Pixels(source.ExtraPointY(i))});
    }
    const auto& points = line.points;
    const Point start = HasOrigin(source) ? Point{Pixels(source.OrigX()), Pixels(source.OrigY())}
                                          : End(link.from, Facing(link.from, points.front()));
    const Point end = HasDestination(source) ? Point{Pixels(source.DestX()), Pixels(source.DestY())}
                                             : End(link.to, Facing(link.to, points.back()));
    line.points.insert(line.points.begin(), start);
    line.points.push_back(end);
  }

  // The side of a figure that looks towards a point.
  Side Facing(size_t step, Point point) const {
    const Box& box = out_.steps[step].box;
    const double across = (point.x - box.CentreX()) / std::max(box.width, 1.0);
    const double down = (point.y - box.CentreY()) / std::max(box.height, 1.0);
    if (std::abs(across) > std::abs(down)) return across > 0 ? Side::kRight : Side::kLeft;
    return down > 0 ? Side::kBottom : Side::kTop;
  }

  void ReadContainers() {
    const auto containers = document_.Containers().ToObject();
    auto* list = dynamic_cast<vnContainers*>(containers.get());
    if (list == nullptr) return;
    for (int32_t i = 1; i <= list->Count(); ++i) {
      const auto container = list->Item(Variant(i));
      const auto figure = container->Figure();
      if (figure->Hidden()) continue;
      Figure out = ReadFigure(*figure);
      out.label = container->Label();
      out.container = static_cast<size_t>(i);
      containers_.push_back({container->Key(), std::move(out), IsToPlace(*figure)});
    }
  }

  // An unplaced container goes around its steps.
  void PlaceContainers() {
    std::unordered_map<Text, Box> around;
    for (const Figure& figure : out_.steps) {
      const Text& key = container_of_[figure.step - 1];
      if (key.empty()) continue;
      const Box frame{figure.box.left - kFrameMargin, figure.box.top - kFrameTop,
                      figure.box.width + 2 * kFrameMargin,
                      figure.box.height + kFrameTop + kFrameMargin};
      const auto [entry, added] = around.try_emplace(key, frame);
      if (!added) entry->second = Union(entry->second, frame);
    }
    for (Container& container : containers_) {
      const auto members = around.find(container.key);
      if (container.unplaced && members != around.end()) {
        container.figure.laid_out = true;
        const auto frame = frames_.find(container.key);
        container.figure.box =
            frame == frames_.end() ? members->second : Union(members->second, frame->second);
      }
      out_.containers.push_back(std::move(container.figure));
    }
  }

  template <class T>
  static void SortByOrder(std::vector<T>& members) {
    std::stable_sort(members.begin(), members.end(),
                     [](const T& a, const T& b) { return a.z_order < b.z_order; });
  }

  void MeasureExtent() {
    bool any = false;
    Box extent;
    const auto include = [&](const Box& box) {
      extent = any ? Union(extent, box) : box;
      any = true;
    };
    for (const Figure& figure : out_.containers) include(figure.box);
    for (const Figure& figure : out_.steps) include(figure.box);
    for (const Line& line : out_.lines) {
      if (line.label_box.width > 0) include(line.label_box);
      for (const Point& point : line.points) include({point.x, point.y, 0, 0});
    }
    out_.extent = {extent.left - kMargin, extent.top - kMargin, extent.width + 2 * kMargin,
                   extent.height + 2 * kMargin};
  }

  vnDocument& document_;
  const Places places_;
  Drawing out_;
  bool show_numbers_ = false;
  Text number_separator_;
  std::unordered_map<Text, size_t> place_of_;  // of a step's key in out_.steps
  std::vector<Text> container_of_;             // of every step of the document
  std::vector<bool> unplaced_;                 // of the steps drawn
  std::vector<bool> usual_size_;
  std::vector<Link> links_;
  std::vector<Container> containers_;
  std::unordered_map<Text, size_t> groups_;                  // the layout's number of a container
  std::unordered_map<Text, Box> frames_;                     // that the layout gave
  std::unordered_map<size_t, std::vector<Point>> laid_out_;  // by link
};

}  // namespace

Drawing ReadDrawing(vnDocument& document, Places places) { return Reader(document, places).Read(); }

}  // namespace vndoc6::drawing
