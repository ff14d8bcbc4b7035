// The temporary save: the companion file that keeps the last saved state while a new one is
// written.
#pragma once

#include "vndoc6/automation/text.h"

namespace vndoc6 {

// "plan.vn6" and "plan.vnc" have "plan.~vnc"; any other name gets ".~vnc" appended.
Text TempSaveName(const Text& file_name);

}  // namespace vndoc6
