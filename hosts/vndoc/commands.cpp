#include "command.h"

namespace vndoc {

// In the order of --help.
void AddCommands(CLI::App& app, Context& context) {
  static constexpr void (*kCommands[])(CLI::App&, Context&) = {
      &AddNew,  &AddShow, &AddFromJson, &AddRender,  &AddLayout,     &AddReport,     &AddCheck,
      &AddDiff, &AddEdit, &AddMembers,  &AddRecover, &AddCompletion, &AddManualPage,
  };
  for (const auto add : kCommands) add(app, context);
}

}  // namespace vndoc
