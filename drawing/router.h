// Finds ways of right angles for lines between figures that have their places.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "geometry.h"

namespace vndoc6::drawing {

class Router {
 public:
  // What lines had better not run through.
  explicit Router(const std::vector<Box>& figures);

  // The way from one figure to another: short, with few bends, around others where it can be.
  // Lines that leave a figure prefer a side that no other uses. `ends` are the points where a
  // line may end, by side.
  using Ends = Point[4];
  Route Between(size_t from, const Ends& from_ends, size_t to, const Ends& to_ends);

 private:
  bool Try(const Box& from, Point start, const Box& to, Point end, Route& route) const;
  double Cost(const Route& route, size_t from, Point start, size_t to, Point end) const;
  size_t FiguresHit(Point a, Point b, size_t from, size_t to) const;
  double CrowdCost(size_t from, Side from_side, size_t to, Side to_side) const;

  const std::vector<Box>& figures_;
  std::unordered_map<int64_t, std::vector<size_t>> grid_;  // by cell, the figures in it
  struct Use {
    bool leaving = false;
    bool entering = false;
  };
  std::vector<Use> uses_;  // four for each figure
};

}  // namespace vndoc6::drawing
