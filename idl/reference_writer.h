// Writes the reference of all that hosts can see, from the member tables and the
// documentation comments.
#pragma once

#include <string>

#include "doc_comments.h"

namespace vndoc6 {

// The whole text of docs/reference.md.
std::string WriteReference(const DocComments& comments);

}  // namespace vndoc6
