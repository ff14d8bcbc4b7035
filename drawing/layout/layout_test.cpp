#include "layout/layout.h"

#include <gtest/gtest.h>

#include <set>

#include "layout/chart_metric.h"
#include "layout/crossings.h"
#include "layout/network_simplex.h"

namespace vndoc6::drawing {
namespace {

struct Chart {
  std::vector<LayoutBox> boxes;
  std::vector<LayoutEdge> edges;
  std::vector<size_t> groups;
};

Chart ChartOf(size_t count, const std::vector<std::pair<size_t, size_t>>& edges,
              double label_width = 0) {
  Chart chart;
  chart.boxes.assign(count, {110, 44});
  for (const auto& [from, to] : edges) chart.edges.push_back({from, to, label_width, 15});
  return chart;
}

// A procedure: mostly forward, with decisions, labels, loops and circles.
Chart RandomChart(size_t count, size_t more, uint32_t seed, size_t group_count = 0) {
  const auto random = [&seed](size_t limit) {
    seed = seed * 1664525 + 1013904223;
    return (seed >> 8) % limit;
  };
  Chart chart = ChartOf(count, {});
  const auto add = [&](size_t from, size_t to) {
    chart.edges.push_back(
        {from, to, random(3) == 0 ? 20.0 + static_cast<double>(random(60)) : 0, 15});
  };
  for (size_t i = 1; i < count; ++i)
    add(i - 1 - (random(3) == 0 ? random(std::min<size_t>(i, 3)) : 0), i);
  for (size_t i = 0; i < more; ++i) {
    const size_t from = random(count);
    const size_t away = random(8);
    add(from, random(7) != 0 ? std::min(from + away, count - 1) : from - std::min(from, away));
  }
  for (LayoutBox& box : chart.boxes) {
    box.has_corners = random(5) == 0;
    box.height = 80;  // room for lines from a box to itself
  }
  for (size_t i = 0; group_count > 0 && i < count; ++i) {
    chart.groups.push_back(random(9) == 0 ? 0 : i * group_count / count + 1);
  }
  return chart;
}

ChartLayout LayOutChart(const Chart& chart) {
  return LayOut(chart.boxes, chart.edges, chart.groups);
}

Chart Fork(size_t width) {
  std::vector<std::pair<size_t, size_t>> edges;
  for (size_t i = 1; i <= width; ++i) {
    edges.emplace_back(0, i);
    edges.emplace_back(i, width + 1);
  }
  return ChartOf(width + 2, edges);
}

// The steps of handling an incident, with its decisions and its ways back.
Chart Incident() {
  Chart chart =
      ChartOf(19, {{0, 1},   {1, 2},  {2, 15},  {2, 3},   {3, 14}, {3, 4},   {4, 5},   {5, 16},
                   {5, 6},   {6, 7},  {7, 8},   {8, 9},   {8, 11}, {9, 10},  {10, 11}, {11, 12},
                   {12, 13}, {13, 7}, {13, 16}, {14, 16}, {15, 4}, {16, 17}, {17, 4},  {17, 18}},
              24);
  for (const size_t decision : {2, 3, 5, 8, 13, 17}) chart.boxes[decision].has_corners = true;
  return chart;
}

// The limits stand a little above what is reached.
TEST(Layout, ChartsAreAsGoodAsTheyWere) {
  struct Case {
    const char* name;
    Chart chart;
    int crossings;
    double mean_length;
  };
  const Case cases[] = {
      {"fork", Fork(12), 0, 415},
      {"incident", Incident(), 0, 212},
      {"parallel", ChartOf(3, {{0, 1}, {0, 1}, {0, 1}, {1, 0}, {1, 0}, {1, 2}, {2, 2}}, 30), 0,
       100},
      {"19 steps", RandomChart(19, 6, 1), 0, 108},
      {"30 steps, many links", RandomChart(30, 30, 2), 3, 197},
      {"67 steps in 8 groups", RandomChart(67, 20, 3, 8), 1, 132},
      {"40 steps in 4 groups", RandomChart(40, 12, 4, 4), 0, 164},
      {"300 steps", RandomChart(300, 90, 5), 1, 117},
  };
  for (const Case& test : cases) {
    const ChartMetric metric = ChartMeasurer(LayOutChart(test.chart), test.chart.edges).Measure();
    EXPECT_LE(metric.crossings, test.crossings) << test.name;
    EXPECT_LE(metric.mean_length, test.mean_length) << test.name;
    EXPECT_EQ(metric.shared, 0) << test.name;
    EXPECT_EQ(metric.lines_through_boxes, 0) << test.name;
    EXPECT_EQ(metric.box_overlaps, 0) << test.name;
    EXPECT_EQ(metric.covered_labels, 0) << test.name;
    EXPECT_EQ(metric.short_bends, 0) << test.name;
  }
}

TEST(Layout, StepsStandBelowThoseThatLeadToThemAndTheMainPathIsStraight) {
  const ChartLayout layout =
      LayOutChart(ChartOf(5, {{0, 1}, {1, 2}, {0, 3}, {3, 2}, {2, 4}, {4, 0}}));
  EXPECT_LT(layout.boxes[0].Bottom(), layout.boxes[1].top);
  EXPECT_EQ(layout.boxes[1].top, layout.boxes[3].top);
  for (const size_t box : {1, 2, 4}) {
    EXPECT_EQ(layout.boxes[box].CentreX(), layout.boxes[0].CentreX());
  }
  for (const size_t edge : {0, 1, 4}) EXPECT_EQ(layout.lines[edge].size(), 2u);
}

TEST(Layout, TheExitsOfADecisionLeaveAtDifferentCorners) {
  Chart chart = ChartOf(4, {{0, 1}, {0, 2}, {0, 3}}, 20);
  chart.boxes[0].has_corners = true;
  const ChartLayout layout = LayOutChart(chart);
  std::set<std::pair<double, double>> corners;
  for (const auto& line : layout.lines) corners.emplace(line[0].x, line[0].y);
  const Box& box = layout.boxes[0];
  EXPECT_EQ(corners, (std::set<std::pair<double, double>>{{box.left, box.CentreY()},
                                                          {box.CentreX(), box.Bottom()},
                                                          {box.Right(), box.CentreY()}}));
}

TEST(Layout, GroupsStayTogetherInAnyGraph) {
  for (const size_t group_count : {1, 2, 5, 30}) {
    Chart chart = RandomChart(90, 20, 7);
    for (size_t i = 0; i < 90; ++i) chart.groups.push_back(i * 7 % 11 % (group_count + 1));
    const ChartLayout layout = LayOutChart(chart);
    for (size_t group = 1; group < layout.frames.size(); ++group) {
      const Box& frame = layout.frames[group];
      for (size_t other = 1; other < group; ++other) {
        EXPECT_FALSE(frame.width > 0 && Overlap(frame, layout.frames[other]));
      }
      for (size_t i = 0; i < 90; ++i) {
        const Box& box = layout.boxes[i];
        if (chart.groups[i] != group) {
          EXPECT_FALSE(Overlap(frame, box)) << "step " << i << " in " << group;
        } else {
          EXPECT_EQ(Union(frame, box).width, frame.width);
          EXPECT_EQ(Union(frame, box).height, frame.height);
        }
      }
    }
  }
}

TEST(Layout, LayersStandBesideEachOtherWhenAskedFor) {
  const Chart chart = RandomChart(40, 12, 4, 4);
  LayoutStyle style;
  style.to_right = true;
  const ChartLayout layout = LayOut(chart.boxes, chart.edges, chart.groups, {}, style);
  const ChartMetric metric = ChartMeasurer(layout, chart.edges).Measure();
  EXPECT_EQ(metric.lines_through_boxes + metric.box_overlaps + metric.short_bends, 0);
  EXPECT_LT(layout.boxes[0].Right(), layout.boxes[1].left);
  EXPECT_GT(layout.width, layout.height);
}

TEST(Layout, WhatNoLineJoinsFillsThePage) {
  const ChartLayout loose = LayOutChart(ChartOf(9, {}));
  std::set<double> tops;
  for (const Box& box : loose.boxes) tops.insert(box.top);
  EXPECT_GT(tops.size(), 1u);
  EXPECT_LT(tops.size(), 9u);
  Chart grouped = ChartOf(9, {});
  grouped.groups.assign(9, 1);
  EXPECT_LT(LayOutChart(grouped).width, 9 * 110.0);
  EXPECT_EQ(LayOutChart(ChartOf(0, {})).width, 0);
}

// Everything linked with everything, links over hundreds of layers, one step with hundreds of
// links: it ends, and the same way each time.
TEST(Layout, HardGraphsEnd) {
  std::vector<std::pair<size_t, size_t>> all, from_first, chain;
  for (size_t i = 0; i < 20; ++i) {
    for (size_t k = 0; k < 20; ++k) all.emplace_back(i, k);
  }
  for (size_t i = 1; i < 120; ++i) {
    from_first.emplace_back(0, i);
    from_first.emplace_back(i - 1, i);
    chain.emplace_back(0, i);
  }
  for (const Chart& chart : {ChartOf(20, all), ChartOf(120, from_first, 20), ChartOf(120, chain)}) {
    const ChartLayout layout = LayOutChart(chart);
    EXPECT_EQ(layout.lines, LayOutChart(chart).lines);
    size_t points = 0;
    for (const auto& line : layout.lines) points += line.size();
    EXPECT_LT(points, 60 * chart.edges.size());
  }
}

TEST(NetworkSimplex, EdgesAreAsShortAsCanBe) {
  // The example of the method's authors.
  const std::vector<RankEdge> edges = {{0, 1}, {1, 2}, {2, 3}, {3, 7}, {0, 4},
                                       {4, 6}, {0, 5}, {5, 6}, {6, 7}};
  const std::vector<int> ranks = RankNodes(8, edges, 1000);
  int length = 0;
  for (const RankEdge& edge : edges) {
    const int span = ranks[edge.head] - ranks[edge.tail];
    EXPECT_GE(span, 1);
    length += span;
  }
  EXPECT_EQ(length, 10);
}

TEST(Crossings, AreCountedWithTheirWeights) {
  std::vector<Crosser> lines = {{0, 2, 1}, {1, 1, 2}, {2, 0, 3}, {2, 2, 5}};
  EXPECT_EQ(CountCrossings(lines, 3), 1 * 2 + 1 * 3 + 2 * 3);
}

}  // namespace
}  // namespace vndoc6::drawing
