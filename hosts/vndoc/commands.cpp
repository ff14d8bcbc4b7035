#include "command.h"

namespace vndoc {

void AddCommands(CLI::App& app, Context& context) {
  static constexpr void (*kCommands[])(CLI::App&, Context&) = {
      &AddNew, &AddRender, &AddReport, &AddShow, &AddEdit, &AddMembers,
  };
  for (const auto add : kCommands) add(app, context);
}

}  // namespace vndoc
