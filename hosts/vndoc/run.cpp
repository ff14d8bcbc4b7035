// The program: its command line, its errors and its exit status.
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "command.h"
#include "one_line.h"
#include "vndoc6/automation/error.h"

namespace vndoc {
namespace {

constexpr const char* kAbout =
    "Looks at, checks, converts and changes process documents (.vn6, .vn6t).";
constexpr const char* kExitStatus =
    "Exit status: 0 done, 1 something was found (check), differs (diff), was lost (recover) or "
    "could\n"
    "not be read, 2 the document can't be read or written, or the command line is wrong.";

void AddCommonOptions(CLI::App& app, Context& context) {
  app.add_option("--password", context.password, "The password to read the document with")
      ->envname("VNDOC_PASSWORD")
      ->type_name("TEXT");
  app.add_option("--write-password", context.write_password,
                 "The password to change the document with")
      ->envname("VNDOC_WRITE_PASSWORD")
      ->type_name("TEXT");
  app.add_flag("--progress", context.progress,
               "Show a bar while loading and saving, when a terminal is there to see it");
}

int Report(Context& context, const std::string& what) {
  // Names and values in it may come from anywhere.
  context.err << "vndoc: " << OneLine(vndoc6::automation::FromUtf8(what)) << '\n';
  return kFailed;
}

int ParseAndRun(int argc, const char* const* argv, Context& context) {
  CLI::App app(kAbout, "vndoc");
  app.footer(kExitStatus);
  app.require_subcommand(1);
  app.set_version_flag("--version", "vndoc " VNDOC6_VERSION);
  app.fallthrough();
  AddCommonOptions(app, context);
  AddCommands(app, context);
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& wanted) {
    return app.exit(wanted, context.out, context.err);
  } catch (const CLI::ParseError& error) {
    const std::vector<std::string> not_understood = app.remaining();
    if (app.get_subcommands().empty() && !not_understood.empty()) {
      const std::string& first = not_understood.front();
      const char* const kind = first.starts_with('-') ? "option" : "command";
      return Report(context,
                    std::string("there is no ") + kind + " '" + first + "'; see vndoc --help");
    }
    return Report(context, std::string(error.what()) + "; see vndoc --help");
  }
  return context.status;
}

}  // namespace

int Run(int argc, const char* const* argv, Context& context) {
  int status = kFailed;
  try {
    status = ParseAndRun(argc, argv, context);
  } catch (const Failure& failure) {
    status = Report(context, failure.what());
  } catch (const vndoc6::automation::Error& error) {
    status = Report(context, vndoc6::automation::ToUtf8(error.description()));
  } catch (const std::bad_alloc&) {
    status = Report(context, "out of memory");
  }
  // A reader that went away or a full disk shows at the latest here.
  if (!context.out.flush() && status != kFailed) {
    status = Report(context, "the output can't be written");
  }
  return status;
}

}  // namespace vndoc
