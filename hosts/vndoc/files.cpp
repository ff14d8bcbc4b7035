// Documents and other files, as all commands load and write them.
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <utility>

#include "automation/error.h"
#include "command.h"
#include "common/file_system.h"
#include "progress.h"
#include "terminal.h"

namespace vndoc {

using vndoc6::automation::Error;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::Make;

namespace {

constexpr int32_t kNewerDocumentVersion = 13;

std::string SystemError() { return std::strerror(errno != 0 ? errno : EIO); }

// A file that can't be read would count as an old, empty one: say what is wrong with it instead.
void RequireReadable(const std::string& file) {
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  char first = 0;
  if (!stream) throw Failure(file + ": " + SystemError());
  stream.get(first);
  if (stream.bad() || !vndoc6::common::FileExists(FromUtf8(file))) {
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
  int32_t load_failed() const { return load_failed_; }
  int32_t file_version() const { return file_version_; }

 private:
  vnDocument& document_;
  int32_t load_failed_ = 0;
  int32_t file_version_ = 0;
};

enum class Loaded { kYes, kWrongPassword };

Loaded TryLoad(Context& context, vnDocument& document, const std::string& file,
               const std::string& password) {
  const Outcome outcome(document);
  const Progress progress(context, document, "Loading " + file);
  bool loaded = false;
  try {
    loaded = document.Load(FromUtf8(file), FromUtf8(password));
  } catch (const Error& error) {
    if (error.number() != vndoc6::automation::kCannotCreateObject) throw;
    throw Failure(file + ": not a document, or one of an older format");
  }
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

void RequireSaved(bool saved, const std::string& file) {
  if (!saved) throw Failure(file + ": can't be written; it is as it was");
}

}  // namespace

Ref<vnDocument> Load(Context& context, const std::string& file, bool to_write) {
  RequireReadable(file);
  auto document = Make<vnDocument>();
  if (TryLoad(context, *document, file, context.password.value_or("")) == Loaded::kWrongPassword) {
    if (context.password) throw Failure(file + ": wrong password");
    const auto answer = Ask(context, "Password for " + file + ": ", context.said[file].password);
    if (!answer) throw Failure(file + ": needs its password");
    // A document is loaded once, whether that succeeds or not.
    document = Make<vnDocument>();
    if (TryLoad(context, *document, file, *answer) == Loaded::kWrongPassword) {
      throw Failure(file + ": wrong password");
    }
  }
  if (to_write) RequireWriteAccess(context, *document, file);
  return document;
}

// The load has tried the password that opened it, which may be the write password as well.
void UseWritePassword(const Context& context, vnDocument& document) {
  if (document.AllowWrite() || !context.write_password) return;
  document.EnableWrite(FromUtf8(*context.write_password));
}

void Save(Context& context, vnDocument& document) {
  const std::string file = vndoc6::automation::ToUtf8(document.FileName());
  const Progress progress(context, document, "Saving " + file);
  RequireSaved(document.Save(), file);
}

void SaveAs(Context& context, vnDocument& document, const std::string& file) {
  const Progress progress(context, document, "Saving " + file);
  RequireSaved(document.SaveAs(FromUtf8(file)), file);
}

std::string ReadBytes(Context& context, const std::string& file) {
  if (file == "-") return {std::istreambuf_iterator<char>(context.in), {}};
  RequireReadable(file);
  auto bytes = vndoc6::common::ReadWholeFile(FromUtf8(file));
  if (!bytes) throw Failure(file + ": " + SystemError());
  return *std::move(bytes);
}

void WriteBytes(Context& context, const std::string& file, std::string_view bytes) {
  if (file == "-") {
    context.out << bytes;
  } else if (!vndoc6::common::ReplaceFileWith(FromUtf8(file), bytes)) {
    throw Failure(file + ": can't be written; it is as it was");
  }
}

}  // namespace vndoc
