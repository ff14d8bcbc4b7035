// Writes the reference of all that hosts can see, from the member tables.
#pragma once

#include <string>

namespace vndoc6 {

// The whole text of docs/reference.md.
std::string WriteReference();

}  // namespace vndoc6
