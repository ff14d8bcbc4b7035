// A chart on sheets of paper.
#pragma once

#include <vector>

#include "picture.h"

namespace vndoc6::drawing {

// Where a line goes on, on the sheet beyond that side.
struct Connector {
  Point at;  // on the region's side
  Side side = Side::kBottom;
  size_t number = 0;
  size_t row = 0;  // away from the region: neighbours don't stand on each other
};

struct Sheet {
  Box region;  // of the chart
  std::vector<Connector> connectors;
};

struct Sheets {
  Point paper;  // pixels
  double scale = 1;
  std::vector<Sheet> sheets;  // row by row
};

constexpr double kSheetMargin = 48;  // with the connectors, the heading and the number

// As few sheets as hold the chart with letters of 8 points at least, upright or not, cut where no
// step is, as far as there is such a place.
Sheets FindSheets(const Drawing& drawing, Paper paper);

}  // namespace vndoc6::drawing
