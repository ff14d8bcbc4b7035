// Places for the steps that have none: all of them at once, or near what they are linked to.
#pragma once

#include <unordered_map>
#include <vector>

#include "layout/layout.h"
#include "picture.h"

namespace vndoc6::drawing {

struct StepToPlace {
  bool unplaced = false;
  bool usual_size = false;  // it gets room for its label and its lines
  Text group;               // the key of its container; may be empty
};

struct LinkToPlace {
  size_t from = 0;  // among the steps
  size_t to = 0;
  double label_width = 0;
  double label_height = 0;
  std::vector<Point> points;  // its own; empty when it has none
};

struct GroupToPlace {
  double title_width = 0;
  bool placed = false;
  Box box;  // of one that is placed
};

struct PlacedSteps {
  std::vector<std::vector<Point>> lines;  // by link; empty for those that get none here
  std::unordered_map<Text, Box> frames;   // of groups
};

// Gives each unplaced step its box. When none has a place they are laid out as a whole. Otherwise
// those that hang together stand beside the placed ones that they are linked to, or share a
// container with, as near as there is room; the rest stands below. What is placed stays.
PlacedSteps PlaceSteps(std::vector<Figure>& figures, const std::vector<StepToPlace>& steps,
                       const std::vector<LinkToPlace>& links,
                       const std::unordered_map<Text, GroupToPlace>& groups,
                       const LayoutStyle& style);

}  // namespace vndoc6::drawing
