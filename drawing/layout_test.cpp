#include "layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <utility>

#include "layers.h"

namespace vndoc6::drawing {
namespace {

Layout LayOutSteps(size_t count, const std::vector<LayoutEdge>& edges) {
  return LayOut(std::vector<Box>(count, Box{0, 0, 100, 40}), edges);
}

bool Overlap(const Box& a, const Box& b) {
  return a.left < b.Right() && b.left < a.Right() && a.top < b.Bottom() && b.top < a.Bottom();
}

// A graph with branches, joins, long edges, circles and loose boxes.
std::vector<LayoutEdge> MixedEdges(size_t count) {
  std::vector<LayoutEdge> edges;
  uint32_t state = 7;
  const auto random = [&](size_t limit) {
    state = state * 1664525 + 1013904223;
    return (state >> 8) % limit;
  };
  for (size_t i = 1; i < count; ++i) {
    if (i % 9 == 0) continue;
    edges.push_back({i - 1 - random(std::min<size_t>(i, 5)), i});
    if (random(4) == 0) edges.push_back({i, random(count)});
  }
  return edges;
}

TEST(Layout, StepsStandBelowThoseThatLeadToThem) {
  const Layout layout = LayOutSteps(4, {{0, 1}, {0, 2}, {1, 3}, {2, 3}});
  EXPECT_LT(layout.boxes[0].Bottom(), layout.boxes[1].top);
  EXPECT_EQ(layout.boxes[1].top, layout.boxes[2].top);
  EXPECT_LT(layout.boxes[1].Bottom(), layout.boxes[3].top);
  EXPECT_EQ(layout.boxes[0].CentreX(), layout.boxes[3].CentreX());
}

TEST(Layout, AChainIsStraight) {
  const Layout layout = LayOutSteps(4, {{0, 1}, {1, 2}, {2, 3}});
  for (const Box& box : layout.boxes) EXPECT_EQ(box.left, 0);
  for (const Route& route : layout.routes) EXPECT_TRUE(route.bends.empty());
}

TEST(Layout, CirclesLeadUpAroundTheSteps) {
  const Layout layout = LayOutSteps(3, {{0, 1}, {1, 2}, {2, 0}, {1, 1}});
  EXPECT_LT(layout.boxes[0].top, layout.boxes[1].top);
  EXPECT_LT(layout.boxes[1].top, layout.boxes[2].top);
  ASSERT_GE(layout.routes[2].bends.size(), 2u);
  EXPECT_GT(layout.routes[2].bends[0].x, layout.boxes[2].Right());
  EXPECT_FALSE(layout.routes[3].bends.empty());
}

TEST(Layout, NothingOverlapsAndNoLineRunsThroughAStep) {
  const auto edges = MixedEdges(60);
  const Layout layout = LayOutSteps(60, edges);
  for (size_t i = 0; i < 60; ++i) {
    for (size_t k = 0; k < i; ++k) {
      EXPECT_FALSE(Overlap(layout.boxes[i], layout.boxes[k])) << i << " and " << k;
    }
  }
  for (const Route& route : layout.routes) {
    for (size_t k = 1; k < route.bends.size(); ++k) {
      const auto [left, right] = std::minmax(route.bends[k - 1].x, route.bends[k].x);
      const auto [top, bottom] = std::minmax(route.bends[k - 1].y, route.bends[k].y);
      const Box part{left, top, right - left, bottom - top};
      for (const Box& box : layout.boxes) EXPECT_FALSE(Overlap(part, box));
    }
  }
}

// The room that a group's frame takes.
Box FrameOf(const Layout& layout, const std::vector<size_t>& groups, size_t group) {
  double left = 1e9, top = 1e9, right = -1e9, bottom = -1e9;
  for (size_t i = 0; i < groups.size(); ++i) {
    if (groups[i] != group) continue;
    const Box& box = layout.boxes[i];
    left = std::min(left, box.left - kFrame);
    top = std::min(top, box.top - kFrameTop);
    right = std::max(right, box.Right() + kFrame);
    bottom = std::max(bottom, box.Bottom() + kFrame);
  }
  return {left, top, right - left, bottom - top};
}

void ExpectGroupsApart(const Layout& layout, const std::vector<size_t>& groups) {
  const std::set<size_t> numbers(groups.begin(), groups.end());
  for (const size_t group : numbers) {
    if (group == 0) continue;
    const Box frame = FrameOf(layout, groups, group);
    for (const size_t other : numbers) {
      if (other == 0 || other >= group) continue;
      EXPECT_FALSE(Overlap(frame, FrameOf(layout, groups, other))) << group << " and " << other;
    }
    for (size_t i = 0; i < groups.size(); ++i) {
      if (groups[i] == group) continue;
      EXPECT_FALSE(Overlap(frame, layout.boxes[i])) << "step " << i << " in " << group;
    }
  }
}

TEST(Layout, GroupsThatTakeTurnsStandSideBySide) {
  const std::vector<size_t> groups = {1, 2, 1, 0, 2, 1};
  const std::vector<LayoutEdge> edges = {{0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}};
  const Layout layout = LayOut(std::vector<Box>(6, Box{0, 0, 100, 40}), edges, groups);
  ExpectGroupsApart(layout, groups);
  EXPECT_EQ(layout.boxes[0].left, layout.boxes[5].left);
  EXPECT_LT(layout.boxes[5].Right(), layout.boxes[4].left);
}

TEST(Layout, GroupsThatFollowEachOtherStandBelowEachOther) {
  const std::vector<size_t> groups = {0, 1, 1, 2, 2, 0};
  const std::vector<LayoutEdge> edges = {{0, 1}, {1, 2}, {2, 3}, {3, 4}, {4, 5}};
  const Layout layout = LayOut(std::vector<Box>(6, Box{0, 0, 100, 40}), edges, groups);
  ExpectGroupsApart(layout, groups);
  for (const Box& box : layout.boxes) EXPECT_EQ(box.left, 0);
}

TEST(Layout, GroupsStayTogetherInAnyGraph) {
  for (const size_t group_count : {2, 5, 30}) {
    std::vector<size_t> groups;
    for (size_t i = 0; i < 90; ++i) groups.push_back(i * 7 % 11 % (group_count + 1));
    const std::vector<Box> boxes(90, Box{0, 0, 100, 40});
    ExpectGroupsApart(LayOut(boxes, MixedEdges(90), groups), groups);
    ExpectGroupsApart(LayOut(boxes, {}, groups), groups);
  }
}

TEST(Layout, TheSameStepsGiveTheSameLayout) {
  const auto edges = MixedEdges(200);
  EXPECT_TRUE(LayOutSteps(200, edges).routes.back().bends ==
              LayOutSteps(200, edges).routes.back().bends);
}

TEST(Layout, WhatNoLineJoinsStandsFartherApart) {
  const Layout layout = LayOutSteps(5, {{0, 1}, {0, 2}, {3, 4}});
  EXPECT_GT(layout.boxes[4].left - layout.boxes[2].Right(),
            layout.boxes[2].left - layout.boxes[1].Right());
}

TEST(Layout, LooseStepsFillRows) {
  const Layout layout = LayOutSteps(9, {});
  std::set<double> tops;
  for (const Box& box : layout.boxes) tops.insert(box.top);
  EXPECT_EQ(tops.size(), 3u);
}

TEST(Layout, NothingIsAnEmptyLayout) {
  const Layout layout = LayOutSteps(0, {});
  EXPECT_TRUE(layout.boxes.empty());
  EXPECT_EQ(layout.width, 0);
}

// Cells for the passing of lines must not grow with the square of the steps.
TEST(Layers, LinesOverVeryManyLayersTakeNoCells) {
  std::vector<LayoutEdge> edges;
  for (size_t i = 1; i < 2000; ++i) {
    edges.push_back({i - 1, i});
    edges.push_back({0, i});
  }
  const Layering layering = MakeLayers(2000, edges);
  EXPECT_EQ(layering.layers.size(), 2000u);
  EXPECT_LT(layering.cells.size(), 2200u);
}

TEST(Layers, CrossingsThatNeedNotBeAreUndone) {
  // Three pairs, joined crosswise.
  const Layering layering = MakeLayers(6, {{0, 5}, {1, 4}, {2, 3}});
  const auto order = [&](size_t box) { return layering.cells[box].order; };
  EXPECT_EQ(order(0) < order(1), order(5) < order(4));
  EXPECT_EQ(order(1) < order(2), order(4) < order(3));
}

}  // namespace
}  // namespace vndoc6::drawing
