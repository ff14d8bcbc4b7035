// Writes the help strings for programs that show members, as `vndoc members` does.
#pragma once

#include <string>

#include "doc_comments.h"

namespace vndoc6 {

// A source file that defines vndoc::HelpOf (hosts/vndoc/help_texts.h).
std::string WriteHelp(const DocComments& comments);

}  // namespace vndoc6
