// Outlines: procedures as a small readable text, from which documents are made.
#pragma once

#include <string_view>

#include "command.h"

namespace vndoc {

// How an outline is written, for --help.
extern const char* const kOutlineHelp;

// Fills a new document. Throws Failure that names the line at fault.
void BuildFromOutline(vnDocument& document, std::string_view outline);

}  // namespace vndoc
