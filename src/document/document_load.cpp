// vnDocument's file, the reading side.
#include <new>

#include "automation/inside.h"
#include "bag/bag_file.h"
#include "bag/bag_reader.h"
#include "document/document_scope.h"
#include "document/file_version.h"
#include "document/own_files.h"
#include "document/temp_save.h"
#include "platform/file_system.h"
#include "platform/keys.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/titles/titles.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;
using bag::BagReader;
using bag::KeptText;
using bag::Lazy;

namespace {

// Outcomes of a load, as LoadFailed and LoadVersionError tell them. Never change one.
constexpr int32_t kLoaded = 0;
constexpr int32_t kNoFileName = 1;
constexpr int32_t kHasFileAlready = 2;
constexpr int32_t kNoSuchFile = 3;
constexpr int32_t kUnknownFileVersion = 11;
constexpr int32_t kOlderDocumentVersion = 12;
constexpr int32_t kNewerDocumentVersion = 13;
constexpr int32_t kWrongPassword = 14;

constexpr TextView kConverter = u"VNDoc6Converters.VN5";

// A list that a host has read already stays the same object and gets the members.
template <class T>
void KeepOrLoad(Lazy<T>& part, KeptText text) {
  if (T* built = part.built()) {
    Inside::ReadQuietly(*built, text);
  } else {
    part.Reset(std::move(text));
  }
}

}  // namespace

// While it stands, changes are reported as ChangeEventsLoading says. However a load ends,
// ChangeEvents is on and the assignment of GUID and IR locked afterwards.
class vnDocument::LoadingScope {
 public:
  explicit LoadingScope(vnDocument& document) : document_(document) {
    document_.scope_->SetChangeEvents(document_.change_events_loading_);
  }
  ~LoadingScope() { End(); }
  LoadingScope(const LoadingScope&) = delete;
  LoadingScope& operator=(const LoadingScope&) = delete;
  void End() {
    if (ended_) return;
    ended_ = true;
    document_.assignment_unlocked_ = false;
    document_.scope_->SetChangeEvents(true);
  }

 private:
  vnDocument& document_;
  bool ended_ = false;
};

bool vnDocument::Load(const Text& psFileName, const Text& psPassword) {
  return LoadAndReport(psFileName, psFileName, psPassword);
}

bool vnDocument::LoadDoc(const Text& psFileName, const Text& psPassword) {
  const Ref<vnDocument> self(this);
  if (!Load(psFileName, psPassword)) return false;
  constexpr TextView kTemplate = u".vn6t";
  const TextView name = psFileName;
  if (name.size() >= kTemplate.size() &&
      automation::AsciiLower(name.substr(name.size() - kTemplate.size())) == kTemplate) {
    ir_ = 1;
  }
  return true;
}

bool vnDocument::LoadTempSave(const Text& psFileName, const Text& psPassword) {
  const Ref<vnDocument> self(this);
  if (!LoadAndReport(psFileName, TempSaveName(psFileName), psPassword)) return false;
  file_name_ = psFileName;
  recovered_from_ = TempSaveName(psFileName);
  Save();
  return true;
}

bool vnDocument::LoadAndReport(const Text& file_name, const Text& read_from, const Text& password) {
  const Ref<vnDocument> self(this);
  const auto refuse = [this](int32_t code) {
    scope_->Raise<&DocumentListener::LoadFailed>(code);
    return false;
  };
  if (!file_name_.empty()) return refuse(kHasFileAlready);
  if (file_name.empty()) return refuse(kNoFileName);
  if (!platform::FileExists(file_name) || !platform::FileExists(read_from))
    return refuse(kNoSuchFile);

  file_name_ = read_from;
  const bool had_steps = steps_->Count() > 0;
  int32_t code = 0;
  try {
    code = LoadProcedure(password);
  } catch (const std::bad_alloc&) {
    // The same load works when there is memory again: it replaces all but the steps.
    file_name_.clear();
    if (!had_steps) steps_->RemoveAll();
    throw;
  }
  own_files_->LoadEnded(code == kLoaded || code == kOlderDocumentVersion ||
                        code == kNewerDocumentVersion);
  const bool version_error =
      code == kUnknownFileVersion || code == kOlderDocumentVersion || code == kNewerDocumentVersion;
  if (version_error) {
    scope_->Raise<&DocumentListener::LoadVersionError>(file_version_, document_version_, code);
  }
  switch (code) {
    case kLoaded:
    case kOlderDocumentVersion:
      Inside::ClearTried(*titles_);
      scope_->Raise<&DocumentListener::LoadComplete>();
      return true;
    case kNewerDocumentVersion:
      // Loaded whole, and yet told as failed: hosts ask their user and go on.
      Inside::ClearTried(*titles_);
      scope_->Raise<&DocumentListener::LoadFailed>(code);
      return true;
    case kUnknownFileVersion:
      return refuse(code);
    default:
      // A wrong password, or a code of the converter's own: no event.
      return false;
  }
}

