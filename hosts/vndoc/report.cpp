// vndoc report: a document as one page of HTML.
#include <memory>

#include "command.h"
#include "vndoc6/drawing.h"

namespace vndoc {

void AddReport(CLI::App& app, Context& context) {
  struct ReportOptions {
    std::string file;
    std::string output;
  };
  auto* command = app.add_subcommand("report", "Writes a document as one page of HTML");
  const auto options = std::make_shared<ReportOptions>();
  command->add_option("FILE", options->file, "The document")->required();
  command->add_option("-o,--output", options->output, "The page to write; - for standard output")
      ->required();
  command->callback([options, &context] {
    const auto document = Load(context, options->file);
    WriteBytes(context, options->output, vndoc6::drawing::Html(*document));
  });
}

}  // namespace vndoc
