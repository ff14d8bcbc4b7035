// vnDetails: the descriptive data of one document.
#pragma once

#include <cstdint>

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/bag/kept_text.h"
#include "vndoc6/bag/lazy.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/core/member.h"
#include "vndoc6/titles/title_ref.h"

namespace vndoc6 {

// The values of DocumentStatus, DueDateType, AssignType, AssignTo and Table are the host's; they
// are stored as they are. Published: the numbers that changes report are not those of
// EnumVantrelDetailID.
class vnDetails : public Member, public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // The key that was loaded; a new one is saved in place of an empty one.
  const Text& Key() const { return key_; }

  // What the document is called. Setting it reports 1 as a details change, changed or not.
  const Text& Title() const { return title_; }
  void SetTitle(const Text& psTitle) { Put(&vnDetails::title_, psTitle); }
  // The number or code that the document is filed under. Setting it reports 2, changed or not.
  const Text& DocumentCode() const { return document_code_; }
  void SetDocumentCode(const Text& psDocumentCode) {
    Put(&vnDetails::document_code_, psDocumentCode);
  }
  // A code of the host's for where the document stands. Setting it reports 3, changed or not.
  int32_t DocumentStatus() const { return document_status_; }
  void SetDocumentStatus(int32_t plDocumentStatus) {
    Put(&vnDetails::document_status_, plDocumentStatus);
  }
  // The number of the current revision. Setting it reports 4, changed or not.
  float Revision() const { return revision_; }
  void SetRevision(float pnRevision) { Put(&vnDetails::revision_, pnRevision); }
  // What the document applies to. Setting it reports 5, changed or not.
  const Text& Scope() const { return scope_; }
  void SetScope(const Text& psScope) { Put(&vnDetails::scope_, psScope); }
  // What the document is for. Setting it reports 6, changed or not.
  const Text& Purpose() const { return purpose_; }
  void SetPurpose(const Text& psPurpose) { Put(&vnDetails::purpose_, psPurpose); }
  // When the document was approved. Setting it reports 7, changed or not.
  automation::Date DateApproved() const { return date_approved_; }
  void SetDateApproved(automation::Date pdDateApproved) {
    Put(&vnDetails::date_approved_, pdDateApproved);
  }

  // Who authorised the document; built on the first read, one object until the next load.
  automation::Ref<vnTitleRef> AuthorisedBy();
  // The values of the details' extra data fields; built on the first read. The object is not given
  // the FieldDefsDetails that define them.
  automation::Ref<automation::Object> Fields();

  // Free text. Setting it reports nothing, as for all that follow.
  const Text& Description() const { return description_; }
  void SetDescription(const Text& psDescription) { description_ = psDescription; }
  // A code of the host's for how the due date is found; 0 by default.
  int32_t DueDateType() const { return due_date_type_; }
  void SetDueDateType(int32_t plDueDateType) { due_date_type_ = plDueDateType; }
  // How long the procedure takes, as text.
  const Text& Duration() const { return duration_; }
  void SetDuration(const Text& psDuration) { duration_ = psDuration; }
  // A code of the host's for the kind of assignment; 0 by default.
  int32_t AssignType() const { return assign_type_; }
  void SetAssignType(int32_t plAssignType) { assign_type_ = plAssignType; }
  // A number of the host's for whom the document is assigned to; 0 by default.
  int32_t AssignTo() const { return assign_to_; }
  void SetAssignTo(int32_t plAssignTo) { assign_to_ = plAssignTo; }
  // A number of the host's for the table with the document's data; 0 by default.
  int32_t Table() const { return table_; }
  void SetTable(int32_t plTable) { table_ = plTable; }
  // The name of the host's form for the document.
  const Text& Form() const { return form_; }
  void SetForm(const Text& psForm) { form_ = psForm; }
  // Free text.
  const Text& Notes() const { return notes_; }
  void SetNotes(const Text& psNotes) { notes_ = psNotes; }

  // Enters today's revision, with the current Revision and IR, in the document's RevisionHistory,
  // and raises the document's IR. Revision stays what it is. Error 6 when IR is at its highest.
  // Nothing happens without a document.
  void NewRevision(const Text& psReason);

 private:
  friend struct Inside;
  void TakeDocument(vnDocument* document) override;
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text);
  // Plain text, compared exactly; empty means none.
  const Text& read_password() const { return read_password_; }
  void StoreReadPassword(const Text& password) { read_password_ = password; }
  const Text& write_password() const { return write_password_; }
  void StoreWritePassword(const Text& password) { write_password_ = password; }

  struct Schema;
  template <class T>
  void Put(T vnDetails::*member, const T& value);
  void ReportChange(int32_t detail_id);

  Text key_;
  Text title_;
  Text document_code_;
  int32_t document_status_ = 0;
  float revision_ = 0;
  Text scope_;
  Text purpose_;
  bag::Lazy<vnTitleRef> authorised_by_;
  automation::Date date_approved_;
  bag::Lazy<automation::Object> fields_;
  Text description_;
  int32_t due_date_type_ = 0;
  Text duration_;
  int32_t assign_type_ = 0;
  int32_t assign_to_ = 0;
  int32_t table_ = 0;
  Text form_;
  Text notes_;
  Text read_password_;
  Text write_password_;
};

}  // namespace vndoc6
