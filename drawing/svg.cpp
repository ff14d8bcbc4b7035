#include "svg.h"

#include <algorithm>
#include <cmath>

#include "box_index.h"
#include "hops.h"
#include "label.h"
#include "legend.h"
#include "markup.h"
#include "page_texts.h"
#include "sheets.h"
#include "text_room.h"
#include "theme.h"

namespace vndoc6::drawing {
namespace {

constexpr double kBaseline = 0.36;  // of the font's size, below the middle of a line
constexpr int32_t kWhite = 0xFFFFFF;
constexpr const char* kUsualFamily = "Tahoma, Verdana, 'DejaVu Sans', sans-serif";
constexpr double kUsualSize = 12;

std::string Attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + value + "\"";
}
std::string Attribute(const char* name, double value) { return Attribute(name, Number(value)); }

std::string PlaceAttributes(const Box& box) {
  return Attribute("x", box.left) + Attribute("y", box.top) + Attribute("width", box.width) +
         Attribute("height", box.height);
}

std::string At(Point point) { return Number(point.x) + " " + Number(point.y); }

// A family name cannot end its quotes.
std::string Family(const Text& name) {
  Text plain;
  for (char16_t unit : name) {
    if (unit != '\'' && unit != '"' && unit != '\\' && unit >= ' ') plain += unit;
  }
  return plain.empty() || plain == u"Tahoma" ? kUsualFamily
                                             : "'" + Escaped(plain) + "', " + kUsualFamily;
}

std::string FontAttributes(const TextFont& font, double size) {
  std::string out;
  if (const std::string family = Family(font.family); family != kUsualFamily) {
    out += Attribute("font-family", family);
  }
  if (size != kUsualSize) out += Attribute("font-size", size);
  if (font.bold) out += Attribute("font-weight", "bold");
  if (font.italic) out += Attribute("font-style", "italic");
  if (font.underline || font.strikethrough) {
    out += Attribute("text-decoration", std::string(font.underline ? "underline" : "") +
                                            (font.underline && font.strikethrough ? " " : "") +
                                            (font.strikethrough ? "line-through" : ""));
  }
  return out;
}

std::string Dashes(const Pen& pen) {
  constexpr const char* kDashes[] = {"", "6 3", "1.5 3", "7 3 1.5 3", "7 3 1.5 3 1.5 3"};
  if (pen.style < 1 || pen.style > 4) return "";
  return Attribute("stroke-dasharray", kDashes[pen.style]);
}

std::string StrokeAttributes(const Pen& pen, const Palette& palette) {
  constexpr int32_t kInvisible = 5;
  if (pen.style == kInvisible) return Attribute("stroke", "none");
  std::string out = Attribute("stroke", palette.Pen(pen.colour));
  if (pen.width != 1) out += Attribute("stroke-width", pen.width);
  return out + Dashes(pen);
}

// The class attribute, from its first words on; none when there are no words.
std::string Classes(bool fill, bool pen, bool ink = false, std::string words = {}) {
  const auto add = [&](bool wanted, const char* word) {
    if (!wanted) return;
    if (!words.empty()) words += ' ';
    words += word;
  };
  add(fill, "fill");
  add(pen, "pen");
  add(ink, "ink");
  return words.empty() ? "" : Attribute("class", words);
}

enum class Across { kLeft, kMiddle, kRight };
enum class Down { kTop, kMiddle, kBottom };

struct Alignment {
  Across across = Across::kMiddle;
  Down down = Down::kMiddle;
};

Alignment AlignmentOf(int32_t code) {
  if (code < 0 || code > 8) return {};
  constexpr Across kAcross[] = {Across::kLeft, Across::kRight, Across::kMiddle};
  return {kAcross[code / 3], static_cast<Down>(code % 3)};
}

Box Placed(double width, double height, const Box& in, Alignment alignment) {
  Box box{in.left, in.top, width, height};
  if (alignment.across == Across::kMiddle) box.left = in.CentreX() - width / 2;
  if (alignment.across == Across::kRight) box.left = in.Right() - width;
  if (alignment.down == Down::kMiddle) box.top = in.CentreY() - height / 2;
  if (alignment.down == Down::kBottom) box.top = in.Bottom() - height;
  return box;
}

// Lines of text at their size.
struct SetText {
  std::vector<Text> lines;
  double size = kUsualSize;
  double Height() const { return static_cast<double>(lines.size()) * size * kLineHeight; }
};

// `most` is the height beyond which lines are cut.
SetText FitText(const Text& label, const TextFont& font, double width, double most) {
  SetText set{WrapText(label, width / font.size, font.bold), font.size};
  const double room = std::floor((most + .5) / (set.size * kLineHeight));
  CutLines(set.lines, static_cast<size_t>(std::clamp(room, 1.0, 1000.0)));
  return set;
}

class SvgWriter {
 public:
  SvgWriter(const Drawing& drawing, const SvgOptions& options, SvgKind kind, std::string& out)
      : drawing_(drawing),
        options_(options),
        palette_(options.theme),
        in_page_(kind == SvgKind::kInPage),
        words_(options.language),
        out_(out),
        region_(drawing.extent) {}

