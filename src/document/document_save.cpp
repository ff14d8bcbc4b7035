// vnDocument's file, the writing side.
#include <limits>

#include "automation/inside.h"
#include "bag/bag_file.h"
#include "bag/bag_writer.h"
#include "bag/lazy_text.h"
#include "document/document_scope.h"
#include "document/file_version.h"
#include "document/own_files.h"
#include "document/put_aside.h"
#include "document/temp_save.h"
#include "fields/fields.h"
#include "platform/file_system.h"
#include "platform/keys.h"
#include "vndoc6/automation/error.h"
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
using bag::BagWriter;

namespace {

constexpr int32_t kNoNameToSaveTo = 1;
constexpr int32_t kNotWritten = 2;

template <class T>
void WritePart(T& part, BagWriter& writer) {
  Inside::Write(part, writer);
}

}  // namespace

bool vnDocument::Save() {
  const Ref<vnDocument> self(this);
  if (file_name_.empty()) {
    scope_->Raise<&DocumentListener::SaveFailed>(kNoNameToSaveTo);
    return false;
  }
  return SaveAndReport();
}

bool vnDocument::SaveAs(const Text& psFileName) {
  const Ref<vnDocument> self(this);
  if (psFileName.empty()) {
    scope_->Raise<&DocumentListener::SaveFailed>(kNoNameToSaveTo);
    return false;
  }
  // A copy under another name is another document.
  if (!file_name_.empty() && !automation::EqualsFolded(file_name_, psFileName)) guid_.clear();
  file_name_ = psFileName;
  return SaveAndReport();
}

bool vnDocument::SaveDocAs(const Text& psFileName, int32_t plDocumentType) {
  if (plDocumentType != -1) SetDocType(static_cast<EnumVantrelDocType>(plDocumentType));
  return SaveAs(psFileName);
}

bool vnDocument::SaveAndReport() {
  if (SaveProcedure()) {
    scope_->Raise<&DocumentListener::SaveComplete>();
    return true;
  }
  scope_->Raise<&DocumentListener::SaveFailed>(kNotWritten);
  return false;
}

// The temporary save's part in a save. A handler may give the document another name meanwhile.
class vnDocument::TempSave {
 public:
  explicit TempSave(vnDocument& document) : document_(document) {}

  // Where there is none, the file becomes it at once. One that is there may be all that is left of
  // a document: it is not touched before it is certain that the save works.
  void Begin() {
    is_successor_wanted_ = !IsSource() && platform::MayReplaceFile(File()) && IsReadWhole(File());
    if (!is_successor_wanted_ || platform::FileExists(Name())) return;
    document_.TempSaveDocument();
    is_successor_wanted_ = false;
    is_made_ = true;
  }

  // The new content is on the disk, and about to take the file's place. False when something would
  // be lost by that.
  bool BeforePlacing() const {
    const bool is_source = IsSource();
    const bool read_whole = IsReadWhole(is_source ? Name() : File());
    const bool file_may_go = read_whole && (!is_source || IsReadable(File()));
    if (!file_may_go && !PutAsideIfThere(File())) return false;
    // Without a file the temporary save is all there is.
    const bool temp_save_may_go = is_made_ || (read_whole && platform::FileExists(File()));
    if (!temp_save_may_go && !PutAsideIfThere(Name())) return false;
    if (is_successor_wanted_) document_.TempSaveDocument();
    return true;
  }

  void End() const {
    document_.TempSaveClear();
    if (IsSource()) document_.recovered_from_.clear();
  }

 private:
  const Text& File() const { return document_.file_name_; }
  Text Name() const { return TempSaveName(File()); }
  // Whether it is what the document was loaded from.
  bool IsSource() const { return Name() == document_.recovered_from_; }
  bool IsReadWhole(const Text& name) const { return document_.own_files_->IsReadWhole(name); }
  // Whether a load would read all of a file that this document never saw.
  static bool IsReadable(const Text& name) {
    const std::optional<bag::KeptText> text = bag::ReadTextFile(name);
    return text && FindNotRead(*text).empty();
  }
  // One call of the system's that fails must not make a file look as if it were not there.
  static bool PutAsideIfThere(const Text& name) {
    const bool is_there = platform::FileExists(name) || platform::ReadWholeFile(name);
    return !is_there || PutAside(name);
  }

