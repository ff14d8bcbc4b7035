// Drawing documents: the chart as SVG, the report as HTML, the automatic layout. Everything is read
// through the model's published members. The same document gives the same bytes everywhere: no
// fonts are looked up, widths of letters are estimated, on the wide side.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vndoc6 {
class vnDocument;
}

namespace vndoc6::drawing {

struct SvgOptions {
  bool grid = false;          // the chart's grid
  bool page_margins = false;  // where the chart's pages end
  double scale = 1;           // of the picture's size
  double width = 0;           // the picture's width in pixels; 0 leaves it to the scale
};

// The chart as a whole SVG document, in UTF-8. Steps that were never given a place, when there are
// several, are laid out below those that were; a line without points of its own is given a way.
// The document stays as it is.
std::string Svg(vnDocument& document, const SvgOptions& options = {});

struct HtmlOptions {};

// The report: the document as one page of HTML that needs nothing else, in UTF-8.
std::string Html(vnDocument& document, const HtmlOptions& options = {});

struct LayoutOptions {
  // Steps that have a place, and lines that have points, get new ones as well.
  bool all = false;
};

// What a layout has placed: the numbers of steps, links and containers among the document's own,
// from 1 on, ascending.
struct LaidOut {
  std::vector<size_t> steps;
  std::vector<size_t> links;
  std::vector<size_t> containers;
};

// Writes the places and the lines' points that Svg would draw into the document: those of steps and
// containers without a place, and of the lines between such steps. From then on it draws the same,
// here and in any editor. The document reports each change and is not saved.
LaidOut Layout(vnDocument& document, const LayoutOptions& options = {});

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
