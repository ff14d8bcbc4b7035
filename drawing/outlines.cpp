#include "outlines.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <string_view>
#include <vector>

#include "markup.h"
#include "vndoc6/automation/number_chars.h"

namespace vndoc6::drawing {
namespace {

constexpr const char* kBox = "M0 0 L1 0 L1 1 L0 1 Z";
constexpr const char* kCircle = "M0 .5 A.5 .5 0 0 1 1 .5 A.5 .5 0 0 1 0 .5 Z";
constexpr const char* kRhomb = "M.5 0 L1 .5 L.5 1 L0 .5 Z";
constexpr const char* kUp = "M.5 0 L1 1 L0 1 Z";
constexpr const char* kDown = "M0 0 L1 0 L.5 1 Z";
constexpr const char* kSixSides = "M.18 0 L.82 0 L1 .5 L.82 1 L.18 1 L0 .5 Z";
constexpr Insets kNone{};
constexpr Insets kNear{.05, .05, .05, .05};
constexpr Insets kRound{.13, .13, .13, .13};

// Flowchart symbols as ISO 5807 draws them.
constexpr std::array kOutlines = {
    Outline{vnsEllipse, "ellipse", kCircle, "", kRound, kNone},
    Outline{vnsRectangle, "rectangle", kBox, "", kNear, kNone},
    Outline{vnsRoundRect, "rounded rectangle", kBox, "", kNear, kNone, .2},
    Outline{vnsDiamond, "diamond", kRhomb, "", {.2, .18, .2, .18}, kNone},
    Outline{vnsNorthTriangle, "triangle", kUp, "", {.2, .4, .2, .04}, {.25, 0, .25, 0}},
    Outline{vnsSouthTriangle, "triangle", kDown, "", {.2, .04, .2, .4}, {.25, 0, .25, 0}},
    Outline{
        vnsEastTriangle, "triangle", "M0 0 L1 .5 L0 1 Z", "", {.04, .2, .35, .2}, {0, .25, 0, .25}},
    Outline{
        vnsWestTriangle, "triangle", "M1 0 L1 1 L0 .5 Z", "", {.35, .2, .04, .2}, {0, .25, 0, .25}},
    Outline{vnsHexagon, "hexagon", kSixSides, "", {.1, .05, .1, .05}, kNone},
    Outline{vnsRectEdgeBump,
            "rectangle with a bump",
            kBox,
            "M.03 .06 L.97 .06 L.97 .94 L.03 .94 Z M.05 .1 L.95 .1 L.95 .9 L.05 .9 Z",
            {.07, .12, .07, .12},
            kNone},
    Outline{vnsRectEdgeEtched,
            "etched rectangle",
            kBox,
            "M.03 .06 L.97 .06 L.97 .94 L.03 .94 Z",
            {.06, .1, .06, .1},
            kNone},
    Outline{vnsRectEdgeRaised,
            "raised rectangle",
            kBox,
            "M.97 .06 L.97 .94 L.03 .94",
            {.05, .05, .06, .1},
            kNone},
    Outline{vnsRectEdgeSunken,
            "sunken rectangle",
            kBox,
            "M.03 .94 L.03 .06 L.97 .06",
            {.06, .1, .05, .05},
            kNone},
    Outline{vnsTriangleRectangle,
            "rectangle with a point",
            "M0 0 L.8 0 L1 .5 L.8 1 L0 1 Z",
            "",
            {.04, .05, .14, .05},
            kNone},
    Outline{vnsPentagon,
            "pentagon",
            "M.5 0 L1 .39 L.81 1 L.19 1 L0 .39 Z",
            "",
            {.17, .26, .17, .04},
            {.03, 0, .03, 0}},
    Outline{vnsOctogon,
            "octagon",
            "M.25 0 L.75 0 L1 .25 L1 .75 L.75 1 L.25 1 L0 .75 L0 .25 Z",
            "",
            {.07, .07, .07, .07},
            kNone},
    Outline{vnsProcess, "process", kBox, "", kNear, kNone},
    Outline{vnsAlternateProcess, "alternate process", kBox, "", kNear, kNone, .25},
    Outline{vnsDecision, "decision", kRhomb, "", {.2, .18, .2, .18}, kNone},
    Outline{
        vnsData, "data", "M.18 0 L1 0 L.82 1 L0 1 Z", "", {.16, .05, .16, .05}, {.09, 0, .09, 0}},
    Outline{vnsPredefinedProcess,
            "predefined process",
            kBox,
            "M.1 0 L.1 1 M.9 0 L.9 1",
            {.13, .05, .13, .05},
            kNone},
    Outline{vnsInternalStorage,
            "internal storage",
            kBox,
            "M.1 0 L.1 1 M0 .16 L1 .16",
            {.13, .19, .04, .05},
            kNone},
    Outline{vnsDocument,
            "document",
            "M0 0 L1 0 L1 .88 C.75 .72 .65 .82 .5 .91 C.35 1 .2 1.02 0 .9 Z",
            "",
            {.05, .04, .05, .2},
            {0, 0, 0, .09}},
    Outline{
        vnsMultiDocument,
        "documents",
        "M0 .14 L.06 .14 L.06 .07 L.12 .07 L.12 0 L1 0 L1 .76 L.94 .76 L.94 .83 L.88 .83 L.88 .9 "
        "C.68 .78 .55 .84 .44 .92 C.3 1 .16 1.02 0 .93 Z",
        "M.06 .14 L.88 .14 L.88 .83 M.12 .07 L.94 .07 L.94 .76",
        {.04, .16, .14, .18},
        {0, 0, 0, .1}},
    Outline{vnsTermination, "terminator", kBox, "", {.1, .05, .1, .05}, kNone, .5},
    Outline{vnsPreparation, "preparation", kSixSides, "", {.1, .05, .1, .05}, kNone},
    Outline{vnsManualInput,
            "manual input",
            "M0 .25 L1 0 L1 1 L0 1 Z",
            "",
            {.05, .2, .05, .04},
            {0, .125, 0, 0}},
    Outline{vnsManualOperation,
            "manual operation",
            "M0 0 L1 0 L.86 1 L.14 1 Z",
            "",
            {.13, .05, .13, .05},
            {.07, 0, .07, 0}},
    Outline{vnsConnector, "connector", kCircle, "", kRound, kNone},
    Outline{vnsOffPageConnection,
            "off-page connector",
            "M0 0 L1 0 L1 .7 L.5 1 L0 .7 Z",
            "",
            {.05, .04, .05, .28},
            kNone},
    Outline{vnsCard, "card", "M.16 0 L1 0 L1 1 L0 1 L0 .3 Z", "", {.06, .12, .05, .05}, kNone},
    Outline{vnsPunchedTape,
            "punched tape",
            "M0 .1 C.2 .22 .35 .2 .5 .1 C.65 0 .8 -.02 1 .1 L1 .9 C.8 .78 .65 .8 .5 .9 C.35 1 .2 "
            "1.02 0 .9 Z",
            "",
            {.04, .2, .04, .2},
            {0, .1, 0, .1}},
    Outline{vnsSummingJunction, "summing junction", kCircle,
            "M.146 .146 L.854 .854 M.854 .146 L.146 .854", kRound, kNone},
    Outline{vnsOr, "or", kCircle, "M.5 0 L.5 1 M0 .5 L1 .5", kRound, kNone},
    Outline{
        vnsCollate68, "collate", "M0 0 L1 0 L0 1 L1 1 Z", "", {.25, .03, .25, .71}, {.5, 0, .5, 0}},
    Outline{vnsSort, "sort", kRhomb, "M0 .5 L1 .5", {.25, .24, .25, .52}, kNone},
    Outline{vnsExtract, "extract", kUp, "", {.2, .4, .2, .04}, {.25, 0, .25, 0}},
    Outline{vnsMerge, "merge", kDown, "", {.2, .04, .2, .4}, {.25, 0, .25, 0}},
    Outline{vnsStoredData,
            "stored data",
            "M.12 0 L1 0 Q.88 .2 .88 .5 Q.88 .8 1 1 L.12 1 Q0 .8 0 .5 Q0 .2 .12 0 Z",
            "",
            {.09, .05, .15, .05},
            {0, 0, .12, 0}},
    Outline{
        vnsDelay, "delay", "M0 0 L.7 0 A.3 .5 0 0 1 .7 1 L0 1 Z", "", {.04, .05, .14, .05}, kNone},
    Outline{vnsSequentialAccessStorage, "sequential access storage",
            "M.5 1 A.5 .5 0 1 1 .854 .854 L1 .854 L1 1 Z", "", kRound, kNone},
    Outline{vnsMagneticDisk,
            "magnetic disk",
            "M0 .14 A.5 .14 0 0 1 1 .14 L1 .86 A.5 .14 0 0 1 0 .86 Z",
            "M0 .14 A.5 .14 0 0 0 1 .14",
            {.05, .3, .05, .06},
            kNone},
    Outline{vnsDirectAccessStorage,
            "direct access storage",
            "M.12 0 L.88 0 A.12 .5 0 0 1 .88 1 L.12 1 A.12 .5 0 0 1 .12 0 Z",
            "M.88 0 A.12 .5 0 0 0 .88 1",
            {.06, .05, .26, .05},
            kNone},
    Outline{vnsDisplay,
            "display",
            "M0 .5 L.18 0 L.82 0 A.18 .5 0 0 1 .82 1 L.18 1 Z",
            "",
            {.13, .05, .1, .05},
            kNone},
    Outline{vnsTransport,
            "transport",
            "M0 .2 L.7 .2 L.7 0 L1 .5 L.7 1 L.7 .8 L0 .8 Z",
            "",
            {.03, .22, .13, .22},
            {0, .2, 0, .2}},
    Outline{vnsProcessIso9000,
            "process arrow",
            "M0 0 L.88 0 L1 .5 L.88 1 L0 1 L.12 .5 Z",
            "",
            {.13, .05, .1, .05},
            {.12, 0, 0, 0}},
};

// A place in the unit square, turned clockwise.
Point Turned(Point point, int quarters) {
  switch (quarters) {
    case 1:
      return {1 - point.y, point.x};
    case 2:
      return {1 - point.x, 1 - point.y};
    case 3:
      return {point.y, 1 - point.x};
    default:
      return point;
  }
}

// The insets of the turned outline.
Insets Turned(const Insets& insets, int quarters) {
  Insets turned = insets;
  for (int i = 0; i < quarters; ++i) {
    turned = {turned.bottom, turned.left, turned.top, turned.right};
  }
  return turned;
}

// Reads a path's commands and numbers, one after the other.
class PathReader {
 public:
  explicit PathReader(const char* path) : rest_(path) {}
  // The next command; NUL at the end. Coordinates that follow without one repeat it.
  char Command() {
    Skip();
    if (rest_.empty()) return '\0';
    if (rest_.front() >= 'A' && rest_.front() <= 'Z') {
      command_ = rest_.front();
      rest_.remove_prefix(1);
    }
    return command_;
  }
  double Value() {
    Skip();
    double value = 0;
    const auto result = automation::FromChars(rest_.data(), rest_.data() + rest_.size(), value);
    rest_.remove_prefix(static_cast<size_t>(result.ptr - rest_.data()));
    return value;
  }
  Point Place() {
    const double x = Value();
    return {x, Value()};
  }

