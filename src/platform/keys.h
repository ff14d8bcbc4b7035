// Unique keys.
#pragma once

#include "vndoc6/automation/text.h"

namespace vndoc6::platform {

// A new unique key: a random GUID (RFC 4122, version 4) in braces, upper case. No thread, process
// or forked process gets one that another has. Raises error 5 when the system gives no random
// numbers.
Text NewKey();

}  // namespace vndoc6::platform
