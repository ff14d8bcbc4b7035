// vndoc render: the chart of a document as a picture.
#include <cctype>
#include <filesystem>
#include <map>
#include <memory>
#include <ostream>
#include <vector>

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

// "chart.svg" as "chart-2.svg".
std::string NameOfSheet(const std::string& output, size_t number) {
  const std::filesystem::path name(output);
  const std::string file =
      name.stem().string() + "-" + std::to_string(number) + name.extension().string();
  return (name.parent_path() / file).string();
}

// One file with all sheets where the kind has pages; else a file for each.
void WriteSheets(Context& context, const RenderOptions& options, const std::string& kind,
                 const vndoc6::drawing::SvgOptions& svg_options) {
  const std::vector<std::string> sheets =
      vndoc6::drawing::SvgPages(*Load(context, options.file), svg_options);
  if (kind == "pdf") return WriteOutput(context, options.output, ConvertSheets(sheets));
  const auto converted = [&](const std::string& svg) {
    return kind == "svg" ? svg : ConvertSvg(svg, kind);
  };
  if (sheets.size() == 1) return WriteOutput(context, options.output, converted(sheets.front()));
  if (options.output == "-") {
    throw Failure("the chart takes " + std::to_string(sheets.size()) +
                  " sheets: give a name with -o, for a file each");
  }
  for (size_t i = 0; i < sheets.size(); ++i) {
    const std::string name = NameOfSheet(options.output, i + 1);
    WriteOutput(context, name, converted(sheets[i]));
    context.out << name << '\n';
  }
}

template <class T>
CLI::CheckedTransformer Names(std::map<std::string, T> names) {
  return CLI::CheckedTransformer(std::move(names), CLI::ignore_case);
}

// What the chart looks like.
void AddLooks(CLI::App& command, vndoc6::drawing::SvgOptions& svg) {
  using vndoc6::drawing::Direction, vndoc6::drawing::Lanes, vndoc6::drawing::Paper,
      vndoc6::drawing::Theme;
  command
      .add_option("--direction", svg.direction,
                  "Where the next steps stand, of those without a place: down or right")
      ->transform(Names<Direction>({{"down", Direction::kDown}, {"right", Direction::kRight}}))
      ->option_text("down|right");
  command
      .add_option("--lanes", svg.lanes,
                  "A lane for each role or container; all steps are placed anew")
      ->transform(Names<Lanes>({{"role", Lanes::kRole}, {"container", Lanes::kContainer}}))
      ->option_text("role|container");
  command
      .add_option("--theme", svg.theme, "Colours as in the document, on dark, or black on white")
      ->transform(Names<Theme>(
          {{"light", Theme::kLight}, {"dark", Theme::kDark}, {"print", Theme::kPrint}}))
      ->option_text("light|dark|print");
  command.add_flag("--title", svg.title, "Put the document's title and revision above the chart");
  command.add_flag("--legend", svg.legend, "Name the shapes that are used below the chart");
}

void Render(Context& context, const RenderOptions& options) {
  constexpr double kForPrint = 2;  // an image of points, for clear print
  const std::string kind = KindOf(options);
  vndoc6::drawing::SvgOptions svg_options = options.svg;
  if (options.svg.paper != vndoc6::drawing::Paper::kNone) {
    return WriteSheets(context, options, kind, svg_options);
  }
  svg_options.scale = options.scale > 0 ? options.scale : kind == "png" ? kForPrint : 1;
  const std::string svg = vndoc6::drawing::Svg(*Load(context, options.file), svg_options);
  WriteOutput(context, options.output, kind == "svg" ? svg : ConvertSvg(svg, kind));
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
  command->add_flag("--force", context.force, "Replace a file of another kind");
  command->add_flag("--png", options->png,
                    "Write PNG to a name without an ending, or to standard output");
  auto* const scale =
      command->add_option("--scale", options->scale, "The size, 1 as usual; 2 for PNG")
          ->check(CLI::Range(0.01, 100.0));
  auto* const width =
      command->add_option("--width", options->svg.width, "The picture's width in pixels")
          ->check(CLI::Range(1.0, 100000.0))
          ->excludes(scale);
  command
      ->add_option("--paper", options->svg.paper,
                   "Sheets of paper with letters of 8 points at least: one .pdf, or a file each")
      ->transform(Names<vndoc6::drawing::Paper>({{"a4", vndoc6::drawing::Paper::kA4},
                                                 {"a3", vndoc6::drawing::Paper::kA3},
                                                 {"letter", vndoc6::drawing::Paper::kLetter}}))
      ->option_text("a4|a3|letter")
      ->excludes(scale)
      ->excludes(width);
  AddLooks(*command, options->svg);
  command->add_flag("--grid", options->svg.grid, "Draw the chart's grid");
  command->add_flag("--page-margins", options->svg.page_margins, "Draw where the pages end");
  command->footer("PNG and PDF need rsvg-convert (Debian: librsvg2-bin).");
  command->callback([options, &context] { Render(context, *options); });
}

}  // namespace vndoc
