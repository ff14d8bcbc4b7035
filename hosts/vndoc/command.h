// What the commands of vndoc share. A command is one file with a function that adds its subcommand
// to the command line; commands.cpp lists those functions.
//
// To add a command: write AddThing(CLI::App&, Context&) in thing.cpp, declare it below, and give
// it a row in commands.cpp. Help, completion and the manual page follow from what it adds.
#pragma once

#include <CLI/App.hpp>
#include <functional>
#include <iosfwd>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "vndoc6/document/document.h"

namespace vndoc {

using vndoc6::Text;
using vndoc6::TextView;
using vndoc6::vnDocument;
using vndoc6::automation::Ref;

// Exit statuses. Scripts rely on them: never change one.
enum Status : int {
  kDone = 0,
  kFindings = 1,  // check found something; diff found a difference; not all could be read
  kFailed = 2,    // unreadable, not written, or a wrong command line
};

// What ends the program with one line on standard error and status 2.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// What was answered for a file and told of it: once is enough, however often it is loaded.
struct SaidOfFile {
  std::optional<std::string> password;
  std::optional<std::string> write_password;
  bool newer_version = false;
  bool not_read = false;
};

// The streams and the options that all commands share.
struct Context {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  bool on_terminal = false;  // a person sees `err` and can be asked
  std::optional<std::string> password;
  std::optional<std::string> write_password;
  bool progress = false;
  int status = kDone;  // what the command ends with
  std::map<std::string, SaidOfFile> said = {};
  bool force = false;  // change documents of which not all can be read
};

// The document of a file, with the passwords of the context or of a prompt. Throws Failure when it
// can't be loaded. Write access is asked for when `to_write` is set. When not all of it could be
// read, says so, and what to type, and sets the status; with `to_write` that is a Failure, unless
// the context says otherwise.
Ref<vnDocument> Load(Context& context, const std::string& file, bool to_write = false);
// Loads a document to write, changes it and saves it, if `change` gives true. Other processes wait
// meanwhile; what one of them has saved is loaded before the change.
void ChangeDocument(Context& context, const std::string& file,
                    const std::function<bool(vnDocument&)>& change);
// The document of a text that was made of a file; passwords are asked for as for that file.
Ref<vnDocument> LoadText(Context& context, std::string_view text, const std::string& file);
// Puts the document's temporary save in its place, in the same way, also where the document is
// gone. When that fails, both are as they were.
void TakeTempSave(Context& context, const std::string& file);
// Gives write access when the context's write password is the document's.
void UseWritePassword(const Context& context, vnDocument& document);
// Saves under the document's own name, or under another. Throws Failure when that is not possible;
// the file is then as it was.
void Save(Context& context, vnDocument& document);
void SaveAs(Context& context, vnDocument& document, const std::string& file);

// All bytes of a text file, or of standard input for "-", without a byte order mark. Throws
// Failure.
std::string ReadBytes(Context& context, const std::string& file);
// Puts a whole file in its place in one step, or writes to standard output for "-". Throws Failure.
void WriteBytes(Context& context, const std::string& file, std::string_view bytes);
// The same for a picture or a page. What is there must be one of the same kind, unless the command
// is given --force. Throws Failure.
void WriteOutput(Context& context, const std::string& file, std::string_view bytes);
// The same for a document, while no other process changes that.
void WriteDocument(Context& context, const std::string& file, std::string_view bytes);

// Each adds one subcommand, whose callback works on the context and may throw Failure or an
// automation error.
void AddForce(CLI::App& command, Context& context);  // an option of several
void AddCheck(CLI::App& app, Context& context);
void AddCompletion(CLI::App& app, Context& context);
void AddDiff(CLI::App& app, Context& context);
void AddEdit(CLI::App& app, Context& context);
void AddFromJson(CLI::App& app, Context& context);
void AddLayout(CLI::App& app, Context& context);
void AddManualPage(CLI::App& app, Context& context);
void AddMembers(CLI::App& app, Context& context);
void AddNew(CLI::App& app, Context& context);
void AddRecover(CLI::App& app, Context& context);
void AddRender(CLI::App& app, Context& context);
void AddReport(CLI::App& app, Context& context);
void AddShow(CLI::App& app, Context& context);

// The whole program but for its process: parses, runs the command, gives the exit status.
int Run(int argc, const char* const* argv, Context& context);
// The command line with all its commands. What is parsed goes into the context.
void AddCommands(CLI::App& app, Context& context);

}  // namespace vndoc
