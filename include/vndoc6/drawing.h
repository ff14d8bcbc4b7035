// Drawing documents: the chart as SVG, the report as HTML, the automatic layout. Everything is read
// through the model's published members. The same document gives the same bytes everywhere: no
// fonts are looked up, widths of letters are estimated, on the wide side.
#pragma once

#include <string>
#include <string_view>

namespace vndoc6 {
class vnDocument;
}

namespace vndoc6::drawing {

struct SvgOptions {
  bool grid = false;          // the chart's grid
  bool page_margins = false;  // where the chart's pages end
};

// The chart as a whole SVG document, in UTF-8. Steps that were never given a place, when there are
// several, are laid out below those that were; a line without points of its own is given a way.
// The document stays as it is.
std::string Svg(vnDocument& document, const SvgOptions& options = {});

struct HtmlOptions {};

// The report: the document as one page of HTML that needs nothing else, in UTF-8.
std::string Html(vnDocument& document, const HtmlOptions& options = {});

struct Font {
  double size = 12;  // pixels
  bool bold = false;
};

struct Extent {
  double width = 0;
  double height = 0;
};

// The room that a text takes in pixels, as the drawing estimates it. Lines break at line breaks
// only.
Extent Measure(std::u16string_view text, const Font& font = {});

}  // namespace vndoc6::drawing
