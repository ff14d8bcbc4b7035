// The report: a document as one page of HTML that needs nothing else.
#pragma once

#include <string>
#include <string_view>

#include "model.h"

namespace vndoc6::drawing {

std::string WritePage(vnDocument& document);

// What every page carries along: page.css and page.js, which the build takes in.
extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;

}  // namespace vndoc6::drawing
