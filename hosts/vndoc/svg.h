// Writes a drawing as SVG.
#pragma once

#include <string>

#include "drawing.h"

namespace vndoc {

struct SvgOptions {
  bool grid = false;
  bool page_margins = false;
  // Inside a page: each step is a link to the page's "#step-<n>", its place among the steps.
  bool in_page = false;
};

// A whole SVG document, or with `in_page` an element for a page. What is drawn in the usual black
// on white bears the classes `fill`, `pen` and `ink`, so that a page can give them other colours.
std::string WriteSvg(const Drawing& drawing, const SvgOptions& options);
void AppendSvg(const Drawing& drawing, const SvgOptions& options, std::string& out);

}  // namespace vndoc
