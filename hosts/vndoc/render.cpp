// vndoc render: the chart of a document as a picture.
#include <cctype>
#include <filesystem>
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
  double scale = 0;  // 0 for the usual one
  vndoc6::drawing::SvgOptions svg;
};

// What the picture's name asks for: "svg", "png" or "pdf". A name without an ending, "-" as well,
// asks for nothing.
std::string KindOf(const RenderOptions& options) {
  const std::filesystem::path name(options.output);
  std::string ending = name.extension().string();
  for (char& letter : ending) letter = static_cast<char>(std::tolower(letter));
  if (ending.empty()) return options.png ? "png" : "svg";
  for (const char* const kind : {"svg", "png", "pdf"}) {
    if (ending.substr(1) != kind) continue;
    if (options.png && ending != ".png") break;
    return kind;
  }
  throw Failure(options.output + ": a picture is .svg, .png or .pdf" +
                (options.png ? ", and with --png it is .png" : ""));
}

void Render(Context& context, const RenderOptions& options) {
  constexpr double kForPrint = 2;  // an image of points, for clear print
  const std::string kind = KindOf(options);
  vndoc6::drawing::SvgOptions svg_options = options.svg;
  svg_options.scale = options.scale > 0 ? options.scale : kind == "png" ? kForPrint : 1;
  const std::string svg = vndoc6::drawing::Svg(*Load(context, options.file), svg_options);
  WriteBytes(context, options.output, kind == "svg" ? svg : ConvertSvg(svg, kind));
}

}  // namespace

void AddRender(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("render", "Draws the chart of a document");
  const auto options = std::make_shared<RenderOptions>();
  command->add_option("FILE", options->file, "The document")->required();
  command
      ->add_option("-o,--output", options->output,
                   "The picture to write: .svg, .png or .pdf; - for SVG on standard output")
      ->required();
  command->add_flag("--png", options->png,
                    "Write PNG to a name without an ending, or to standard output");
  auto* const scale =
      command->add_option("--scale", options->scale, "The size, 1 as usual; 2 for PNG")
          ->check(CLI::Range(0.01, 100.0));
  command->add_option("--width", options->svg.width, "The picture's width in pixels")
      ->check(CLI::Range(1.0, 100000.0))
      ->excludes(scale);
  command->add_flag("--grid", options->svg.grid, "Draw the chart's grid");
  command->add_flag("--page-margins", options->svg.page_margins, "Draw where the pages end");
  command->footer("PNG and PDF need rsvg-convert (Debian: librsvg2-bin).");
  command->callback([options, &context] { Render(context, *options); });
}

}  // namespace vndoc
