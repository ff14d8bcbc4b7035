#include "chart_frame.h"

#include "page_markup.h"

namespace vndoc6::drawing {
namespace {

std::string Button(const char* action, const char* shown, const char* name) {
  std::string attributes = std::string(" type=\"button\" data-zoom=\"") + action + "\"";
  if (name != nullptr) attributes += std::string(" aria-label=\"") + name + "\"";
  return Element("button", shown, attributes);
}

constexpr std::string_view kFrame = "<div id=\"chart-frame\"";

}  // namespace

void BeginChartFrame(const Words& words, const char* name, std::string& out) {
  const std::string buttons =
      Button("out", "&#8722;", words(Word::kZoomOut)) + Button("in", "+", words(Word::kZoomIn)) +
      Button("full", "100 %", nullptr) + Button("fit", words(Word::kFit), nullptr) +
      "<output id=\"zoom\" aria-live=\"polite\"></output>";
  out += Element(
      "div", buttons,
      std::string(" class=\"tools\" role=\"toolbar\" aria-label=\"") + words(Word::kZoom) + "\"");
  out.append("\n").append(kFrame).append(" role=\"region\" tabindex=\"0\" aria-label=\"");
  out.append(name).append("\" data-page=\"").append(words(Word::kPrintedPage)).append("\">");
}

// The line ends between elements go: a browser keeps each of them.
void EndChartFrame(std::string& out) {
  size_t to = out.rfind(kFrame);
  for (size_t from = to; from < out.size(); ++from) {
    const bool between =
        out[from] == '\n' && out[from - 1] == '>' && from + 1 < out.size() && out[from + 1] == '<';
    if (!between) out[to++] = out[from];
  }
  out.resize(to);
  out += "</div>\n";
}

}  // namespace vndoc6::drawing
