// The table behind FoldCodePoint: Unicode simple case folding, rows in ascending order.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vndoc6::automation {

// Folds first, first + step, ... last to the code point that lies `delta` further.
struct CaseFoldingRow {
  uint32_t first;
  uint32_t last;
  uint32_t step;
  int32_t delta;
};

extern const CaseFoldingRow kCaseFolding[];
extern const size_t kCaseFoldingRows;

}  // namespace vndoc6::automation
