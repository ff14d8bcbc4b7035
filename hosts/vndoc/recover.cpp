// vndoc recover: what can be had from a save that did not complete, or from a damaged file.
#include <memory>
#include <ostream>

#include "automation/error.h"
#include "bag/properties.h"
#include "command.h"
#include "document/file_version.h"
#include "file_text.h"
#include "mended_text.h"
#include "platform/file_system.h"
#include "process/link.h"
#include "process/steps.h"
#include "scratch_folder.h"

namespace vndoc {

using vndoc6::automation::FromUtf8;
using vndoc6::automation::Make;

namespace {

struct RecoverOptions {
  std::string file;
  std::string output;
  bool temp_save = false;
};

constexpr int32_t kTempSaveIsNewer = 2;

// The file's text, closed where it breaks off inside of `depth` texts.
std::string Closed(const std::string& bytes, int depth) {
  std::string closed = bytes;
  for (int level = depth - 1; level >= 1; --level) {
    closed += '^';
    closed += static_cast<char>('A' + level - 1);
  }
  return depth > 0 ? closed + "\":" : closed;
}

struct Salvaged {
  std::string text;   // of the document, written again
  std::string bytes;  // that it was loaded from
  bool broken_off = false;
  std::vector<Mended::Place> mended;
};

// What a document makes of those bytes; no text when nothing.
Salvaged Try(Context& context, std::string bytes) {
  const ScratchFolder folder;
  const Text name = folder.Name("tried");
  if (!vndoc6::platform::ReplaceFileWith(name, bytes)) {
    throw Failure("a temporary file can't be written");
  }
  try {
    auto document = Load(context, vndoc6::automation::ToUtf8(name), true);
    return {WriteAgain(std::move(document)), std::move(bytes), false, {}};
  } catch (const Failure&) {
    // These bytes are no document: others may be.
    return {};
  }
}

// A file that breaks off does so at some depth of texts in texts. The right one gives most.
Salvaged TryAllDepths(Context& context, const std::string& bytes, bool breaks_off) {
  constexpr int kDeepest = 6;
  Salvaged best = Try(context, bytes);
  if (!breaks_off) return best;
  for (int depth = 1; depth <= kDeepest; ++depth) {
    Salvaged other = Try(context, Closed(bytes, depth));
    if (other.text.size() <= best.text.size()) continue;
    best = std::move(other);
    best.broken_off = true;
  }
  return best;
}

// What tells a document of this kind from others. Without it nothing is read.
std::string VersionEntries() {
  const auto entries = Make<vndoc6::Properties>();
  entries->SetValue(u"FV", vndoc6::automation::Variant(vndoc6::kFileVersion));
  entries->SetValue(u"DV", vndoc6::automation::Variant(vndoc6::kDocumentVersion));
  return vndoc6::automation::ToUtf8(entries->GetText());
}

// The text as it is, or mended when that gives more.
Salvaged Salvage(Context& context, const std::string& bytes) {
  Mended mended = Mend(bytes);
  Salvaged best = TryAllDepths(context, bytes, mended.breaks_off);
  Salvaged other;
  if (mended.text != bytes) other = TryAllDepths(context, mended.text, mended.breaks_off);
  const bool has_parts = mended.text.find("=~64\"") != mended.text.npos;
  if (best.text.empty() && other.text.empty() && has_parts) {
    mended.text = VersionEntries() + mended.text;
    mended.places.insert(mended.places.begin(), {"FV", 0});
    other = TryAllDepths(context, mended.text, mended.breaks_off);
  }
  if (other.text.size() <= best.text.size()) return best;
  other.mended = std::move(mended.places);
  return other;
}

void ListMended(Context& context, const std::vector<Mended::Place>& places) {
  for (const Mended::Place& place : places) {
    context.err << "vndoc: lost: what was damaged before byte " << place.offset << " of the file";
    if (!place.key.empty()) context.err << ", in " << place.key;
    context.err << '\n';
  }
}

void SalvageTo(Context& context, const RecoverOptions& options) {
  const std::string bytes = ReadBytes(context, options.file);
  const Salvaged salvaged = Salvage(context, bytes);
  if (salvaged.text.empty()) throw Failure(options.file + ": nothing in it can be read");
  WriteBytes(context, options.output, salvaged.text);
  const auto document = Load(context, options.output);
  context.err << "vndoc: " << options.output << ": has " << document->Steps()->Count()
              << " steps and " << document->Links()->Count() << " links\n";
  std::vector<LostText> lost = FindLostTexts(salvaged.bytes, salvaged.text);
  ListMended(context, salvaged.mended);
  if (salvaged.broken_off) {
    lost.push_back({LostText::Kind::kDoesNotParse, "", bytes.size()});
  }
  for (const LostText& part : lost) {
    const std::string where = part.place.empty() ? "the file" : part.place;
    context.err << "vndoc: lost: " << where;
    if (part.kind == LostText::Kind::kTwice) context.err << ", of which there are two";
    if (part.kind == LostText::Kind::kDoesNotParse) {
      context.err << " from byte " << part.offset << " on";
    }
    context.err << '\n';
  }
  if (!lost.empty() || !salvaged.mended.empty()) context.status = kFindings;
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
      "A file that breaks off is closed; a damaged step, link or other entry is lost from the\n"
      "damage on, or whole, and those behind it are kept.\n"
      "Exit status: 0 all is there, 1 something was lost, 2 nothing can be read.");
  command->callback([options, &context] { Recover(context, *options); });
}

}  // namespace vndoc
