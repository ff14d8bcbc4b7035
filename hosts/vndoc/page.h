// The report: a document as one page of HTML that needs nothing else.
#pragma once

#include <string>

#include "document/document.h"

namespace vndoc {

std::string WritePage(vndoc6::vnDocument& document);

// What every page carries along.
extern const char* const kPageStyle;
extern const char* const kPageScript;

}  // namespace vndoc
