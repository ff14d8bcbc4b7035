// vndoc recover: what can be had from a save that did not complete, or from a damaged file.
#include <memory>
#include <ostream>

#include "command.h"
#include "one_line.h"
#include "vndoc6/content/salvage.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"

namespace vndoc {

using vndoc6::Damage;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::Make;

namespace {

struct RecoverOptions {
  std::string file;
  std::string output;
  bool temp_save = false;
};

constexpr int32_t kTempSaveIsNewer = 2;

std::string Described(const Damage& damage) {
  const std::string place = damage.place.empty() ? "the file" : OneLine(FromUtf8(damage.place));
  const std::string at = " byte " + std::to_string(damage.offset);
  switch (damage.kind) {
    case Damage::Kind::kLost:
      if (damage.size == 0) return "lost: " + place + " from" + at + " on";
      return "lost: " + place + ": " + std::to_string(damage.size) + " bytes from" + at + " on";
    case Damage::Kind::kMissing:
      return "missing: " + place + ": " + damage.keys;
    case Damage::Kind::kUnknown:
      return "not known, and kept: " + place;
    case Damage::Kind::kTwice:
      return "lost: " + place + ", of which there are two";
    case Damage::Kind::kMended:
      return "mended: " + place + " at" + at;
  }
  return {};
}

void SalvageTo(Context& context, const RecoverOptions& options) {
  const vndoc6::Salvaged salvaged = vndoc6::Salvage(ReadBytes(context, options.file));
  if (salvaged.text.empty()) throw Failure(options.file + ": nothing in it can be read");
  const auto document = LoadText(context, salvaged.text, options.file);
  WriteBytes(context, options.output, salvaged.text);
  context.err << "vndoc: " << options.output << ": has " << document->Steps()->Count()
              << " steps and " << document->Links()->Count() << " links\n";
  for (const Damage& damage : salvaged.damages) {
    context.err << "vndoc: " << Described(damage) << '\n';
  }
  if (salvaged.damages_not_listed != 0) {
    context.err << "vndoc: and " << salvaged.damages_not_listed << " damages more\n";
  }
  if (!salvaged.damages.empty()) context.status = kFindings;
}

void Recover(Context& context, const RecoverOptions& options) {
  if (options.temp_save) {
    TakeTempSave(context, options.file);
    context.out << options.file << ": is now what its temporary save was\n";
    return;
  }
  if (!options.output.empty()) return SalvageTo(context, options);
  if (Make<vnDocument>()->TempSaveTest(FromUtf8(options.file)) == kTempSaveIsNewer) {
    context.out << options.file
                << ": a save did not complete; --temp-save takes what was saved before it\n";
  } else {
    context.out << options.file << ": no newer temporary save; -o FILE salvages what can be read\n";
  }
}

}  // namespace

void AddRecover(CLI::App& app, Context& context) {
  auto* const command =
      app.add_subcommand("recover", "Recovers a document from a broken save or a damaged file");
  const auto options = std::make_shared<RecoverOptions>();
  command->add_option("FILE", options->file, "The document")->required();
  command->add_flag("--temp-save", options->temp_save,
                    "Put the temporary save in the place of the document");
  command->add_option("-o,--output", options->output,
                      "Salvage what can be read into this new document, and list what was lost");
  command->footer(
      "Keeps every step, link or other object that is not damaged itself, whatever is damaged\n"
      "around it, and of the others what can be read.\n"
      "Exit status: 0 nothing is damaged or missing, 1 something is, 2 nothing can be read.");
  command->callback([options, &context] { Recover(context, *options); });
}

}  // namespace vndoc
