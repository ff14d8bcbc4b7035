#include "label_places.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

#include "box_index.h"
#include "label.h"

namespace vndoc6::drawing {
namespace {

constexpr size_t kNobody = static_cast<size_t>(-1);
constexpr double kBeside = 6;  // from a line to its label

// What labels had better not cover, to look up by place.
class Obstacles {
 public:
  void Add(const Box& box, size_t line) {
    ForEachCell(box, [&](int64_t cell) { cells_[cell].push_back({box, line}); });
  }

  // A slanting part is a row of small boxes.
  void AddPart(Point a, Point b, size_t line) {
    const double length = std::max(std::abs(a.x - b.x), std::abs(a.y - b.y));
    const bool slanting = a.x != b.x && a.y != b.y;
    const int pieces = slanting ? static_cast<int>(std::clamp(length / kPiece, 1.0, 200.0)) : 1;
    for (int i = 0; i < pieces; ++i) {
      const auto at = [&](int piece) {
        const double t = static_cast<double>(piece) / pieces;
        return Point{a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
      };
      const Point from = at(i), to = at(i + 1);
      Add({std::min(from.x, to.x) - 1, std::min(from.y, to.y) - 1, std::abs(from.x - to.x) + 2,
           std::abs(from.y - to.y) + 2},
          line);
    }
  }

  // How much lies in a box; parts of the line of that number count less than all else.
  size_t Count(const Box& box, size_t line) const {
    size_t count = 0;
    ForEachCell(box, [&](int64_t cell) {
      const auto found = cells_.find(cell);
      if (found == cells_.end()) return;
      const size_t most = std::min(found->second.size(), kMostInCell);
      for (size_t i = 0; i < most; ++i) {
        const Entry& entry = found->second[i];
        if (Overlaps(entry.box, box)) count += entry.line == line && line != kNobody ? 1 : kOther;
      }
    });
    return count;
  }

 private:
  static constexpr size_t kOther = 4;
  static constexpr double kCell = 64;
  static constexpr double kPiece = 24;
  static constexpr double kMostCells = 4'096;  // of one obstacle; larger ones are not looked at
  static constexpr size_t kMostInCell = 64;
  struct Entry {
    Box box;
    size_t line;
  };

  template <class Visit>
  static void ForEachCell(const Box& box, Visit&& visit) {
    if (!((box.width / kCell + 1) * (box.height / kCell + 1) < kMostCells)) return;
    const auto cell = [](double at) { return static_cast<int64_t>(std::floor(at / kCell)); };
    for (int64_t y = cell(box.top); y <= cell(box.Bottom()); ++y) {
      for (int64_t x = cell(box.left); x <= cell(box.Right()); ++x) {
        visit(y * (int64_t{1} << 32) + x);
      }
    }
  }

  std::unordered_map<int64_t, std::vector<Entry>> cells_;
};

class Placer {
 public:
  explicit Placer(Drawing& drawing) : drawing_(drawing) {}

  void Place() {
    bool any = !drawing_.containers.empty();
    for (const Line& line : drawing_.lines) any |= IsWaiting(line);
    if (!any) return;
    for (const Figure& step : drawing_.steps) obstacles_.Add(step.box, kNobody);
    for (const Figure& container : drawing_.containers) AddFrame(container.box);
    for (size_t i = 0; i < drawing_.lines.size(); ++i) AddLine(i);
    for (Figure& container : drawing_.containers) PlaceTitle(container);
    for (size_t i = 0; i < drawing_.lines.size(); ++i) {
      if (IsWaiting(drawing_.lines[i])) PlaceLabel(i);
    }
  }

 private:
  static bool IsWaiting(const Line& line) {
    return !line.label.empty() && line.label_box.width <= 0;
  }

  void AddFrame(const Box& box) {
    const Point corners[] = {{box.left, box.top},
                             {box.Right(), box.top},
                             {box.Right(), box.Bottom()},
                             {box.left, box.Bottom()}};
    for (size_t i = 0; i < 4; ++i) obstacles_.AddPart(corners[i], corners[(i + 1) % 4], kNobody);
  }

