// A document's chart as it is drawn: everything in pixels and in place, read through the model's
// public interface.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "geometry.h"
#include "model.h"
#include "outlines.h"
#include "vndoc6/drawing.h"

namespace vndoc6::drawing {

// The model's drawing units are twips: 15 make a pixel.
constexpr double kTwipsPerPixel = 15;

struct TextFont {
  Text family;
  double size = 12;
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strikethrough = false;
};

// Styles: 0 solid, 1 dashes, 2 dots, 3 dashes and dots, 4 dashes and two dots, 5 none; any other
// is solid.
struct Pen {
  int32_t colour = 0;
  double width = 1;
  int32_t style = 0;
};

// Places in a box: 0 to 2 on the left, 3 to 5 on the right, 6 to 8 in the middle, each at the top,
// in the middle and at the bottom; any other number leaves it to the drawing.
struct Figure {
  size_t step = 0;  // its place among the document's steps, from 1 on; 0 for a container
  Text label;
  Text tooltip;
  Box box;
  const Outline* outline = nullptr;
  int quarters = 0;  // turned clockwise
  bool filled = true;
  int32_t fill = 0xFFFFFF;
  Pen pen;
  int32_t text_colour = 0;
  TextFont font;
  int32_t alignment = 7;
  Point margin;
  bool shadow = false;
  std::vector<uint8_t> picture;
  int32_t picture_position = 9;
  int32_t z_order = 0;
  Text jumps;             // where its jumps lead, one on a line
  size_t container = 0;   // of a container: its place among the document's, from 1 on; 0: a lane
  Point title_at;         // of a container: where its title begins; {0, 0} leaves it to the drawing
  bool laid_out = false;  // its place is not the document's
};

// Arrow kinds: 0 none, 1 open, 2 a diamond, 4 a dot; any other a filled tip. Sizes: 0 middling,
// 1 small, 2 large.
struct Arrow {
  int32_t kind = 0;
  int32_t size = 0;
};

struct Line {
  size_t link = 0;  // its place among the document's links, from 1 on
  size_t from = 0;  // places among the steps, as in Figure
  size_t to = 0;
  Text label;
  Text tooltip;
  std::vector<Point> points;
  bool curved = false;
  bool hops = false;  // over lines that it crosses
  Pen pen;
  Arrow orig, mid, dest;
  int32_t text_segment = 0;  // the part that bears the label, from 1 on; 0 for the longest
  int32_t text_colour = 0;
  TextFont font;
  bool opaque = true;     // the label covers the line
  Box label_box;          // where the label stands; of no width without a label
  bool laid_out = false;  // its points are not the document's
  int32_t z_order = 0;
};

struct Drawing {
  Text title;
  Text description;
  float revision = 0;
  Box extent;
  int32_t back_colour = 0xFFFFFF;
  int32_t shadow_colour = 0;
  Point shadow_offset;
  bool ellipsis = false;  // labels are cut where their shape ends, not where their box ends
  Point grid;
  int32_t grid_colour = 0;
  Point page;
  int32_t page_colour = 0;
  std::vector<uint8_t> picture;
  // In the order in which they are drawn.
  std::vector<Figure> containers;
  std::vector<Line> lines;
  std::vector<Figure> steps;
};

struct ReadOptions {
  // No place and no point of the document counts. Lanes need it.
  bool all_anew = false;
  Direction direction = Direction::kDown;
  Lanes lanes = Lanes::kNone;
};

// Steps that were never given a place, when there are several, are laid out, near the placed ones
// that they are linked to. Lines without coordinates are given a way. Hidden figures and lines are
// left out, and so are lines that join no two drawn steps.
Drawing ReadDrawing(vnDocument& document, const ReadOptions& options = {});

}  // namespace vndoc6::drawing
