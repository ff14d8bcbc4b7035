// Which band of a layout each group and each box stands in.
#pragma once

#include <vector>

#include "layers.h"

namespace vndoc6::drawing {

// Chooses the bands of all cells: of the boxes in groups first, then of the others, which stand
// near those they are joined with as far as a group leaves room.
void ChooseBands(Layering& layering, const std::vector<size_t>& groups);

}  // namespace vndoc6::drawing
