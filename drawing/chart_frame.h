// The frame that a page shows a chart in, with its buttons.
#pragma once

#include <string>

#include "page_texts.h"

namespace vndoc6::drawing {

// The frame around the chart, an SVG element that is appended between the two.
void BeginChartFrame(const Words& words, const char* name, std::string& out);
void EndChartFrame(std::string& out);

}  // namespace vndoc6::drawing