int32_t vnDocument::LoadProcedure(const Text& password) {
  LoadingScope scope(*this);
  // A file that can't be read is an empty one, which then counts as one of the older format.
  KeptText text = bag::ReadTextFile(file_name_).value_or(KeptText());
  own_files_->LoadBegins(file_name_, text);
  file_size_ = text.raw().size();
  BagReader file(std::move(text));
  file_version_ = file.GetLong("FV", 1);
  document_version_ = file.GetSingle("DV", 1.0f);
  document_type_ = file.GetLong("DT");
  if (file_version_ == 1) return ImportOldFormat();
  if (file_version_ == kFileVersion) return ReadVersion2(file, scope, password);
  return kUnknownFileVersion;
}

int32_t vnDocument::ReadVersion2(BagReader& file, LoadingScope& scope, const Text& password) {
  guid_ = file.GetText("GUID");
  ir_ = file.GetLong("IR", 1);

  Inside::Read(*details_, file.GetKept("D"));
  const Text& read_password = Inside::read_password(*details_);
  if (!read_password.empty() && password != read_password) {
    allow_write_ = false;
    return kWrongPassword;
  }
  EnableWrite(password);

  scope_->Raise<&DocumentListener::Loading>(int16_t{10});
  chart_.Reset(file.GetKept("C"));
  scope_->Raise<&DocumentListener::Loading>(int16_t{20});
  revision_history_.Reset(file.GetKept("RH"));
  scope_->Raise<&DocumentListener::Loading>(int16_t{40});
  Inside::Read(*steps_, file.GetKept("S"));
  if (!properties_) SetProperties(automation::Make<Properties>().get());
  Inside::Read(*properties_, file.GetKept("P"));
  ReadDefinitions(file, details_definitions_);
  scope_->Raise<&DocumentListener::Loading>(int16_t{60});
  ReadDefinitions(file, steps_definitions_);
  ReadDefinitions(file, links_definitions_);
  KeepOrLoad(links_, file.GetKept("LK"));
  KeepOrLoad(files_, file.GetKept("FL"));
  KeepOrLoad(jumps_, file.GetKept("J"));
  scope_->Raise<&DocumentListener::Loading>(int16_t{90});
  KeepOrLoad(containers_, file.GetKept("CN"));
  pages_count_ = file.GetLong("PC");
  show_page_breaks_ = file.GetText("SPB") == u"T";
  attachments_.Reset(file.GetKept("Attach"));
  loaded_attachments_ = {};
  ResetDefinitions(file);
  db_guid_ = file.GetText("DBGUID");
  connection_string_ = file.GetText("ConStr");
  chart_type_ = file.GetLong("CT");
  unknown_entries().TakeFrom(file);

  scope.End();
  scope_->Raise<&DocumentListener::Loading>(int16_t{100});
  if (document_version_ < kDocumentVersion) return kOlderDocumentVersion;
  return document_version_ == kDocumentVersion ? kLoaded : kNewerDocumentVersion;
}

// What a host has read already stays until all six are reset at once.
void vnDocument::ReadDefinitions(BagReader& file, Definitions& definitions) {
  for (Definition* definition : {&definitions.field_defs, &definitions.form}) {
    if (definition->object.built() != nullptr) continue;
    definition->object.Reset(file.GetKept(definition->key));
  }
}

// What a host's handler has read meanwhile goes, too.
void vnDocument::ResetDefinitions(BagReader& file) {
  for (Definitions* definitions :
       {&details_definitions_, &steps_definitions_, &links_definitions_}) {
    for (Definition* definition : {&definitions->field_defs, &definitions->form}) {
      definition->object.Reset(file.GetKept(definition->key));
    }
  }
}

// The converter fills the document through its published members. Whether it succeeds or not, the
// document is not bound to the old file: a save must never overwrite that.
int32_t vnDocument::ImportOldFormat() {
  struct Unbind {
    Text& file_name;
    ~Unbind() { file_name.clear(); }
  } const unbind{file_name_};
  assignment_unlocked_ = true;
  const Ref<automation::Object> converter = automation::CreateObject(kConverter);
  // Converters have always been given a variable, and some declare the parameter as one.
  const Variant result = automation::CallByReference(
      *converter, u"ImportDocument", {Variant(file_name_), Variant(Ref<vnDocument>(this))});
  const int32_t code = result.ToLong();
  assignment_unlocked_ = false;
  if (guid_.empty()) guid_ = platform::NewKey();
  return code;
}

std::vector<NotRead> vnDocument::WhatWasNotRead() const { return own_files_->WhatWasNotRead(); }
bool vnDocument::FileChangedSinceLoad() const { return own_files_->HasChanged(file_name_); }

}  // namespace vndoc6
