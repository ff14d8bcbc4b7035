// Positions, as hosts give them to collections.
#pragma once

#include <cstddef>
#include <optional>

#include "vndoc6/automation/variant.h"

namespace vndoc6::bag {

// The 0-based index that a host's 1-based position names in a collection of `count`; nothing when
// there is no such member, or when the value is no number. Reals round half to even.
inline std::optional<size_t> IndexOfPosition(const automation::Variant& position, size_t count) {
  if (!position.IsNumber()) return std::nullopt;
  const double number = position.ToDouble();
  // A position that no collection can have; the rounding below stays in range.
  if (!(number >= 0.5 && number <= 2147483647.0)) return std::nullopt;
  const auto index = static_cast<size_t>(automation::RoundToLong(number)) - 1;
  if (index >= count) return std::nullopt;
  return index;
}

}  // namespace vndoc6::bag