  vnDocument& document_;
  bool is_successor_wanted_ = false;
  bool is_made_ = false;
};

bool vnDocument::SaveProcedure() {
  if (!allow_write_) return false;
  // Before anything is touched: a counter at its end can't be moved on.
  if (!ir_changed_ && ir_ == std::numeric_limits<int32_t>::max()) {
    throw automation::Error(automation::kOverflow);
  }
  TempSave temp_save(*this);
  temp_save.Begin();
  if (guid_.empty()) guid_ = platform::NewKey();
  std::string text;
  BagWriter writer(text);
  WriteParts(writer, Purpose::kSave);
  file_size_ = text.size();
  const bool written =
      platform::ReplaceFileWith(file_name_, text, [&] { return temp_save.BeforePlacing(); });
  // After a failed write the temporary save is what a host can recover from.
  if (written) {
    own_files_->Saved(file_name_, text);
    temp_save.End();
  }
  scope_->Raise<&DocumentListener::Saving>(int16_t{100});
  return written;
}

// A save of a document whose counter did not move since the last one still moves it on.
void vnDocument::MoveIROn() {
  if (!ir_changed_) scope_->IncrementIR();
  ir_changed_ = false;
}

// The keys and their order are in every file: never change them.
void vnDocument::WriteParts(BagWriter& writer, Purpose purpose) {
  const auto progress = [&](int16_t percent) {
    if (purpose == Purpose::kSave) scope_->Raise<&DocumentListener::Saving>(percent);
  };
  const auto write = [&](const Definition& definition) {
    fields::Write(writer, definition.key, definition.object);
  };
  // A little more than the last time: a text that outgrows its place is copied whole.
  writer.out().reserve(writer.out().size() + file_size_ + file_size_ / 8);
  writer.Add("GUID", guid_);
  writer.AddNested("D", [&](BagWriter& nested) { Inside::Write(*details_, nested); });
  writer.Add("FV", kFileVersion);
  writer.Add("DV", kDocumentVersion);
  writer.Add("DT", document_type_);
  // Here, for an object of the host's that was written above may have moved it.
  if (purpose == Purpose::kSave) MoveIROn();
  writer.Add("IR", ir_);
  progress(5);
  bag::WriteLazy(writer, "C", chart_, WritePart<vnChart>);
  progress(10);
  writer.AddNested("S", [&](BagWriter& nested) { Inside::Write(*steps_, nested); });
  bag::WriteLazy(writer, "LK", links_, WritePart<vnLinks>);
  progress(20);
  bag::WriteLazy(writer, "RH", revision_history_, WritePart<vnRevisions>);
  writer.AddNested("P", [&](BagWriter& nested) {
    if (properties_) Inside::Write(*properties_, nested);
  });
  progress(30);
  write(details_definitions_.field_defs);
  progress(40);
  write(details_definitions_.form);
  progress(50);
  write(steps_definitions_.field_defs);
  write(steps_definitions_.form);
  progress(60);
  write(links_definitions_.field_defs);
  write(links_definitions_.form);
  progress(70);
  bag::WriteLazy(writer, "FL", files_, WritePart<vnFiles>);
  progress(80);
  bag::WriteLazy(writer, "J", jumps_, WritePart<vnJumps>);
  bag::WriteLazy(writer, "CN", containers_, WritePart<vnContainers>);
  progress(90);
  writer.Add("PC", pages_count_);
  writer.Add("SPB", show_page_breaks_ ? TextView(u"T") : TextView(u"F"));
  bag::WriteLazy(writer, "Attach", attachments_, WritePart<Properties>);
  writer.Add("DBGUID", db_guid_);
  writer.Add("ConStr", connection_string_);
  writer.Add("CT", chart_type_);
  unknown_entries().Write(writer);
}

}  // namespace vndoc6