 private:
  void Skip() {
    while (rest_.starts_with(' ')) rest_.remove_prefix(1);
  }
  std::string_view rest_;
  char command_ = '\0';
};

// An elliptic arc's points after its first (SVG 1.1, appendix F.6.5); arcs here are not turned.
void AppendArc(Point from, Point radius, bool large, bool sweep, Point to,
               std::vector<Point>& points) {
  const Point half{(from.x - to.x) / 2 / radius.x, (from.y - to.y) / 2 / radius.y};
  const double square = half.x * half.x + half.y * half.y;
  double scale = std::sqrt(std::max(0.0, (1 - square) / std::max(square, 1e-9)));
  if (large == sweep) scale = -scale;
  const Point centre{scale * half.y, -scale * half.x};
  const double begin = std::atan2(half.y - centre.y, half.x - centre.x);
  double turn = std::atan2(-half.y - centre.y, -half.x - centre.x) - begin;
  constexpr double kWhole = 2 * std::numbers::pi;
  if (sweep && turn < 0) turn += kWhole;
  if (!sweep && turn > 0) turn -= kWhole;
  const Point middle{(from.x + to.x) / 2 + centre.x * radius.x,
                     (from.y + to.y) / 2 + centre.y * radius.y};
  constexpr int kParts = 16;
  for (int i = 1; i <= kParts; ++i) {
    const double angle = begin + turn * i / kParts;
    points.push_back(
        {middle.x + std::cos(angle) * radius.x, middle.y + std::sin(angle) * radius.y});
  }
}

Point MeetRoundedBox(const Box& box, double corner, Side side, Point at) {
  const bool upright = side == Side::kTop || side == Side::kBottom;
  const double radius = corner * std::min(box.width, box.height);
  const double to_end = upright ? std::min(at.x - box.left, box.Right() - at.x)
                                : std::min(at.y - box.top, box.Bottom() - at.y);
  const double beyond = std::clamp(radius - to_end, 0.0, radius);
  double inset = radius - std::sqrt(radius * radius - beyond * beyond);
  if (side == Side::kBottom || side == Side::kRight) inset = -inset;
  return upright ? Point{at.x, at.y + inset} : Point{at.x + inset, at.y};
}

// A path as a row of straight parts, in the unit square.
std::vector<Point> Flattened(const char* path, int quarters) {
  constexpr int kParts = 12;
  std::vector<Point> points;
  PathReader reader(path);
  Point first;
  while (const char command = reader.Command()) {
    const Point from = points.empty() ? Point{} : points.back();
    if (command == 'Z') {
      points.push_back(first);
    } else if (command == 'A') {
      const Point radius = reader.Place();
      reader.Value();
      const bool large = reader.Value() != 0;
      const bool sweep = reader.Value() != 0;
      AppendArc(from, radius, large, sweep, reader.Place(), points);
    } else if (command == 'Q' || command == 'C') {
      const Point a = reader.Place();
      const Point b = command == 'C' ? reader.Place() : a;
      const Point to = reader.Place();
      for (int i = 1; i <= kParts; ++i) {
        const double t = static_cast<double>(i) / kParts, u = 1 - t;
        const double wa = command == 'C' ? 3 * u * u * t : 2 * u * t;
        const double wb = command == 'C' ? 3 * u * t * t : 0;
        const double w0 = command == 'C' ? u * u * u : u * u,
                     w1 = command == 'C' ? t * t * t : t * t;
        points.push_back({from.x * w0 + a.x * wa + b.x * wb + to.x * w1,
                          from.y * w0 + a.y * wa + b.y * wb + to.y * w1});
      }
    } else {
      points.push_back(reader.Place());
      if (command == 'M') first = points.back();
    }
  }
  for (Point& point : points) point = Turned(point, quarters);
  return points;
}

}  // namespace

const Outline& OutlineOf(int shape) {
  const auto found =
      std::find_if(kOutlines.begin(), kOutlines.end(),
                   [shape](const Outline& outline) { return outline.shape == shape; });
  return found != kOutlines.end() ? *found : kOutlines[1];
}

std::string PathData(const char* path, const Box& box, int quarters) {
  std::string out;
  PathReader reader(path);
  const auto add = [&](Point point) {
    point = Turned(point, quarters);
    out += Number(box.left + point.x * box.width) + " " + Number(box.top + point.y * box.height);
  };
  while (const char command = reader.Command()) {
    if (!out.empty()) out += ' ';
    out += command;
    if (command == 'A') {
      Point radii = reader.Place();
      if (quarters % 2 == 1) std::swap(radii.x, radii.y);
      out += Number(radii.x * box.width) + " " + Number(radii.y * box.height);
      for (int i = 0; i < 3; ++i) out += " " + Number(reader.Value());
      out += ' ';
    }
    const int places = command == 'Z' ? 0 : command == 'C' ? 3 : command == 'Q' ? 2 : 1;
    for (int i = 0; i < places; ++i) {
      if (i > 0) out += ' ';
      add(reader.Place());
    }
  }
  return out;
}

Point EndPoint(const Outline& outline, const Box& box, int quarters, Side side) {
  const Insets ends = Turned(outline.ends, quarters);
  switch (side) {
    case Side::kTop:
      return {box.CentreX(), box.top + ends.top * box.height};
    case Side::kRight:
      return {box.Right() - ends.right * box.width, box.CentreY()};
    case Side::kBottom:
      return {box.CentreX(), box.Bottom() - ends.bottom * box.height};
    case Side::kLeft:
      break;
  }
  return {box.left + ends.left * box.width, box.CentreY()};
}

Box TextBox(const Outline& outline, const Box& box, int quarters) {
  const Insets text = Turned(outline.text, quarters);
  return {box.left + text.left * box.width, box.top + text.top * box.height,
          box.width * (1 - text.left - text.right), box.height * (1 - text.top - text.bottom)};
}

Point MeetBorder(const Outline& outline, const Box& box, int quarters, Side side, Point at) {
  const bool upright = side == Side::kTop || side == Side::kBottom;
  const bool to_greater = side == Side::kBottom || side == Side::kRight;
  const double width = std::max(box.width, 1.0), height = std::max(box.height, 1.0);
  if (outline.corner > 0) return MeetRoundedBox(box, outline.corner, side, at);
  const double across = upright ? (at.x - box.left) / width : (at.y - box.top) / height;
  double found = -1;
  const std::vector<Point> border = Flattened(outline.border, quarters);
  for (size_t i = 1; i < border.size(); ++i) {
    const Point& a = border[i - 1];
    const Point& b = border[i];
    const double a_across = upright ? a.x : a.y, b_across = upright ? b.x : b.y;
    if (std::min(a_across, b_across) > across || std::max(a_across, b_across) < across) continue;
    const double a_along = upright ? a.y : a.x, b_along = upright ? b.y : b.x;
    const double part = b_across == a_across ? 0 : (across - a_across) / (b_across - a_across);
    const double along = a_along + (b_along - a_along) * part;
    if (found < 0 || (to_greater ? along > found : along < found)) found = along;
  }
  if (found < 0) return at;
  found = std::clamp(found, 0.0, 1.0);
  return upright ? Point{at.x, box.top + found * height} : Point{box.left + found * width, at.y};
}

bool HoldsLine(const Outline& outline, const Box& box, int quarters, const Box& line) {
  if (outline.corner > 0 || outline.border == kBox) return true;
  constexpr double kTouch = .5;
  for (const double y : {line.top, line.Bottom()}) {
    const Point left = MeetBorder(outline, box, quarters, Side::kLeft, {box.left, y});
    const Point right = MeetBorder(outline, box, quarters, Side::kRight, {box.Right(), y});
    if (left.x > line.left + kTouch || right.x < line.Right() - kTouch) return false;
  }
  return true;
}

bool HasCorners(const Outline& outline, int quarters) {
  constexpr Box kUnit{0, 0, 1, 1};
  constexpr double kDeep = .2;
  const Point left = MeetBorder(outline, kUnit, quarters, Side::kBottom, {.25, 1});
  const Point right = MeetBorder(outline, kUnit, quarters, Side::kBottom, {.75, 1});
  return left.y < 1 - kDeep && right.y < 1 - kDeep;
}

}  // namespace vndoc6::drawing
