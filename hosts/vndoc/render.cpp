// vndoc render: the chart of a document as a picture.
#include <memory>

#include "command.h"
#include "converter.h"
#include "vndoc6/drawing.h"

namespace vndoc {
namespace {

struct RenderOptions {
  std::string file;
  std::string output;
  bool png = false;
  vndoc6::drawing::SvgOptions svg;
};

void Render(Context& context, const RenderOptions& options) {
  const std::string svg = vndoc6::drawing::Svg(*Load(context, options.file), options.svg);
  WriteBytes(context, options.output, options.png ? PngOfSvg(svg) : svg);
}

}  // namespace

void AddRender(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("render", "Draws the chart of a document");
  const auto options = std::make_shared<RenderOptions>();
  command->add_option("FILE", options->file, "The document")->required();
  command->add_option("-o,--output", options->output, "The picture to write; - for standard output")
      ->required();
  command->add_flag("--png", options->png,
                    "Write PNG instead of SVG; needs rsvg-convert (Debian: librsvg2-bin)");
  command->add_flag("--grid", options->svg.grid, "Draw the chart's grid");
  command->add_flag("--page-margins", options->svg.page_margins, "Draw where the pages end");
  command->callback([options, &context] { Render(context, *options); });
}

}  // namespace vndoc
