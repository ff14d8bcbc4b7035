// Room for the label of a figure in its shape.
#pragma once

#include <vector>

#include "picture.h"

namespace vndoc6::drawing {

// Where the label of a figure stands; its height is the lines'.
struct SetLabel {
  std::vector<Text> lines;
  Box room;

  double Height(double size) const;
};
SetLabel LabelOf(const Figure& figure);

// Where the title of a container stands that leaves the place to the drawing.
Box TitleRoom(const Figure& container);

// Gives a figure that nobody gave a size one that holds its label.
void FitToLabel(Figure& figure);

// Lets a figure grow around its middle until its label stays inside its shape; one that holds it
// stays as it is.
void GrowToLabel(Figure& figure);

}  // namespace vndoc6::drawing
