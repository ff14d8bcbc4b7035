// Where the names of files lead to in a page.
#pragma once

#include <string>

#include "vndoc6/automation/text.h"

namespace vndoc6::drawing {

// The address of a file by the name that a document has for it. A relative name is one in `folder`,
// a path as the page sees it, empty for the page's own folder. Web and mail addresses stay as they
// are; whatever else looks like one is a file's name, so that no name can be a script.
std::string AddressOf(const Text& name, const Text& folder = {});

}  // namespace vndoc6::drawing
