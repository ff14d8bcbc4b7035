// vndoc layout: places for the steps that have none, in the document itself.
#include <map>
#include <memory>
#include <ostream>
#include <sstream>

#include "command.h"
#include "vndoc6/drawing.h"
#include "vndoc6/process/steps.h"

namespace vndoc {
namespace {

struct LayoutCommandOptions {
  std::string file;
  std::string output;
  vndoc6::drawing::LayoutOptions layout;
};

std::string Counted(size_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

void TellWhatMoved(const vndoc6::drawing::LaidOut& moved, vnDocument& document, std::ostream& out) {
  if (moved.steps.empty() && moved.links.empty() && moved.containers.empty()) {
    out << "Every step has a place; nothing was moved.\n";
    return;
  }
  out << "Placed " << Counted(moved.steps.size(), "step") << ", "
      << Counted(moved.links.size(), "link") << " and "
      << Counted(moved.containers.size(), "container") << ".\n";
  const auto steps = document.Steps();
  if (moved.steps.size() == static_cast<size_t>(steps->Count())) return;
  for (const size_t number : moved.steps) {
    const auto step = steps->Item(vndoc6::automation::Variant(static_cast<int32_t>(number)));
    out << "Steps/" << number << "  " << vndoc6::automation::ToUtf8(step->Label()) << '\n';
  }
}

void LayOut(Context& context, const LayoutCommandOptions& options) {
  // Told when it is saved.
  std::ostringstream told;
  const auto lay_out = [&](vnDocument& document) {
    const auto moved = vndoc6::drawing::Layout(document, options.layout);
    TellWhatMoved(moved, document, told);
    return !moved.steps.empty() || !moved.links.empty() || !moved.containers.empty();
  };
  if (options.output.empty()) {
    ChangeDocument(context, options.file, lay_out);
  } else {
    const auto document = Load(context, options.file);
    lay_out(*document);
    SaveAs(context, *document, options.output);
  }
  context.out << told.str();
}

}  // namespace

void AddLayout(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("layout", "Gives steps their places in the chart");
  const auto options = std::make_shared<LayoutCommandOptions>();
  command->add_option("FILE", options->file, "The document")->required();
  command->add_flag("--all", options->layout.all,
                    "Place all steps anew, also those that have a place");
  command
      ->add_option("--direction", options->layout.direction,
                   "Where the next steps stand: down or right")
      ->transform(CLI::CheckedTransformer(
          std::map<std::string, vndoc6::drawing::Direction>{
              {"down", vndoc6::drawing::Direction::kDown},
              {"right", vndoc6::drawing::Direction::kRight}},
          CLI::ignore_case))
      ->option_text("down|right");
  command->add_option("-o,--output", options->output, "Save under this name instead");
  AddForce(*command, context);
  command->footer(
      "Writes what `render` draws into the document: the places of steps and containers that "
      "nobody\n"
      "placed, and the bends of lines without points. Every editor then shows the same chart.");
  command->callback([options, &context] { LayOut(context, *options); });
}

}  // namespace vndoc
