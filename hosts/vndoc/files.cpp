// Documents and other files, as all commands load and write them.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <utility>

#include "bag/bag_file.h"
#include "command.h"
#include "document/temp_save.h"
#include "platform/file_system.h"
#include "progress.h"
#include "scratch_folder.h"
#include "terminal.h"
#include "vndoc6/automation/error.h"

namespace vndoc {

using vndoc6::automation::Error;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::Make;
using vndoc6::automation::ToUtf8;

namespace {

constexpr int32_t kNewerDocumentVersion = 13;

std::string SystemError() { return std::strerror(errno != 0 ? errno : EIO); }

// A file that can't be read would count as an old, empty one: say what is wrong with it instead.
void RequireReadable(const std::string& file) {
  errno = 0;
  std::ifstream stream(std::filesystem::path(FromUtf8(file)), std::ios::binary);
  char first = 0;
  if (!stream) throw Failure(file + ": " + SystemError());
  stream.get(first);
  if (stream.bad() || !vndoc6::platform::FileExists(FromUtf8(file))) {
    throw Failure(file + ": not a file that can be read");
  }
}

// What a load or a save reported.
class Outcome : public vndoc6::DocumentListener {
 public:
  explicit Outcome(vnDocument& document) : document_(document) { document_.AddListener(this); }
  ~Outcome() override { document_.RemoveListener(this); }
  Outcome(const Outcome&) = delete;
  Outcome& operator=(const Outcome&) = delete;

  void LoadFailed(int32_t elFailCode) override { load_failed_ = elFailCode; }
  void LoadVersionError(int32_t elFileVersion, float, int32_t) override {
    file_version_ = elFileVersion;
  }
  void SaveComplete() override { saved_ = true; }
  bool saved() const { return saved_; }
  int32_t load_failed() const { return load_failed_; }
  int32_t file_version() const { return file_version_; }

 private:
  vnDocument& document_;
  int32_t load_failed_ = 0;
  int32_t file_version_ = 0;
  bool saved_ = false;
};

enum class Loaded { kYes, kWrongPassword };

// vnDocument::Load or LoadTempSave.
using LoadFunction = bool (vnDocument::*)(const Text& file, const Text& password);

// What a document is loaded from, and the file that its user knows it by.
struct Source {
  std::string name;
  std::string file;
};

Loaded TryLoad(Context& context, vnDocument& document, LoadFunction load, const Source& source,
               const std::string& password, bool* saved) {
  const std::string& file = source.file;
  const Outcome outcome(document);
  const Progress progress(context, document, "Loading " + file);
  bool loaded = false;
  try {
    loaded = (document.*load)(FromUtf8(source.name), FromUtf8(password));
  } catch (const Error& error) {
    if (error.number() != vndoc6::automation::kCannotCreateObject) throw;
    throw Failure(file + ": not a document, or one of an older format");
  }
  if (saved != nullptr) *saved = outcome.saved();
  if (loaded) {
    if (outcome.load_failed() == kNewerDocumentVersion &&
        !std::exchange(context.said[file].newer_version, true)) {
      context.err << "vndoc: " << file << ": made by a newer version; parts may be missing\n";
    }
    return Loaded::kYes;
  }
  if (outcome.file_version() != 0) {
    throw Failure(file + ": file version " + std::to_string(outcome.file_version()) +
                  " is not known");
  }
  if (outcome.load_failed() != 0) throw Failure(file + ": can't be loaded");
  return Loaded::kWrongPassword;
}

// The answer that was given before, or is given now. Nothing without a person to ask.
std::optional<std::string> Ask(const Context& context, const std::string& question,
                               std::optional<std::string>& answer) {
  if (!answer && context.on_terminal) answer = AskPassword(question);
  return answer;
}

void RequireWriteAccess(Context& context, vnDocument& document, const std::string& file) {
  UseWritePassword(context, document);
  if (!document.AllowWrite() && !context.write_password) {
    if (const auto answer =
            Ask(context, "Write password for " + file + ": ", context.said[file].write_password)) {
      document.EnableWrite(FromUtf8(*answer));
    }
  }
  if (document.AllowWrite()) return;
  throw Failure(file + (context.write_password ? ": wrong write password"
                                               : ": needs its write password to be changed"));
}

// A save that fails leaves the file whole: there is nothing to recover from its temporary save.
void RequireSaved(bool saved, const vnDocument& document, const std::string& file) {
  if (saved) return;
  document.TempSaveClear();
  throw Failure(file + ": can't be written; it is as it was");
}

// `saved` tells whether the document was saved in passing.
Ref<vnDocument> LoadBy(Context& context, LoadFunction load, const Source& source,
                       bool* saved = nullptr) {
  const std::string& file = source.file;
  RequireReadable(source.name);
  auto document = Make<vnDocument>();
  const std::string given = context.password.value_or("");
  if (TryLoad(context, *document, load, source, given, saved) == Loaded::kYes) return document;
  if (context.password) throw Failure(file + ": wrong password");
  const auto answer = Ask(context, "Password for " + file + ": ", context.said[file].password);
  if (!answer) throw Failure(file + ": needs its password");
  // A document is loaded once, whether that succeeds or not.
  document = Make<vnDocument>();
  if (TryLoad(context, *document, load, source, *answer, saved) == Loaded::kYes) return document;
  throw Failure(file + ": wrong password");
}

// A file that is there again at the end, unless it is let go: saving replaces a temporary save by
// one of its own, and may fail then.
class KeptFile {
 public:
  explicit KeptFile(const std::string& file)
      : file_(FromUtf8(file)), kept_(FromUtf8(file + ".kept")) {
    RequireReadable(file);
    std::error_code error;
    std::filesystem::remove(kept_, error);
    // Needs no room on a disk that may be full.
    std::filesystem::create_hard_link(file_, kept_, error);
    if (error) std::filesystem::copy_file(file_, kept_, error);
    if (error) throw Failure(file + ": can't be kept: " + error.message());
  }
  ~KeptFile() {
    std::error_code nothing_else_to_do;
    if (let_go_) {
      std::filesystem::remove(kept_, nothing_else_to_do);
    } else {
      std::filesystem::rename(kept_, file_, nothing_else_to_do);
    }
  }
  KeptFile(const KeptFile&) = delete;
  KeptFile& operator=(const KeptFile&) = delete;
  void LetGo() { let_go_ = true; }