  void Write() {
    Box extent = drawing_.extent;
    if (options_.title) extent = WithHeading(extent);
    const double legend_top = extent.Bottom();
    const Legend legend = options_.legend ? LegendOf(drawing_, extent) : Legend();
    extent.height += legend.height;
    const double scale =
        options_.width > 0 && extent.width > 0 ? options_.width / extent.width : options_.scale;
    Begin(extent, extent.width * scale, extent.height * scale);
    WriteRectangle(extent);
    Content();
    if (options_.title) WriteHeading({extent.left + kHeadingMargin, extent.top});
    WriteLegend(legend, {extent.left, legend_top});
    out_ += "</svg>\n";
  }

  // One sheet of several: a part of the chart, with connectors around it.
  void WriteSheet(const Sheets& sheets, size_t number) {
    const Sheet& sheet = sheets.sheets[number];
    Begin({0, 0, sheets.paper.x, sheets.paper.y}, sheets.paper.x, sheets.paper.y);
    WriteRectangle({0, 0, sheets.paper.x, sheets.paper.y});
    region_ = sheet.region;
    const double width = region_.width * sheets.scale, height = region_.height * sheets.scale;
    const double left = (sheets.paper.x - width) / 2;
    out_ += "<svg" + PlaceAttributes({left, kSheetMargin, width, height}) +
            Attribute("viewBox", Number(region_.left) + " " + Number(region_.top) + " " +
                                     Number(region_.width) + " " + Number(region_.height)) +
            ">\n";
    Content();
    out_ += "</svg>\n";
    for (const Connector& connector : sheet.connectors)
      WriteConnector(connector, sheets.scale, left);
    if (options_.title) WriteHeading({kSheetMargin, 4});
    const bool last = number + 1 == sheets.sheets.size();
    const Legend legend = options_.legend && last
                              ? LegendOf(drawing_, {0, 0, sheets.paper.x - 2 * kSheetMargin, 0})
                              : Legend();
    // Where the last sheet has no room for it, the margin has to do.
    WriteLegend(legend, {kSheetMargin,
                         std::min(kSheetMargin + height + 16, sheets.paper.y - legend.height - 4)});
    WritePlain(
        "Sheet " + std::to_string(number + 1) + " of " + std::to_string(sheets.sheets.size()),
        {sheets.paper.x - kSheetMargin, sheets.paper.y - 14}, 11, "end");
    out_ += "</svg>\n";
  }

 private:
  static constexpr double kHeadingMargin = 24;
  static constexpr double kHeadingHeight = 40;

  static Box WithHeading(Box extent) {
    extent.top -= kHeadingHeight - 12;
    extent.height += kHeadingHeight - 12;
    return extent;
  }

  void Content() {
    Background();
    for (const Figure& figure : drawing_.containers) {
      if (IsSeen(figure.box)) WriteFigure(figure);
    }
    WriteLines();
    for (const Figure& figure : drawing_.steps) {
      if (IsSeen(figure.box)) WriteFigure(figure);
    }
    for (const Line& line : drawing_.lines) {
      if (IsSeen(line.label_box)) WriteLineLabel(line);
    }
  }

