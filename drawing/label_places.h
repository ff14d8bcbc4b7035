// Where the labels of lines stand that no layout has placed.
#pragma once

#include "picture.h"

namespace vndoc6::drawing {

// Gives each label that has no place one beside its line, near the line's beginning, where it
// covers no step, no other line and no other label, if there is such a place. A label whose part of
// the line the document chose stands in the middle of that part, on the line.
void PlaceLabels(Drawing& drawing);

}  // namespace vndoc6::drawing
