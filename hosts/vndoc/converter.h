// The program that turns SVG into PNG, where there is one.
#pragma once

#include <string>

namespace vndoc {

// The PNG file of an SVG document, at twice its size for clear print. Throws Failure when no
// converter is installed, or when it fails.
std::string PngOfSvg(const std::string& svg);

}  // namespace vndoc
