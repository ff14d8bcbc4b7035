// vnDetails: the descriptive data of one document.
#pragma once

#include <cstdint>

#include "automation/object.h"
#include "automation/variant.h"
#include "common/bag_writer.h"
#include "common/kept_text.h"
#include "common/lazy.h"
#include "core/member.h"
#include "titles/title_ref.h"

namespace vndoc6 {

// The values of DocumentStatus, DueDateType, AssignType, AssignTo and Table are the host's; they
// are stored as they are.
class vnDetails : public Member {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  const Text& Key() const { return key_; }

  // Setting one of these reports DetailsChange with the number given, changed or not. Published:
  // the numbers are not those of EnumVantrelDetailID.
  const Text& Title() const { return title_; }
  void SetTitle(const Text& psTitle);  // 1
  const Text& DocumentCode() const { return document_code_; }
  void SetDocumentCode(const Text& psDocumentCode);  // 2
  int32_t DocumentStatus() const { return document_status_; }
  void SetDocumentStatus(int32_t plDocumentStatus);  // 3
  float Revision() const { return revision_; }
  void SetRevision(float pnRevision);  // 4
  const Text& Scope() const { return scope_; }
  void SetScope(const Text& psScope);  // 5
  const Text& Purpose() const { return purpose_; }
  void SetPurpose(const Text& psPurpose);  // 6
  automation::Date DateApproved() const { return date_approved_; }
  void SetDateApproved(automation::Date pdDateApproved);  // 7

  // Who authorised the document; built on the first read, one object until the next load.
  automation::Ref<vnTitleRef> AuthorisedBy();
  // Field values, by the document's FieldDefsDetails; built on the first read.
  automation::Ref<automation::Object> Fields();

  // Setting these reports nothing.
  const Text& Description() const { return description_; }
  void SetDescription(const Text& psDescription) { description_ = psDescription; }
  int32_t DueDateType() const { return due_date_type_; }
  void SetDueDateType(int32_t plDueDateType) { due_date_type_ = plDueDateType; }
  const Text& Duration() const { return duration_; }
  void SetDuration(const Text& psDuration) { duration_ = psDuration; }
  int32_t AssignType() const { return assign_type_; }
  void SetAssignType(int32_t plAssignType) { assign_type_ = plAssignType; }
  int32_t AssignTo() const { return assign_to_; }
  void SetAssignTo(int32_t plAssignTo) { assign_to_ = plAssignTo; }
  int32_t Table() const { return table_; }
  void SetTable(int32_t plTable) { table_ = plTable; }
  const Text& Form() const { return form_; }
  void SetForm(const Text& psForm) { form_ = psForm; }
  const Text& Notes() const { return notes_; }
  void SetNotes(const Text& psNotes) { notes_ = psNotes; }

  // Enters today's revision, with the current Revision and IR, in the document's RevisionHistory,
  // and raises the document's IR. Revision stays what it is. Error 6 when IR is at its highest.
  // Nothing happens without a document.
  void NewRevision(const Text& psReason);

  // --- Inside the library; hosts have no use for these. ---
  void InternalSetDocument(vnDocument* document) override;
  void InternalWrite(common::BagWriter& writer) const;
  void InternalLoad(const common::KeptText& text);
  // Plain text, compared exactly; empty means none.
  const Text& InternalReadPassword() const { return read_password_; }
  void InternalSetReadPassword(const Text& password) { read_password_ = password; }
  const Text& InternalWritePassword() const { return write_password_; }
  void InternalSetWritePassword(const Text& password) { write_password_ = password; }

 private:
  void ReportChange(int32_t detail_id);

  Text key_;
  Text title_;
  Text document_code_;
  int32_t document_status_ = 0;
  float revision_ = 0;
  Text scope_;
  Text purpose_;
  common::Lazy<vnTitleRef> authorised_by_;
  automation::Date date_approved_;
  common::Lazy<automation::Object> fields_;
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
