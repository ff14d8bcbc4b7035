// vndoc new: makes a document, empty or from an outline.
#include <filesystem>
#include <memory>

#include "command.h"
#include "outline_reader.h"

namespace vndoc {
namespace {

struct NewOptions {
  std::string file;
  std::string outline;
  bool force = false;
};

void MakeDocument(Context& context, const NewOptions& options) {
  if (!options.force && std::filesystem::exists(options.file)) {
    throw Failure(options.file + ": is there already; --force replaces it");
  }
  const auto document = vndoc6::automation::Make<vnDocument>();
  if (!options.outline.empty()) {
    try {
      BuildFromOutline(*document, ReadBytes(context, options.outline));
    } catch (const Failure& failure) {
      throw Failure(options.outline + ": " + failure.what());
    }
  }
  SaveAs(context, *document, options.file);
}

}  // namespace

void AddNew(CLI::App& app, Context& context) {
  auto* const command = app.add_subcommand("new", "Makes a document, empty or from an outline");
  const auto options = std::make_shared<NewOptions>();
  command->add_option("FILE", options->file, "The document to make")->required();
  command->add_option("--from", options->outline, "Make it from this outline; - is standard input")
      ->type_name("OUTLINE");
  command->add_flag("--force", options->force, "Replace a file that is there");
  command->footer(kOutlineHelp);
  command->callback([options, &context] { MakeDocument(context, *options); });
}

}  // namespace vndoc
