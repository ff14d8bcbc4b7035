// vndoc show: what is in a document, for people or as JSON.
#include <iostream>
#include <memory>

#include "command.h"
#include "details/details.h"

namespace vndoc {
namespace {

struct ShowOptions {
  std::string file;
  bool json = false;
};

}  // namespace

void AddShow(CLI::App& app, Context& context) {
  auto* command = app.add_subcommand("show", "Shows what is in a document");
  const auto options = std::make_shared<ShowOptions>();
  command->add_option("FILE", options->file, "The document")->required();
  command->callback([options, &context] {
    const auto document = Load(context, options->file);
    context.out << vndoc6::automation::ToUtf8(document->Details()->Title()) << '\n';
  });
}

}  // namespace vndoc