  // Shadows and pens reach a little farther.
  bool IsSeen(const Box& box) const { return Overlaps(Grown(box, 12), region_); }
  bool IsSeen(const Line& line) const {
    for (size_t i = 1; i < line.points.size(); ++i) {
      if (IsSeen(Around(line.points[i - 1], line.points[i]))) return true;
    }
    return false;
  }

  void WritePlain(const std::string& text, Point at, double size, const char* anchor,
                  const char* weight = "normal") {
    out_ += "<text" + Attribute("x", at.x) + Attribute("y", at.y) +
            Attribute("text-anchor", anchor) + Attribute("font-size", size) +
            Attribute("font-weight", weight) + Attribute("fill", palette_.Ink(0, kWhite)) + ">" +
            text + "</text>\n";
  }

  // The title, and the revision where there is one.
  void WriteHeading(Point corner) {
    constexpr double kSize = 18;
    std::string text = drawing_.title.empty() ? "Chart" : Escaped(drawing_.title);
    if (drawing_.revision != 0) {
      text += "<tspan font-size=\"11\" font-weight=\"normal\" dx=\"10\">Revision " +
              Escaped(automation::NumberText(drawing_.revision)) + "</tspan>";
    }
    WritePlain(text, {corner.x, corner.y + 28}, kSize, "start", "bold");
  }

  void WriteLegend(const Legend& legend, Point corner) {
    for (Legend::Entry entry : legend.entries) {
      entry.sample.box.left += corner.x;
      entry.sample.box.top += corner.y;
      out_ += "<g class=\"legend\">";
      WriteShape(entry.sample);
      WritePlain(entry.sample.outline->name,
                 {entry.sample.box.Right() + 8, entry.sample.box.CentreY() + 4}, 11, "start");
      out_ += "</g>\n";
    }
  }

  // In the margin beside the region; neighbours don't stand on each other.
  void WriteConnector(const Connector& connector, double scale, double left) {
    constexpr double kRadius = 7;
    const bool upright = connector.side == Side::kTop || connector.side == Side::kBottom;
    const double away = kRadius + 1 + static_cast<double>(connector.row) * 2 * kRadius;
    const double outwards =
        connector.side == Side::kTop || connector.side == Side::kLeft ? -away : away;
    Point at{left + (connector.at.x - region_.left) * scale,
             kSheetMargin + (connector.at.y - region_.top) * scale};
    const Point border = at;
    (upright ? at.y : at.x) += outwards;
    out_ += "<g class=\"connector\"><path" + Attribute("d", "M" + At(border) + " L" + At(at)) +
            Attribute("stroke", palette_.Pen(0)) + "/><circle" + Attribute("cx", at.x) +
            Attribute("cy", at.y) + Attribute("r", kRadius) +
            Attribute("fill", palette_.Fill(kWhite)) + Attribute("stroke", palette_.Pen(0)) + "/>";
    WritePlain(std::to_string(connector.number), {at.x, at.y + 3}, 8, "middle");
    out_ += "</g>\n";
  }

  void Begin(const Box& extent, double width, double height) {
    if (!in_page_) out_ += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    out_ += "<svg xmlns=\"http://www.w3.org/2000/svg\"";
    out_ += Attribute("width", width) + Attribute("height", height);
    out_ += Attribute("viewBox", Number(extent.left) + " " + Number(extent.top) + " " +
                                     Number(extent.width) + " " + Number(extent.height));
    out_ += Attribute("role", in_page_ ? "group" : "img");
    out_ += Attribute("aria-labelledby", "chart-title chart-description");
    out_ += Attribute("font-family", kUsualFamily) + Attribute("font-size", kUsualSize);
    out_ += Attribute("stroke-linejoin", "round") + ">\n";
    out_ += "<title id=\"chart-title\">" +
            (drawing_.title.empty() ? words_(Word::kChart) : Escaped(drawing_.title)) +
            "</title>\n";
    out_ += "<desc id=\"chart-description\">" + Description() + "</desc>\n";
  }

