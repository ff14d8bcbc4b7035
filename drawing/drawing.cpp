#include "vndoc6/drawing.h"

#include <algorithm>

#include "label.h"
#include "page.h"
#include "svg.h"
#include "write_places.h"

namespace vndoc6::drawing {

namespace {

Drawing Read(vnDocument& document, const SvgOptions& options) {
  return ReadDrawing(document, {options.lanes != Lanes::kNone, options.direction, options.lanes});
}

}  // namespace

std::string Svg(vnDocument& document, const SvgOptions& options) {
  return WriteSvg(Read(document, options), options);
}

std::vector<std::string> SvgPages(vnDocument& document, const SvgOptions& options) {
  return WriteSheets(Read(document, options), options);
}

std::string Html(vnDocument& document, const HtmlOptions& options) {
  return WritePage(document, options);
}

LaidOut Layout(vnDocument& document, const LayoutOptions& options) {
  return WritePlaces(ReadDrawing(document, {options.all, options.direction, Lanes::kNone}),
                     document);
}

Extent Measure(std::u16string_view text, const Font& font) {
  Extent extent;
  constexpr double kUnlimited = 1e9;
  for (const Text& line : WrapText(text, kUnlimited, font.bold)) {
    extent.width = std::max(extent.width, TextWidth(line, font.bold) * font.size);
    extent.height += font.size * kLineHeight;
  }
  return extent;
}

}  // namespace vndoc6::drawing
