// A document's text on a terminal: in one line, and without anything that a terminal would obey.
#pragma once

#include <string>

#include "vndoc6/automation/text.h"

namespace vndoc {

// UTF-8, with a space for each run of line ends and control characters.
std::string OneLine(vndoc6::TextView text);

}  // namespace vndoc