  std::string Description() const {
    std::string text = words_(Word::kChartHolds, std::to_string(drawing_.steps.size()),
                              std::to_string(drawing_.lines.size()));
    if (!drawing_.description.empty()) text += " " + Escaped(drawing_.description);
    return text;
  }

  void WriteRectangle(const Box& extent) {
    out_ += "<rect" + PlaceAttributes(extent) + Classes(drawing_.back_colour == kWhite, false) +
            Attribute("fill", palette_.Back(drawing_.back_colour)) + "/>\n";
  }

  void Background() {
    if (options_.grid && drawing_.grid.x >= 2 && drawing_.grid.y >= 2) {
      WriteLattice("grid", drawing_.grid, drawing_.grid_colour, "0.15");
    }
    if (options_.page_margins && drawing_.page.x >= 8 && drawing_.page.y >= 8) {
      WriteLattice("pages", drawing_.page, drawing_.page_colour, "1");
    }
    if (!drawing_.picture.empty()) {
      const ImageKind kind = SniffImage(drawing_.picture);
      WriteImage(drawing_.picture, kind, {0, 0, kind.width, kind.height});
    }
  }

  // Lines at equal distances, from the chart's origin.
  void WriteLattice(const char* id, Point step, int32_t colour, const char* opacity) {
    out_ += "<pattern" + Attribute("id", id) + Attribute("width", step.x) +
            Attribute("height", step.y) + Attribute("patternUnits", "userSpaceOnUse") +
            "><path d=\"M" + Number(step.x) + " 0 L0 0 L0 " + Number(step.y) + "\"" +
            Attribute("fill", "none") + Attribute("stroke", Colour(colour)) +
            Attribute("stroke-opacity", opacity) + "/></pattern>\n<rect" +
            PlaceAttributes(drawing_.extent) + Attribute("fill", std::string("url(#") + id + ")") +
            "/>\n";
  }

  // A picture that browsers do not show leaves a frame with the name of its kind.
  void WriteImage(const std::vector<uint8_t>& bytes, const ImageKind& kind, const Box& box) {
    if (kind.type == nullptr) return WritePlaceholder(kind, box);
    out_ += "<image" + PlaceAttributes(box) + Attribute("href", DataUri(kind.type, bytes)) + "/>\n";
  }

  void WritePlaceholder(const ImageKind& kind, const Box& place) {
    constexpr double kUsualSide = 48;
    Box box = place;
    if (box.width <= 0 || box.height <= 0) box.width = box.height = kUsualSide;
    const double size = std::clamp(box.height / 2, 5.0, std::max(5.0, box.width / 3));
    out_ += "<g class=\"picture\"><title>" + words_(Word::kPictureNotShown, kind.name, {}) +
            "</title><rect" + PlaceAttributes(box) + Classes(false, true) +
            Attribute("fill", "none") + Attribute("stroke", Colour(0)) +
            Attribute("stroke-dasharray", "3 2") + "/><text" + Attribute("x", box.CentreX()) +
            Attribute("y", box.CentreY() + size * kBaseline) + Attribute("text-anchor", "middle") +
            Attribute("font-size", size) + Classes(false, false, true) +
            Attribute("fill", Colour(0)) + ">" + kind.name + "</text></g>\n";
  }

  void WriteFigure(const Figure& figure) {
    const bool link = in_page_ && figure.step != 0;
    if (figure.step == 0) {
      out_ += "<g class=\"container\">";
    } else {
      const std::string number = std::to_string(figure.step);
      out_ +=
          link ? "<a class=\"step\"" + Attribute("href", "#step-" + number) : "<g class=\"step\"";
      out_ += Attribute("id", "figure-" + number) + ">";
    }
    WriteTitle(figure);
    WriteShape(figure);
    WriteLabel(figure);
    WriteJumpMark(figure);
    out_ += link ? "</a>\n" : "</g>\n";
  }

  void WriteTitle(const Figure& figure) {
    const std::string label = Escaped(figure.label);
    out_ += "<title>";
    out_ += figure.step != 0 ? words_(Word::kStepOfShape, label, figure.outline->name) : label;
    if (!figure.tooltip.empty()) out_ += "\n" + Escaped(figure.tooltip);
    out_ += "</title>\n";
  }

