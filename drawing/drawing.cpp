#include "vndoc6/drawing.h"

#include <algorithm>

#include "label.h"
#include "page.h"
#include "svg.h"
#include "write_places.h"

namespace vndoc6::drawing {

std::string Svg(vnDocument& document, const SvgOptions& options) {
  return WriteSvg(ReadDrawing(document), options);
}

std::string Html(vnDocument& document, const HtmlOptions& options) {
  return WritePage(document, options);
}

LaidOut Layout(vnDocument& document, const LayoutOptions& options) {
  const Places places = options.all ? Places::kAllAnew : Places::kOfDocument;
  return WritePlaces(ReadDrawing(document, places), document);
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
