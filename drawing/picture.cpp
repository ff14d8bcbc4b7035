#include "picture.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

#include "label.h"
#include "label_places.h"
#include "model.h"
#include "place_steps.h"
#include "router.h"
#include "text_room.h"

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

class Reader {
 public:
  Reader(vnDocument& document, const ReadOptions& options)
      : document_(document), options_(options) {}

  Drawing Read() {
    out_.title = document_.Details()->Title();
    out_.description = document_.Details()->Description();
    out_.revision = document_.Details()->Revision();
    ReadChart();
    ReadSteps();
    ReadLinks();
    ReadContainers();
    PlaceAll();
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
    LineLabel label;
    std::vector<Point> points;  // its own
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
      to_place_.push_back({IsToPlace(*figure),
                           figure->Width() == kUsualWidth && figure->Height() == kUsualHeight,
                           options_.lanes == Lanes::kRole ? RoleOf(*step) : step->ContainerKey()});
      place_of_.emplace(step->Key(), out_.steps.size());
      // A chart that cuts its labels keeps its sizes.
      if (!to_place_.back().unplaced && !out_.ellipsis && out.picture.empty()) {
        const Box before = out.box;
        GrowToLabel(out);
        grown_.push_back(before);
      } else {
        grown_.push_back(out.box);
      }
      out_.steps.push_back(std::move(out));
    }
  }

  bool IsToPlace(const vnFigure& figure) const { return options_.all_anew || IsUnplaced(figure); }

  // Who performs a step; the first one, when there are several.
  static Text RoleOf(vnStep& step) {
    const auto roles = step.PerformedBy();
    return roles->Count() > 0 ? roles->Item(Variant(1))->DisplayName() : Text();
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
      links_.push_back({link,
                        static_cast<size_t>(i),
                        from->second,
                        to->second,
                        SetLineLabel(link->Text(), font.size, font.bold),
                        {}});
      if (!options_.all_anew && HasCoordinates(*line)) {
        links_.back().points = OwnPoints(links_.back(), *line);
      }
    }
  }

  // One step alone at the usual place is where it belongs; several are a pile.
  void PlaceAll() {
    const auto is_unplaced = [](const StepToPlace& step) { return step.unplaced; };
    if (!options_.all_anew && out_.steps.size() > 1 &&
        std::count_if(to_place_.begin(), to_place_.end(), is_unplaced) < 2) {
      for (StepToPlace& step : to_place_) step.unplaced = false;
    }
    std::vector<LinkToPlace> links;
    for (const Link& link : links_) {
      links.push_back({link.from, link.to, link.label.width, link.label.height, link.points});
    }
    const LayoutStyle style{options_.direction == Direction::kRight,
                            options_.lanes != Lanes::kNone};
    PlacedSteps placed = PlaceSteps(out_.steps, to_place_, links, Groups(), style);
    frames_ = std::move(placed.frames);
    AddLines(placed.lines);
  }

  std::unordered_map<Text, GroupToPlace> Groups() const {
    std::unordered_map<Text, GroupToPlace> groups;
    const auto add = [&](const Text& key, const Figure& figure, bool placed) {
      const double title = TextWidth(figure.label, figure.font.bold) * figure.font.size;
      groups.try_emplace(key, GroupToPlace{title + 2 * kFrameMargin, placed, figure.box});
    };
    if (options_.lanes == Lanes::kRole) {
      for (const StepToPlace& step : to_place_) {
        Figure lane;
        lane.label = step.group;
        add(step.group, lane, false);
      }
      return groups;
    }
    for (const Container& container : containers_) {
      add(container.key, container.figure, !container.unplaced);
    }
    return groups;
  }

  // Those that have their points first: the others go around them.
  void AddLines(std::vector<std::vector<Point>>& laid_out) {
    std::vector<RouterBox> boxes;
    for (const Figure& figure : out_.steps) {
      boxes.push_back({figure.box, HasCorners(*figure.outline, figure.quarters)});
    }
    Router router(boxes);
    for (size_t i = 0; i < links_.size(); ++i) {
      if (!links_[i].points.empty()) {
        router.AddLine(links_[i].points);
      } else if (!laid_out[i].empty()) {
        router.AddLine(laid_out[i]);
      }
    }
    for (size_t i = 0; i < links_.size(); ++i) AddLine(links_[i], laid_out[i], router);
  }

  Point End(size_t step, Side side) const {
    const Figure& figure = out_.steps[step];
    return EndPoint(*figure.outline, figure.box, figure.quarters, side);
  }

  void AddLine(Link& link, std::vector<Point>& laid_out, Router& router) {
    const PassingRead reading(*link.link);
    Line line = ReadLine(*link.link->Line());
    line.link = link.number;
    line.from = out_.steps[link.from].step;
    line.to = out_.steps[link.to].step;
    line.label = link.link->Text();
    line.tooltip = link.link->Tooltip();
    if (!link.points.empty()) {
      line.points = std::move(link.points);
    } else {
      line.points = laid_out.empty() ? router.Between(link.from, link.to) : std::move(laid_out);
      line.laid_out = true;
      MeetShape(link.from, line.points[1], line.points.front());
      MeetShape(link.to, line.points[line.points.size() - 2], line.points.back());
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

  // What found the way knows boxes; a line ends where the shape does.
  void MeetShape(size_t step, Point before, Point& end) const {
    const Figure& figure = out_.steps[step];
    const Side side = before.x == end.x ? (before.y < end.y ? Side::kTop : Side::kBottom)
                                        : (before.x < end.x ? Side::kLeft : Side::kRight);
    end = MeetBorder(*figure.outline, figure.box, figure.quarters, side, end);
    end = {WholeTwips(end.x), WholeTwips(end.y)};
  }

  std::vector<Point> OwnPoints(const Link& link, const vnLine& source) const {
    std::vector<Point> points;
    for (const int32_t i : source.ExtraPointNumbers()) {
      points.push_back({Pixels(source.ExtraPointX(i)), Pixels(source.ExtraPointY(i))});
    }
    const Point start = HasOrigin(source) ? Point{Pixels(source.OrigX()), Pixels(source.OrigY())}
                                          : End(link.from, Facing(link.from, points.front()));
    const Point end = HasDestination(source) ? Point{Pixels(source.DestX()), Pixels(source.DestY())}
                                             : End(link.to, Facing(link.to, points.back()));
    points.insert(points.begin(), start);
    points.push_back(end);
    StayOutside(link.from, points[1], points.front());
    StayOutside(link.to, points[points.size() - 2], points.back());
    return points;
  }

  // Where a figure grew, the ends of its lines stand on its new sides.
  void StayOutside(size_t step, Point before, Point& end) const {
    const Box &old = grown_[step], &box = out_.steps[step].box;
    if (old.width == box.width && old.height == box.height) return;
    const bool inside =
        end.x >= box.left && end.x <= box.Right() && end.y >= box.top && end.y <= box.Bottom();
    if (!inside || (before.x != end.x && before.y != end.y)) return;
    MeetShape(step, before, end);
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
    if (options_.lanes == Lanes::kRole) return;
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
    if (options_.lanes != Lanes::kNone) return AddLanes();
    std::unordered_map<Text, Box> around;
    for (size_t i = 0; i < out_.steps.size(); ++i) {
      const Box& box = out_.steps[i].box;
      if (to_place_[i].group.empty()) continue;
      const Box frame{box.left - kFrameMargin, box.top - kFrameTop, box.width + 2 * kFrameMargin,
                      box.height + kFrameTop + kFrameMargin};
      const auto [entry, added] = around.try_emplace(to_place_[i].group, frame);
      if (!added) entry->second = Union(entry->second, frame);
    }
    for (Container& container : containers_) {
      const auto members = around.find(container.key);
      if (container.unplaced && members != around.end()) {
        container.figure.laid_out = true;
        const auto frame = frames_.find(container.key);
        Box& box = container.figure.box;
        box = frame == frames_.end() ? members->second : Union(members->second, frame->second);
        // A document holds no place outside its chart.
        box = {std::max(box.left, 0.0), std::max(box.top, 0.0), box.width + std::min(box.left, 0.0),
               box.height + std::min(box.top, 0.0)};
      }
      out_.containers.push_back(std::move(container.figure));
    }
  }

  // In place of the containers, from the left to the right.
  void AddLanes() {
    std::unordered_map<Text, Figure> known;
    for (Container& container : containers_) {
      known.emplace(container.key, std::move(container.figure));
    }
    for (const auto& [key, box] : frames_) {
      const auto container = known.find(key);
      Figure lane = container == known.end() ? Figure() : std::move(container->second);
      if (container == known.end()) {
        lane.outline = &OutlineOf(vnsRectangle);
        lane.filled = false;
        lane.label = key;
      }
      lane.laid_out = true;
      lane.box = box;
      out_.containers.push_back(std::move(lane));
    }
    std::sort(out_.containers.begin(), out_.containers.end(), [](const Figure& a, const Figure& b) {
      return a.box.left != b.box.left ? a.box.left < b.box.left : a.box.top < b.box.top;
    });
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
  const ReadOptions options_;
  Drawing out_;
  bool show_numbers_ = false;
  Text number_separator_;
  std::vector<Box> grown_;                     // the steps' boxes before they grew
  std::unordered_map<Text, size_t> place_of_;  // of a step's key in out_.steps
  std::vector<StepToPlace> to_place_;          // the steps drawn
  std::vector<Link> links_;
  std::vector<Container> containers_;
  std::unordered_map<Text, Box> frames_;  // that the layout gave to containers or lanes
};

}  // namespace

Drawing ReadDrawing(vnDocument& document, const ReadOptions& options) {
  return Reader(document, options).Read();
}

}  // namespace vndoc6::drawing
