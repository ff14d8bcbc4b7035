// How good a layout is, in numbers.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "layout/layout.h"

namespace vndoc6::drawing {

struct ChartMetric {
  int crossings = 0;
  int shared = 0;  // pairs of lines that run on each other
  int lines_through_boxes = 0;
  int box_overlaps = 0;
  int covered_labels = 0;  // by boxes, other lines or other labels
  int short_bends = 0;
  double mean_length = 0;
};

inline bool Overlap(const Box& a, const Box& b, double by = 0.5) {
  return a.left < b.Right() - by && b.left < a.Right() - by && a.top < b.Bottom() - by &&
         b.top < a.Bottom() - by;
}

class ChartMeasurer {
 public:
  ChartMeasurer(const ChartLayout& layout, const std::vector<LayoutEdge>& edges)
      : layout_(layout), edges_(edges) {
    for (size_t i = 0; i < layout.lines.size(); ++i) {
      const auto& points = layout.lines[i];
      for (size_t k = 1; k < points.size(); ++k) parts_.push_back({i, points[k - 1], points[k]});
    }
  }

  ChartMetric Measure() {
    for (size_t i = 0; i < parts_.size(); ++i) MeasurePart(i);
    for (size_t i = 0; i < layout_.boxes.size(); ++i) {
      for (size_t k = 0; k < i; ++k)
        out_.box_overlaps += Overlap(layout_.boxes[i], layout_.boxes[k]);
    }
    for (size_t i = 0; i < layout_.labels.size(); ++i) {
      if (layout_.labels[i].width > 0) out_.covered_labels += IsCovered(i);
    }
    for (const auto& points : layout_.lines) {
      for (size_t k = 2; k + 1 < points.size(); ++k) {
        out_.short_bends += Length(points[k - 1], points[k]) < 9;
      }
    }
    out_.mean_length /= std::max<double>(1, static_cast<double>(layout_.lines.size()));
    return out_;
  }

 private:
  struct Part {
    size_t line;
    Point a, b;
    Box Around() const {
      return {std::min(a.x, b.x), std::min(a.y, b.y), std::abs(a.x - b.x), std::abs(a.y - b.y)};
    }
    bool IsLevel() const { return a.y == b.y; }
  };

  static double Length(Point a, Point b) { return std::abs(a.x - b.x) + std::abs(a.y - b.y); }

  void MeasurePart(size_t number) {
    const Part& part = parts_[number];
    const Box box = part.Around();
    out_.mean_length += Length(part.a, part.b);
    for (size_t i = 0; i < layout_.boxes.size(); ++i) {
      const bool own = edges_[part.line].from == i || edges_[part.line].to == i;
      if (!own) out_.lines_through_boxes += Overlap(box, layout_.boxes[i], -0.5);
    }
    for (size_t i = 0; i < number; ++i) {
      const Part& other = parts_[i];
      if (other.line == part.line) continue;
      const Box around = other.Around();
      if (part.IsLevel() != other.IsLevel()) {
        out_.crossings += Overlap(box, around, 0.01);
      } else {
        out_.shared +=
            Overlap(box, {around.left - 1, around.top - 1, around.width + 2, around.height + 2},
                    0) &&
            std::min(box.Right(), around.Right()) - std::max(box.left, around.left) +
                    std::min(box.Bottom(), around.Bottom()) - std::max(box.top, around.top) >
                2;
      }
    }
  }

  bool IsCovered(size_t line) const {
    const Box& label = layout_.labels[line];
    for (const Box& box : layout_.boxes) {
      if (Overlap(label, box)) return true;
    }
    for (const Part& part : parts_) {
      if (part.line != line && Overlap(label, part.Around(), 0)) return true;
    }
    for (size_t i = 0; i < layout_.labels.size(); ++i) {
      if (i != line && layout_.labels[i].width > 0 && Overlap(label, layout_.labels[i]))
        return true;
    }
    return false;
  }

  const ChartLayout& layout_;
  const std::vector<LayoutEdge>& edges_;
  std::vector<Part> parts_;
  ChartMetric out_;
};

}  // namespace vndoc6::drawing