  static std::string Shape(const Figure& figure, const Box& box) {
    if (figure.outline->corner > 0) {
      const double radius = figure.outline->corner * std::min(box.width, box.height);
      return "<rect" + PlaceAttributes(box) + Attribute("rx", radius);
    }
    return "<path" + Attribute("d", PathData(figure.outline->border, box, figure.quarters));
  }

  void WriteShape(const Figure& figure) {
    const bool usual_pen = figure.pen.colour == 0;
    if (figure.shadow && palette_.HasShadows()) {
      Box box = figure.box;
      box.left += drawing_.shadow_offset.x;
      box.top += drawing_.shadow_offset.y;
      out_ += Shape(figure, box) + Attribute("fill", Colour(drawing_.shadow_colour)) + "/>\n";
    }
    out_ += Shape(figure, figure.box) +
            Classes(figure.filled && figure.fill == kWhite, usual_pen, false, "shape") +
            Attribute("fill", figure.filled ? palette_.Fill(figure.fill) : "none") +
            StrokeAttributes(figure.pen, palette_) + "/>\n";
    if (*figure.outline->detail == '\0') return;
    out_ += "<path" +
            Attribute("d", PathData(figure.outline->detail, figure.box, figure.quarters)) +
            Classes(false, usual_pen) + Attribute("fill", "none") +
            StrokeAttributes(figure.pen, palette_) + "/>\n";
  }

  // The picture, then the label in the room that is left.
  void WriteLabel(const Figure& figure) {
    Box room = LabelOf(figure).room;
    WritePicture(figure, room);
    Alignment alignment = AlignmentOf(figure.alignment);
    if (figure.step == 0 && alignment.down == Down::kMiddle) {
      // The middle of a container is where its steps are.
      alignment = {Across::kLeft, Down::kTop};
      room = TitleRoom(figure);
    }
    const double most = drawing_.ellipsis ? room.height : std::max(room.height, figure.box.height);
    const SetText set =
        FitText(figure.label, figure.font, room.width, figure.step == 0 ? room.height : most);
    const int32_t fill = figure.filled ? figure.fill : kWhite;
    WriteText(set, figure.font, palette_.Ink(figure.text_colour, fill),
              Placed(room.width, set.Height(), room, alignment), alignment.across,
              Classes(false, false, figure.text_colour == 0 && fill == kWhite));
  }

  void WritePicture(const Figure& figure, Box& room) {
    constexpr double kLeast = 12;
    if (figure.picture.empty()) return;
    const ImageKind kind = SniffImage(figure.picture);
    const double high = std::clamp(kind.height, kLeast, std::max(kLeast, figure.box.height * 0.6));
    const double wide = kind.height > 0 ? kind.width * high / kind.height : high;
    const double width = std::clamp(wide, kLeast, std::max(kLeast, figure.box.width * 0.5));
    const bool chosen = figure.picture_position >= 0 && figure.picture_position <= 8;
    const Alignment alignment =
        chosen ? AlignmentOf(figure.picture_position) : Alignment{Across::kLeft, Down::kMiddle};
    WriteImage(figure.picture, kind, Placed(width, high, room, alignment));
    if (chosen) return;
    room.left += width + 3;
    room.width = std::max(room.width - width - 3, 8.0);
  }

  void WriteText(const SetText& set, const TextFont& font, const std::string& colour,
                 const Box& box, Across across, const std::string& more) {
    if (set.lines.empty()) return;
    const bool backwards = std::any_of(set.lines.begin(), set.lines.begin() + 1,
                                       [](const Text& line) { return RunsRightToLeft(line); });
    double x = box.CentreX();
    std::string anchor = Attribute("text-anchor", "middle");
    if (across != Across::kMiddle) {
      const bool left = across == Across::kLeft;
      x = left ? box.left : box.Right();
      anchor = left == backwards ? Attribute("text-anchor", "end") : "";
    }
    out_ += "<text" + anchor + (backwards ? Attribute("direction", "rtl") : "") + more +
            FontAttributes(font, set.size) + Attribute("fill", colour) + ">";
    double y = box.top + set.size * (kLineHeight / 2 + kBaseline);
    for (const Text& line : set.lines) {
      out_ += "<tspan" + Attribute("x", x) + Attribute("y", y) + ">" + Escaped(line) + "</tspan>";
      y += set.size * kLineHeight;
    }
    out_ += "</text>\n";
  }

