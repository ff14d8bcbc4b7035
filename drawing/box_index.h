// Boxes to look up by place.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "geometry.h"

namespace vndoc6::drawing {

inline bool Overlaps(const Box& a, const Box& b) {
  return a.left < b.Right() && b.left < a.Right() && a.top < b.Bottom() && b.top < a.Bottom();
}

inline Box Grown(const Box& box, double by) {
  return {box.left - by, box.top - by, box.width + 2 * by, box.height + 2 * by};
}

// The box around the part of a line, with no extent across.
inline Box Around(Point a, Point b) {
  return {std::min(a.x, b.x), std::min(a.y, b.y), std::abs(a.x - b.x), std::abs(a.y - b.y)};
}

class BoxIndex {
 public:
  // Its number is that of boxes added before. One that is very large, or very far out, is never
  // found.
  void Add(const Box& box) {
    ForEachCell(box, [&](int64_t cell) { cells_[cell].push_back(boxes_.size()); });
    boxes_.push_back(box);
  }

  const Box& At(size_t number) const { return boxes_[number]; }

  // The numbers of those that a box overlaps, ascending. No more than about `most`.
  std::vector<size_t> In(const Box& box, size_t most) const {
    std::vector<size_t> found;
    ForEachCell(box, [&](int64_t cell) {
      const auto entry = cells_.find(cell);
      if (entry == cells_.end() || found.size() > 4 * most) return;
      for (const size_t number : entry->second) {
        if (Overlaps(boxes_[number], Grown(box, kTouch))) found.push_back(number);
      }
    });
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
  }

  bool IsFree(const Box& box) const {
    const Box touched = Grown(box, kTouch);
    bool free = true;
    ForEachCell(box, [&](int64_t cell) {
      const auto entry = cells_.find(cell);
      if (!free || entry == cells_.end()) return;
      free = std::none_of(entry->second.begin(), entry->second.end(),
                          [&](size_t number) { return Overlaps(boxes_[number], touched); });
    });
    return free;
  }

 private:
  static constexpr double kCell = 128;
  static constexpr double kMostCells = 4'096;
  static constexpr double kTouch = 0.01;  // what has no extent across is found, too

  template <class Visit>
  static void ForEachCell(const Box& box, Visit&& visit) {
    constexpr double kFarthest = 1e6;
    if (!(std::max(std::abs(box.left), std::abs(box.top)) < kFarthest)) return;
    if ((box.width / kCell + 1) * (box.height / kCell + 1) > kMostCells) return;
    const auto cell = [](double at) { return static_cast<int64_t>(std::floor(at / kCell)); };
    for (int64_t y = cell(box.top); y <= cell(box.Bottom()); ++y) {
      for (int64_t x = cell(box.left); x <= cell(box.Right()); ++x) {
        visit(y * (int64_t{1} << 32) + x);
      }
    }
  }

  std::vector<Box> boxes_;
  std::unordered_map<int64_t, std::vector<size_t>> cells_;
};

}  // namespace vndoc6::drawing
