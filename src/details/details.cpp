#include "details/details.h"

#include "automation/describe.h"
#include "automation/services.h"
#include "bag/bag_reader.h"
#include "details/revision.h"
#include "document/document.h"
#include "fields/fields.h"
#include "platform/keys.h"

namespace vndoc6 {
namespace {

// What a details change reports. Published: never change one.
enum DetailNumber : int32_t {
  kTitle = 1,
  kDocumentCode = 2,
  kDocumentStatus = 3,
  kRevision = 4,
  kScope = 5,
  kPurpose = 6,
  kDateApproved = 7,
};

}  // namespace

void vnDetails::SetTitle(const Text& psTitle) {
  title_ = psTitle;
  ReportChange(kTitle);
}

void vnDetails::SetDocumentCode(const Text& psDocumentCode) {
  document_code_ = psDocumentCode;
  ReportChange(kDocumentCode);
}

void vnDetails::SetDocumentStatus(int32_t plDocumentStatus) {
  document_status_ = plDocumentStatus;
  ReportChange(kDocumentStatus);
}

void vnDetails::SetRevision(float pnRevision) {
  revision_ = pnRevision;
  ReportChange(kRevision);
}

void vnDetails::SetScope(const Text& psScope) {
  scope_ = psScope;
  ReportChange(kScope);
}

void vnDetails::SetPurpose(const Text& psPurpose) {
  purpose_ = psPurpose;
  ReportChange(kPurpose);
}

void vnDetails::SetDateApproved(automation::Date pdDateApproved) {
  date_approved_ = pdDateApproved;
  ReportChange(kDateApproved);
}

void vnDetails::ReportChange(int32_t detail_id) {
  if (vnDocument* document = InternalDocument()) document->InternalDetailsChange(*this, detail_id);
}

automation::Ref<vnTitleRef> vnDetails::AuthorisedBy() {
  return authorised_by_.Get(
      [this] {
        automation::Ref<vnTitleRef> authoriser = automation::Make<vnTitleRef>();
        authoriser->InternalSetDocument(InternalDocument());
        return authoriser;
      },
      [](vnTitleRef& authoriser, const bag::KeptText& text) { authoriser.InternalLoad(text); });
}

automation::Ref<automation::Object> vnDetails::Fields() {
  return fields::Read(*this, fields_, &fields::MakeFieldValues);
}

void vnDetails::NewRevision(const Text& psReason) {
  const automation::Ref<vnDocument> document = Document();
  if (!document) return;
  const automation::Ref<vnRevision> revision = automation::Make<vnRevision>();
  revision->InternalSetRevisionDate(automation::services().today());
  revision->InternalSetRevision(revision_);
  revision->InternalSetReason(psReason);
  revision->InternalSetIR(document->IR());
  document->InternalIncrementIR();
  document->RevisionHistory()->Add(revision.get());
}

void vnDetails::InternalSetDocument(vnDocument* document) {
  Member::InternalSetDocument(document);
  if (vnTitleRef* authoriser = authorised_by_.built()) authoriser->InternalSetDocument(document);
}

// Every key is written every time, the passwords excepted: files without them stay as they were.
void vnDetails::InternalWrite(bag::BagWriter& writer) const {
  writer.Add("K", key_.empty() ? platform::NewKey() : key_);
  authorised_by_.Save(writer, "AB", [](const vnTitleRef& authoriser, bag::BagWriter& nested) {
    authoriser.InternalWrite(nested);
  });
  writer.Add("DA", date_approved_);
  writer.Add("DC", document_code_);
  writer.Add("DS", document_status_);
  writer.Add("P", purpose_);
  writer.Add("R", revision_);
  writer.Add("T", title_);
  writer.Add("S", scope_);
  writer.Add("Desc", description_);
  writer.Add("DDT", due_date_type_);
  writer.Add("Dur", duration_);
  writer.Add("AT", assign_type_);
  writer.Add("ATo", assign_to_);
  writer.Add("Tbl", table_);
  writer.Add("Frm", form_);
  writer.Add("N", notes_);
  fields::Write(writer, "F", fields_);
  if (!read_password_.empty()) writer.Add("RP", read_password_);
  if (!write_password_.empty()) writer.Add("WP", write_password_);
}

// Hosts that listen while loading hear of the four that are set as a host sets them, not of the
// title, the scope and the purpose.
void vnDetails::InternalLoad(const bag::KeptText& text) {
  const automation::Ref<vnDetails> self(this);
  bag::BagReader reader(text);
  key_ = reader.GetText("K");
  authorised_by_.Reset(reader.GetKept("AB"));
  SetDateApproved(reader.GetDate("DA"));
  SetDocumentCode(reader.GetText("DC"));
  SetDocumentStatus(reader.GetLong("DS"));
  purpose_ = reader.GetText("P");
  SetRevision(reader.GetSingle("R"));
  scope_ = reader.GetText("S");
  title_ = reader.GetText("T");
  description_ = reader.GetText("Desc");
  due_date_type_ = reader.GetLong("DDT");
  duration_ = reader.GetText("Dur");
  assign_type_ = reader.GetLong("AT");
  // The one value that a text without it leaves alone.
  assign_to_ = reader.GetLong("ATo", assign_to_);
  table_ = reader.GetLong("Tbl");
  form_ = reader.GetText("Frm");
  notes_ = reader.GetText("N");
  fields_.Reset(reader.GetKept("F"));
  read_password_ = reader.GetText("RP");
  write_password_ = reader.GetText("WP");
}

const automation::ClassInfo& vnDetails::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnDetails>(
      "vnDetails", "The descriptive data of a document.",
      {0x713B8FFA, 0x823E, 0x43C2, {0x83, 0xA5, 0xDB, 0xE1, 0x82, 0x84, 0x52, 0x47}},
      {0x3BBFDB08, 0xF49B, 0x4D74, {0x92, 0xB0, 0x2E, 0x01, 0x4B, 0xEE, 0x9C, 0x14}},
      {
          get<&vnDetails::Key>("Key"),
          get<&vnDetails::Document>("Document"),
          get<&vnDetails::Title>("Title"),
          put<&vnDetails::SetTitle>("Title", "psTitle"),
          get<&vnDetails::DocumentCode>("DocumentCode"),
          put<&vnDetails::SetDocumentCode>("DocumentCode", "psDocumentCode"),
          get<&vnDetails::DocumentStatus>("DocumentStatus"),
          put<&vnDetails::SetDocumentStatus>("DocumentStatus", "plDocumentStatus"),
          get<&vnDetails::Revision>("Revision"),
          put<&vnDetails::SetRevision>("Revision", "pnRevision"),
          get<&vnDetails::Scope>("Scope"),
          put<&vnDetails::SetScope>("Scope", "psScope"),
          get<&vnDetails::Purpose>("Purpose"),
          put<&vnDetails::SetPurpose>("Purpose", "psPurpose"),
          get<&vnDetails::AuthorisedBy>("AuthorisedBy"),
          get<&vnDetails::DateApproved>("DateApproved"),
          put<&vnDetails::SetDateApproved>("DateApproved", "pdDateApproved"),
          get<&vnDetails::Fields>("Fields"),
          get<&vnDetails::Description>("Description"),
          put<&vnDetails::SetDescription>("Description", "psDescription"),
          get<&vnDetails::DueDateType>("DueDateType"),
          put<&vnDetails::SetDueDateType>("DueDateType", "plDueDateType"),
          get<&vnDetails::Duration>("Duration"),
          put<&vnDetails::SetDuration>("Duration", "psDuration"),
          get<&vnDetails::AssignType>("AssignType"),
          put<&vnDetails::SetAssignType>("AssignType", "plAssignType"),
          get<&vnDetails::AssignTo>("AssignTo"),
          put<&vnDetails::SetAssignTo>("AssignTo", "plAssignTo"),
          get<&vnDetails::Table>("Table"),
          put<&vnDetails::SetTable>("Table", "plTable"),
          get<&vnDetails::Form>("Form"),
          put<&vnDetails::SetForm>("Form", "psForm"),
          get<&vnDetails::Notes>("Notes"),
          put<&vnDetails::SetNotes>("Notes", "psNotes"),
          method<&vnDetails::NewRevision>("NewRevision", "psReason"),
      });
  return info;
}

}  // namespace vndoc6