  // A small mark at the corner of a step that jumps to other documents.
  void WriteJumpMark(const Figure& figure) {
    if (figure.jumps.empty()) return;
    const double x = figure.box.Right() - 5;
    const double y = figure.box.Bottom() - 5;
    out_ += std::string("<g class=\"jump\"><title>") + words_(Word::kJumpsTo) + " " +
            Escaped(figure.jumps) + "</title><circle" + Attribute("cx", x) + Attribute("cy", y) +
            Attribute("r", 7) + Attribute("fill", "#2456a6") + "/><path" +
            Attribute("d", "M" + At({x - 3, y + 3}) + " L" + At({x + 3, y - 3}) + " M" +
                               At({x - 1.5, y - 3}) + " L" + At({x + 3, y - 3}) + " L" +
                               At({x + 3, y + 1.5})) +
            Attribute("fill", "none") + Attribute("stroke", "#ffffff") +
            Attribute("stroke-width", 1.4) + "/></g>\n";
  }

  void WriteLines() {
    const Hops hops = FindHops(drawing_.lines);
    for (size_t i = 0; i < drawing_.lines.size(); ++i) {
      const Line& line = drawing_.lines[i];
      if (!IsSeen(line)) continue;
      const std::string classes = Classes(false, line.pen.colour == 0);
      out_ += "<g class=\"line\"";
      if (in_page_) {
        out_ += Attribute("data-from", std::to_string(line.from)) +
                Attribute("data-to", std::to_string(line.to));
      }
      out_ += '>';
      if (!line.tooltip.empty()) out_ += "<title>" + Escaped(line.tooltip) + "</title>";
      out_ += "<path" +
              Attribute("d", line.curved ? CurvedPath(line) : StraightPath(line, hops[i])) +
              classes + Attribute("fill", "none") + StrokeAttributes(line.pen, palette_) + "/>";
      const auto& points = line.points;
      WriteArrow(line, line.dest, points[points.size() - 2], points.back());
      WriteArrow(line, line.orig, points[1], points.front());
      const size_t middle = LongestPart(line);
      WriteArrow(line, line.mid, points[middle],
                 {(points[middle].x + points[middle + 1].x) / 2,
                  (points[middle].y + points[middle + 1].y) / 2});
      out_ += "</g>\n";
    }
  }

  static std::string StraightPath(const Line& line, const std::vector<std::vector<double>>& hops) {
    const std::string arc = " A" + Number(kHopRadius) + " " + Number(kHopRadius);
    const std::string over_right = arc + " 0 0 1 ";
    const std::string over_left = arc + " 0 0 0 ";
    std::string path = "M" + At(line.points.front());
    for (size_t k = 1; k < line.points.size(); ++k) {
      const Point to = line.points[k];
      const bool right = to.x > line.points[k - 1].x;
      std::vector<double> places = hops[k - 1];
      if (!right) std::reverse(places.begin(), places.end());
      for (double x : places) {
        const double half = right ? kHopRadius : -kHopRadius;
        path.append(" L").append(At({x - half, to.y}));
        path.append(right ? over_right : over_left).append(At({x + half, to.y}));
      }
      path += " L" + At(to);
    }
    return path;
  }

  // Through the middle of each part, bending at the points between.
  static std::string CurvedPath(const Line& line) {
    const auto& points = line.points;
    std::string path = "M" + At(points.front());
    for (size_t k = 1; k + 1 < points.size(); ++k) {
      const bool last = k + 2 == points.size();
      const Point to =
          last ? points.back()
               : Point{(points[k].x + points[k + 1].x) / 2, (points[k].y + points[k + 1].y) / 2};
      path += " Q" + At(points[k]) + " " + At(to);
    }
    if (points.size() == 2) path += " L" + At(points.back());
    return path;
  }

