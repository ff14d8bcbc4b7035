// Writing SVG and HTML: texts, numbers and colours as they stand in markup.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vndoc6/automation/text.h"

namespace vndoc6::drawing {

// A text as it may stand in an element or a quoted attribute. What markup cannot hold (control
// characters, lone surrogates) becomes U+FFFD.
std::string Escaped(TextView text);

// At most two digits behind the point, none without need. Infinite and undefined numbers are 0.
std::string Number(double value);

// A colour with red in its low byte, as "#rrggbb".
std::string Colour(int32_t colour);

// An image's file, told by its first bytes. No type: a browser does not show it, only its name.
struct ImageKind {
  const char* type = nullptr;
  double width = 0;  // 0 where the file's beginning does not tell
  double height = 0;
  const char* name = "?";  // of a kind that is not shown
};
ImageKind SniffImage(const std::vector<uint8_t>& bytes);

std::string DataUri(const char* type, const std::vector<uint8_t>& bytes);

}  // namespace vndoc6::drawing
