// Documents and other files, as all commands load and write them.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include "bag/bag_file.h"
#include "command.h"
#include "document/temp_save.h"
#include "file_lock.h"
#include "one_line.h"
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

// What a shell puts in the place of a command's output. It can be read once.
bool IsSubstitution(const std::string& file) {
  return file.starts_with("/dev/fd/") || file.starts_with("/proc/self/fd/");
}

// A file that can't be read would count as an old, empty one: say what is wrong with it instead. A
// pipe that nobody writes to would never open.
void RequireReadable(const std::string& file) {
  std::error_code unknown;
  const auto status = std::filesystem::status(std::filesystem::path(FromUtf8(file)), unknown);
  if (std::filesystem::is_other(status)) throw Failure(file + ": not a file that can be read");
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

// A save that fails leaves the file whole: there is nothing to recover from the temporary save that
// it has made. One that was there before stays.
void RequireSaved(vnDocument& document, const Text& file, bool (*save)(vnDocument&, const Text&)) {
  const bool had_temp_save = vndoc6::platform::FileExists(vndoc6::TempSaveName(file));
  try {
    if (save(document, file)) return;
  } catch (const Error& error) {
    if (error.number() != vndoc6::automation::kOverflow) throw;
    throw Failure(ToUtf8(file) +
                  ": can't be saved, for its counter IR is at its highest value; it is as it was");
  }
  if (!had_temp_save) document.TempSaveClear();
  throw Failure(ToUtf8(file) + ": can't be written; it is as it was");
}

// "12 bytes from byte 3071 on were not read, in S/T{key}; `vndoc recover ...` salvages ..."
std::string Described(const std::vector<vndoc6::NotRead>& not_read, const std::string& file) {
  size_t bytes = 0;
  for (const vndoc6::NotRead& part : not_read) bytes += part.size;
  const vndoc6::NotRead& first = not_read.front();
  const std::string place = first.place.empty() ? "" : " in " + OneLine(FromUtf8(first.place));
  const std::string places =
      not_read.size() > 1 ? " in " + std::to_string(not_read.size()) + " places, the first" : "";
  return file + ": damaged: " + std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes") +
         " could not be read" + places + " from byte " + std::to_string(first.offset) + " on" +
         place + "; `vndoc recover \"" + file + "\" -o NEW` salvages what is there";
}

void TellWhatWasNotRead(Context& context, const vnDocument& document, const std::string& file,
                        bool to_write) {
  const std::vector<vndoc6::NotRead> not_read = document.WhatWasNotRead();
  if (not_read.empty()) return;
  const std::string message = Described(not_read, file);
  if (to_write && !context.force) {
    throw Failure(message + ", --force changes the rest and puts the file aside");
  }
  if (!to_write && context.status == kDone) context.status = kFindings;
  if (std::exchange(context.said[file].not_read, true)) return;
  context.err << "vndoc: " << message << '\n';
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

}  // namespace

Ref<vnDocument> Load(Context& context, const std::string& file, bool to_write) {
  if (!to_write && IsSubstitution(file)) {
    return LoadText(context, ReadBytes(context, file), file);
  }
  auto document = LoadBy(context, &vnDocument::Load, {file, file});
  TellWhatWasNotRead(context, *document, file, to_write);
  if (to_write) RequireWriteAccess(context, *document, file);
  return document;
}

// Nobody waits while a password is typed: where there is a person to ask, the lock comes later.
void ChangeDocument(Context& context, const std::string& file,
                    const std::function<bool(vnDocument&)>& change) {
  std::optional<FileLock> lock;
  if (!context.on_terminal) lock.emplace(file);
  Ref<vnDocument> document = Load(context, file, true);
  if (!lock) lock.emplace(file);
  if (document->FileChangedSinceLoad()) document = Load(context, file, true);
  if (change(*document)) Save(context, *document);
}

Ref<vnDocument> LoadText(Context& context, std::string_view text, const std::string& file) {
  const ScratchFolder folder;
  const Text name = folder.Name("salvaged");
  if (!vndoc6::platform::ReplaceFileWith(name, text)) {
    throw Failure("a temporary file can't be written");
  }
  return LoadBy(context, &vnDocument::Load, {ToUtf8(name), file});
}

// The library keeps the temporary save until the document is saved.
void TakeTempSave(Context& context, const std::string& file) {
  const Text name = FromUtf8(file);
  const Text temp_save = vndoc6::TempSaveName(name);
  RequireReadable(ToUtf8(temp_save));
  const FileLock lock(file);
  const auto text = vndoc6::bag::ReadTextFile(temp_save);
  const auto not_read = text ? vndoc6::FindNotRead(*text) : std::vector<vndoc6::NotRead>();
  if (!not_read.empty() && !context.force) throw Failure(Described(not_read, ToUtf8(temp_save)));
  // Only what is there can be replaced.
  const bool was_there = vndoc6::platform::FileExists(name);
  if (!was_there && !vndoc6::platform::CopyFileTo(temp_save, name)) {
    throw Failure(file + ": can't be written");
  }
  try {
    bool saved = false;
    const auto document = LoadBy(context, &vnDocument::LoadTempSave, {file, file}, &saved);
    if (saved) return;
    RequireWriteAccess(context, *document, file);
    Save(context, *document);
  } catch (...) {
    if (!was_there) vndoc6::platform::DeleteFileNamed(name);
    throw;
  }
}

// The load has tried the password that opened it, which may be the write password as well.
void UseWritePassword(const Context& context, vnDocument& document) {
  if (document.AllowWrite() || !context.write_password) return;
  document.EnableWrite(FromUtf8(*context.write_password));
}

void Save(Context& context, vnDocument& document) {
  const std::string file = ToUtf8(document.FileName());
  const Progress progress(context, document, "Saving " + file);
  RequireSaved(document, document.FileName(),
               [](vnDocument& saved, const Text&) { return saved.Save(); });
}

void SaveAs(Context& context, vnDocument& document, const std::string& file) {
  const Progress progress(context, document, "Saving " + file);
  const FileLock lock(file);
  RequireSaved(document, FromUtf8(file),
               [](vnDocument& saved, const Text& name) { return saved.SaveAs(name); });
}

void AddForce(CLI::App& command, Context& context) {
  command.add_flag("--force", context.force,
                   "Change a document of which not all can be read; the file as it was is put "
                   "aside");
}

std::string ReadBytes(Context& context, const std::string& file) {
  std::optional<std::string> bytes;
  if (file == "-") {
    bytes.emplace(std::istreambuf_iterator<char>(context.in), std::istreambuf_iterator<char>());
  } else if (IsSubstitution(file)) {
    std::ifstream stream(file, std::ios::binary);
    bytes.emplace(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
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

// Pictures and pages tell what they are near their beginning.
std::string_view KindOfOutput(std::string_view bytes) {
  constexpr std::pair<std::string_view, std::string_view> kMarks[] = {{"\x89PNG", "png"},
                                                                      {"%PDF", "pdf"},
                                                                      {"<!DOCTYPE html", "html"},
                                                                      {"<!doctype html", "html"},
                                                                      {"<svg", "svg"}};
  bytes = bytes.substr(0, 1024);
  for (const auto& [mark, kind] : kMarks) {
    if (bytes.find(mark) != bytes.npos) return kind;
  }
  return {};
}

void WriteOutput(Context& context, const std::string& file, std::string_view bytes) {
  const auto previous =
      file == "-" ? std::nullopt : vndoc6::platform::ReadWholeFile(FromUtf8(file));
  const bool is_other =
      previous && !previous->empty() && KindOfOutput(*previous) != KindOfOutput(bytes);
  if (is_other && !context.force) {
    throw Failure(file + ": is a file of another kind; --force replaces it");
  }
  WriteBytes(context, file, bytes);
}

void WriteDocument(Context& context, const std::string& file, std::string_view bytes) {
  std::optional<FileLock> lock;
  if (file != "-") lock.emplace(file);
  WriteBytes(context, file, bytes);
}

}  // namespace vndoc
