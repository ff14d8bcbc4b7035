// What the shapes of figures look like.
#pragma once

#include <string>

#include "geometry.h"
#include "model.h"

namespace vndoc6::drawing {

// How far something stays from the sides of a figure, as parts of its extent.
struct Insets {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};

// A shape in the unit square: paths of the commands M, L, Q, C, A and Z, in capitals.
struct Outline {
  EnumVantrelShapes shape;
  const char* name;    // what readers call it
  const char* border;  // filled and drawn
  const char* detail;  // drawn on top; may be empty
  Insets text;         // where the label has room
  Insets ends;         // where lines end in the middle of each side
  double corner = 0;   // above 0: a rectangle, its corners rounded by this part of the short side
};

// The outline of a shape; a rectangle for a number that is none.
const Outline& OutlineOf(int shape);

// A path of the outline, turned by quarters clockwise, at its place in the drawing.
std::string PathData(const char* path, const Box& box, int quarters);

// The point in the middle of a side where lines end.
Point EndPoint(const Outline& outline, const Box& box, int quarters, Side side);

// Where a line that comes level or upright to a side meets the outline: `at` is its place on the
// side of the box.
Point MeetBorder(const Outline& outline, const Box& box, int quarters, Side side, Point at);

// True when a line of text lies between the left and the right side of the outline.
bool HoldsLine(const Outline& outline, const Box& box, int quarters, const Box& line);

// True when the lower side is a corner, and lines had better leave at corners.
bool HasCorners(const Outline& outline, int quarters);

// The part of the box that the label has.
Box TextBox(const Outline& outline, const Box& box, int quarters);

}  // namespace vndoc6::drawing
