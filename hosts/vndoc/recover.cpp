// vndoc recover: what can be had from a save that did not complete, or from a damaged file.
#include <algorithm>
#include <filesystem>
#include <memory>
#include <ostream>
#include <utility>
#include <vector>

#include "command.h"
#include "document/put_aside.h"
#include "document/temp_save.h"
#include "one_line.h"
#include "platform/file_system.h"
#include "vndoc6/content/salvage.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"

namespace vndoc {

using vndoc6::Damage;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::Make;
using vndoc6::automation::ToUtf8;

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
  WriteDocument(context, options.output, salvaged.text);
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

// What saves have put aside of a file, by number.
std::vector<std::string> PutAsideOf(const Text& file) {
  const std::filesystem::path path(file);
  const std::u16string prefix = path.filename().u16string() + Text(vndoc6::kAsideEnding);
  const std::filesystem::path folder = path.parent_path();
  std::vector<std::string> names;
  std::error_code no_folder_no_files;
  for (const auto& entry :
       std::filesystem::directory_iterator(folder.empty() ? "." : folder, no_folder_no_files)) {
    const std::u16string name = entry.path().filename().u16string();
    if (name.starts_with(prefix)) names.push_back(ToUtf8((folder / name).u16string()));
  }
  std::sort(names.begin(), names.end(), [](const std::string& left, const std::string& right) {
    return std::pair(left.size(), left) < std::pair(right.size(), right);
  });
  return names;
}

void TellDamages(Context& context, const std::string& file) {
  const vndoc6::Salvaged salvaged = vndoc6::Salvage(ReadBytes(context, file));
  const bool is_damaged =
      std::any_of(salvaged.damages.begin(), salvaged.damages.end(),
                  [](const Damage& damage) { return damage.kind != Damage::Kind::kUnknown; });
  if (!is_damaged) {
    context.out << file << ": nothing in it is damaged or missing\n";
    return;
  }
  constexpr size_t kMost = 10;
  context.out << file << ": is damaged; -o FILE salvages what can be read\n";
  for (size_t i = 0; i < salvaged.damages.size() && i < kMost; ++i) {
    context.out << "  " << Described(salvaged.damages[i]) << '\n';
  }
  const size_t damages = salvaged.damages.size() + salvaged.damages_not_listed;
  if (damages > kMost) context.out << "  and " << damages - kMost << " damages more\n";
  context.status = kFindings;
}

// What there is to recover from.
void Tell(Context& context, const std::string& file) {
  const Text name = FromUtf8(file);
  const Text temp_save = vndoc6::TempSaveName(name);
  const bool is_there = vndoc6::platform::FileExists(name);
  std::vector<std::string> aside = PutAsideOf(name);
  for (std::string& of_temp_save : PutAsideOf(temp_save)) aside.push_back(std::move(of_temp_save));
  if (!is_there && vndoc6::platform::FileExists(temp_save)) {
    context.out << file << ": is not there; --temp-save takes its temporary save\n";
  } else if (!is_there && aside.empty()) {
    throw Failure(file + ": No such file or directory");
  } else if (Make<vnDocument>()->TempSaveTest(name) == kTempSaveIsNewer) {
    context.out << file
                << ": a save did not complete; --temp-save takes what was saved before it\n";
  } else if (is_there) {
    context.out << file << ": no newer temporary save\n";
  }
  if (is_there) TellDamages(context, file);
  for (const std::string& what : aside) {
    context.out << what << ": was put aside by a save; `vndoc recover \"" << what
                << "\" -o NEW` takes what can be read\n";
  }
}

void Recover(Context& context, const RecoverOptions& options) {
  if (!options.temp_save) {
    return options.output.empty() ? Tell(context, options.file) : SalvageTo(context, options);
  }
  TakeTempSave(context, options.file);
  context.out << options.file << ": is now what its temporary save was\n";
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
  AddForce(*command, context);
  command->footer(
      "Without an option: says what there is to recover, also what saves have put aside.\n"
      "-o keeps every step, link or other object that is not damaged itself, whatever is damaged\n"
      "around it, and of the others what can be read.\n"
      "Exit status: 0 nothing is damaged or missing, 1 something is, 2 nothing can be read or "
      "taken.");
  command->callback([options, &context] { Recover(context, *options); });
}

}  // namespace vndoc
