// The report: a document as one page of HTML that needs nothing else.
#pragma once

#include <string>
#include <string_view>

#include "model.h"
#include "vndoc6/drawing.h"

namespace vndoc6::drawing {

std::string WritePage(vnDocument& document, const HtmlOptions& options = {});

// What pages carry along: page.css, page.js, print.js and site.js, which the build takes in.
extern const std::string_view kPageStyle;
extern const std::string_view kPageScript;
extern const std::string_view kPrintScript;
extern const std::string_view kSiteScript;

}  // namespace vndoc6::drawing
