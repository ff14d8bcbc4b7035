// Writes a drawing as SVG.
#pragma once

#include <string>

#include "picture.h"
#include "vndoc6/drawing.h"

namespace vndoc6::drawing {

// A whole document, or an element for a page, in which each step is a link to the page's
// "#step-<n>", its place among the steps.
enum class SvgKind { kDocument, kInPage };

// What is drawn in the usual black on white bears the classes `fill`, `pen` and `ink`, so that a
// page can give them other colours.
// The sheets of the options' paper.
std::vector<std::string> WriteSheets(const Drawing& drawing, const SvgOptions& options);
std::string WriteSvg(const Drawing& drawing, const SvgOptions& options);
void AppendSvg(const Drawing& drawing, const SvgOptions& options, SvgKind kind, std::string& out);

}  // namespace vndoc6::drawing
