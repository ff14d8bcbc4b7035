// The program that turns SVG into PNG and PDF, where there is one.
#pragma once

#include <string>
#include <vector>

namespace vndoc {

// The file of a kind ("png", "pdf") that shows an SVG document at its own size. Throws Failure when
// no converter is installed, or when it fails, with the reason that it gives.
std::string ConvertSvg(const std::string& svg, const std::string& kind);

// One PDF with a page for each SVG document. Throws Failure in the same way.
std::string ConvertSheets(const std::vector<std::string>& sheets);

}  // namespace vndoc