  // At the left of the container's upper side, or farther right where no line runs through it.
  void PlaceTitle(Figure& container) {
    constexpr double kStep = 6;
    constexpr double kInset = 8;
    const double size = container.font.size;
    const double width = TextWidth(container.label, container.font.bold) * size;
    if (width <= 0) return;
    Box place{container.box.left + kInset, container.box.top + 6, width, size * kLineHeight};
    for (double left = place.left; left + width <= container.box.Right() - kInset; left += kStep) {
      const Box there{left, place.top, width, place.height};
      if (obstacles_.Count(there, kNobody) > 0) continue;
      container.title_at = {left, place.top};
      place = there;
      break;
    }
    obstacles_.Add(place, kNobody);
  }

  // Arrow heads are wider than their lines, also for the line's own label.
  void AddLine(size_t number) {
    constexpr double kHead = 11;
    const Line& line = drawing_.lines[number];
    for (size_t i = 1; i < line.points.size(); ++i) {
      obstacles_.AddPart(line.points[i - 1], line.points[i], number);
    }
    const Point tip = line.points.back();
    obstacles_.Add({tip.x - kHead, tip.y - kHead, 2 * kHead, 2 * kHead}, kNobody);
    if (line.label_box.width > 0) obstacles_.Add(line.label_box, kNobody);
  }

  void PlaceLabel(size_t number) {
    Line& line = drawing_.lines[number];
    const LineLabel label = SetLineLabel(line.label, line.font.size, line.font.bold);
    if (label.width <= 0) return;
    const auto chosen = static_cast<size_t>(std::max(line.text_segment, 0));
    if (chosen > 0 && chosen < line.points.size()) {
      const Point a = line.points[chosen - 1], b = line.points[chosen];
      line.label_box = {(a.x + b.x - label.width) / 2, (a.y + b.y - label.height) / 2, label.width,
                        label.height};
    } else {
      line.label_box = BestPlace(number, label);
    }
    obstacles_.Add(line.label_box, kNobody);
  }

  // From the beginning on, on both sides of each part; farther from the line where it has to be.
  Box BestPlace(size_t number, const LineLabel& label) const {
    Best best;
    for (const double beside : {kBeside, 3 * kBeside, 6 * kBeside, 10 * kBeside}) {
      const std::vector<Point>& points = drawing_.lines[number].points;
      for (size_t i = 1; i < points.size() && best.covered > 0; ++i) {
        TryPart(number, points[i - 1], points[i], beside, label, best);
      }
    }
    return best.place;
  }

  struct Best {
    Box place;
    size_t covered = kNobody;
  };

  void TryPart(size_t number, Point a, Point b, double beside, const LineLabel& label,
               Best& best) const {
    constexpr int kMostSteps = 40;
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    const bool level = std::abs(b.x - a.x) > std::abs(b.y - a.y);
    const double half = (level ? label.width : label.height) / 2;
    double at = std::min(half + kBeside, length / 2);
    for (int step = 0; step < kMostSteps; ++step, at += std::max(4.0, length / kMostSteps)) {
      if (step > 0 && at > length - half) break;
      const double t = length > 0 ? at / length : 0;
      const Point centre{a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
      for (const bool after : {true, false}) {
        const Box place = Beside(centre, level, after, beside, label);
        const size_t covered = obstacles_.Count(place, number);
        if (covered >= best.covered) continue;
        best = {place, covered};
        if (covered == 0) return;
      }
    }
  }

  // To the right of an upright part or above a level one; otherwise on its other side.
  static Box Beside(Point at, bool level, bool after, double beside, const LineLabel& label) {
    if (level) {
      return {at.x - label.width / 2, after ? at.y - label.height - beside / 2 : at.y + beside / 2,
              label.width, label.height};
    }
    return {after ? at.x + beside : at.x - beside - label.width, at.y - label.height / 2,
            label.width, label.height};
  }

  Drawing& drawing_;
  Obstacles obstacles_;
};

}  // namespace

void PlaceLabels(Drawing& drawing) { Placer(drawing).Place(); }

}  // namespace vndoc6::drawing
