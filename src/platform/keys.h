// Unique keys.
#pragma once

#include "automation/text.h"

namespace vndoc6::platform {

// A new unique key: a random GUID (RFC 4122, version 4) in braces, upper case.
Text NewKey();

}  // namespace vndoc6::platform