  // The tip's point is at `tip`, and it comes from `from`.
  void WriteArrow(const Line& line, const Arrow& arrow, Point from, Point tip) {
    constexpr int32_t kInvisible = 5;
    if (arrow.kind == 0 || line.pen.style == kInvisible) return;
    const double length = (arrow.size == 1 ? 7.0 : arrow.size == 2 ? 13.0 : 9.5) + line.pen.width;
    const double distance = std::hypot(tip.x - from.x, tip.y - from.y);
    if (distance < 0.01) return;
    const Point along{(tip.x - from.x) / distance, (tip.y - from.y) / distance};
    const auto at = [&](double back, double aside) {
      return At({tip.x - along.x * back * length - along.y * aside * length,
                 tip.y - along.y * back * length + along.x * aside * length});
    };
    const std::string colour = palette_.Pen(line.pen.colour);
    const bool usual = line.pen.colour == 0;
    if (arrow.kind == 1) {
      out_ += "<path" + Attribute("d", "M" + at(1, .42) + " L" + at(0, 0) + " L" + at(1, -.42)) +
              Classes(false, usual) + Attribute("fill", "none") + Attribute("stroke", colour) +
              "/>";
    } else if (arrow.kind == 4) {
      out_ += "<circle" + Attribute("cx", tip.x) + Attribute("cy", tip.y) +
              Attribute("r", length * .35) + Classes(false, false, usual) +
              Attribute("fill", colour) + "/>";
    } else {
      const std::string rear = arrow.kind == 2 ? " L" + at(1.2, 0) : "";
      const double side = arrow.kind == 2 ? .6 : 1;
      out_ += "<path" +
              Attribute("d", "M" + at(0, 0) + " L" + at(side, .38) + rear + " L" + at(side, -.38) +
                                 " Z") +
              Classes(false, false, usual) + Attribute("fill", colour) + "/>";
    }
  }

  // The part that begins at that point.
  static size_t LongestPart(const Line& line) {
    size_t longest = 0;
    double length = -1;
    for (size_t k = 0; k + 1 < line.points.size(); ++k) {
      const double part = std::hypot(line.points[k + 1].x - line.points[k].x,
                                     line.points[k + 1].y - line.points[k].y);
      if (part <= length) continue;
      length = part;
      longest = k;
    }
    return longest;
  }

  void WriteLineLabel(const Line& line) {
    if (line.label_box.width <= 0) return;
    const SetText set{SetLineLabel(line.label, line.font.size, line.font.bold).lines,
                      line.font.size};
    std::string halo = Classes(false, false, line.text_colour == 0);
    if (line.opaque) {
      halo = Attribute("class", line.text_colour == 0 ? "ink halo" : "halo") +
             Attribute("stroke", palette_.Back(drawing_.back_colour)) +
             Attribute("stroke-width", 5) + Attribute("paint-order", "stroke");
    }
    WriteText(set, line.font, palette_.Ink(line.text_colour, drawing_.back_colour), line.label_box,
              Across::kMiddle, halo);
  }

  const Drawing& drawing_;
  const SvgOptions& options_;
  const Palette palette_;
  const bool in_page_;
  const Words words_;
  std::string& out_;
  Box region_;  // what is seen of the chart
};

}  // namespace

std::string WriteSvg(const Drawing& drawing, const SvgOptions& options) {
  std::string out;
  AppendSvg(drawing, options, SvgKind::kDocument, out);
  return out;
}

std::vector<std::string> WriteSheets(const Drawing& drawing, const SvgOptions& options) {
  const Sheets sheets = FindSheets(drawing, options.paper);
  std::vector<std::string> out(sheets.sheets.size());
  for (size_t i = 0; i < out.size(); ++i) {
    SvgWriter(drawing, options, SvgKind::kDocument, out[i]).WriteSheet(sheets, i);
  }
  return out;
}

void AppendSvg(const Drawing& drawing, const SvgOptions& options, SvgKind kind, std::string& out) {
  SvgWriter(drawing, options, kind, out).Write();
}

}  // namespace vndoc6::drawing
