// Files that are put aside before something takes their place.
#pragma once

#include "vndoc6/automation/text.h"

namespace vndoc6 {

// What is put aside of "plan.vn6" is named "plan.vn6.aside-1", "plan.vn6.aside-2" and so on. Hosts
// look for these names: never change them.
inline constexpr TextView kAsideEnding = u".aside-";

// Copies a file to the first of these names that nothing has; the copy is on the disk then. False
// when that can't be done.
bool PutAside(const Text& file);

}  // namespace vndoc6