 private:
  std::filesystem::path file_, kept_;
  bool let_go_ = false;
};

}  // namespace

Ref<vnDocument> Load(Context& context, const std::string& file, bool to_write) {
  auto document = LoadBy(context, &vnDocument::Load, {file, file});
  if (to_write) RequireWriteAccess(context, *document, file);
  return document;
}

Ref<vnDocument> LoadText(Context& context, std::string_view text, const std::string& file) {
  const ScratchFolder folder;
  const Text name = folder.Name("salvaged");
  if (!vndoc6::platform::ReplaceFileWith(name, text)) {
    throw Failure("a temporary file can't be written");
  }
  return LoadBy(context, &vnDocument::Load, {ToUtf8(name), file});
}

void TakeTempSave(Context& context, const std::string& file) {
  KeptFile temp_save(ToUtf8(vndoc6::TempSaveName(FromUtf8(file))));
  bool saved = false;
  const auto document = LoadBy(context, &vnDocument::LoadTempSave, {file, file}, &saved);
  if (!saved) {
    RequireWriteAccess(context, *document, file);
    Save(context, *document);
  }
  temp_save.LetGo();
}

// The load has tried the password that opened it, which may be the write password as well.
void UseWritePassword(const Context& context, vnDocument& document) {
  if (document.AllowWrite() || !context.write_password) return;
  document.EnableWrite(FromUtf8(*context.write_password));
}

void Save(Context& context, vnDocument& document) {
  const std::string file = ToUtf8(document.FileName());
  const Progress progress(context, document, "Saving " + file);
  RequireSaved(document.Save(), document, file);
}

void SaveAs(Context& context, vnDocument& document, const std::string& file) {
  const Progress progress(context, document, "Saving " + file);
  RequireSaved(document.SaveAs(FromUtf8(file)), document, file);
}

std::string ReadBytes(Context& context, const std::string& file) {
  std::optional<std::string> bytes;
  if (file == "-") {
    bytes.emplace(std::istreambuf_iterator<char>(context.in), std::istreambuf_iterator<char>());
  } else {
    RequireReadable(file);
    bytes = vndoc6::platform::ReadWholeFile(FromUtf8(file));
  }
  if (!bytes) throw Failure(file + ": " + SystemError());
  bytes->erase(0, bytes->size() - vndoc6::bag::WithoutMark(*bytes).size());
  return *std::move(bytes);
}

void WriteBytes(Context& context, const std::string& file, std::string_view bytes) {
  if (file == "-") {
    context.out << bytes;
  } else if (!vndoc6::platform::ReplaceFileWith(FromUtf8(file), bytes)) {
    throw Failure(file + ": can't be written; it is as it was");
  }
}

}  // namespace vndoc
