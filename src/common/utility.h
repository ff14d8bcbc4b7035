// The shared utility object: the small services that every class needs.
#pragma once

#include <cstdint>

#include "automation/text.h"

namespace vndoc6::common {

// A new unique key: a random GUID (RFC 4122, version 4) in braces, upper case.
Text NewKey();

// `value`, brought into the range `low` to `high`.
int32_t Limit(int32_t value, int32_t low, int32_t high);

}  // namespace vndoc6::common
