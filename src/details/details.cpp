#include "vndoc6/details/details.h"

#include "automation/inside.h"
#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "core/part.h"
#include "core/scope.h"
#include "fields/fields.h"
#include "platform/keys.h"
#include "schema/rows.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/document/document.h"

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

struct vnDetails::Schema {
  // The keys are in every file: never change one.
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnDetails::Key>("Key").field(&vnDetails::key_, "K").departs(kFreshWhenEmpty),
        property<&vnDetails::Document>("Document").not_content("leads back to the root"),
        property<&vnDetails::Title, &vnDetails::SetTitle>("Title", "psTitle")
            .field(&vnDetails::title_, "T")
            .reports(kTitle),
        property<&vnDetails::DocumentCode, &vnDetails::SetDocumentCode>("DocumentCode",
                                                                        "psDocumentCode")
            .field(&vnDetails::document_code_, "DC")
            .departs(kReadByPut)
            .reports(kDocumentCode),
        property<&vnDetails::DocumentStatus, &vnDetails::SetDocumentStatus>("DocumentStatus",
                                                                            "plDocumentStatus")
            .field(&vnDetails::document_status_, "DS")
            .departs(kReadByPut)
            .reports(kDocumentStatus),
        property<&vnDetails::Revision, &vnDetails::SetRevision>("Revision", "pnRevision")
            .field(&vnDetails::revision_, "R")
            .departs(kReadByPut)
            .reports(kRevision),
        property<&vnDetails::Scope, &vnDetails::SetScope>("Scope", "psScope")
            .field(&vnDetails::scope_, "S")
            .reports(kScope),
        property<&vnDetails::Purpose, &vnDetails::SetPurpose>("Purpose", "psPurpose")
            .field(&vnDetails::purpose_, "P")
            .reports(kPurpose),
        property<&vnDetails::AuthorisedBy>("AuthorisedBy").field(&vnDetails::authorised_by_, "AB"),
        property<&vnDetails::DateApproved, &vnDetails::SetDateApproved>("DateApproved",
                                                                        "pdDateApproved")
            .field(&vnDetails::date_approved_, "DA")
            .departs(kReadByPut)
            .reports(kDateApproved),
        property<&vnDetails::Fields>("Fields").field(&vnDetails::fields_, "F"),
        property<&vnDetails::Description, &vnDetails::SetDescription>("Description",
                                                                      "psDescription")
            .field(&vnDetails::description_, "Desc"),
        property<&vnDetails::DueDateType, &vnDetails::SetDueDateType>("DueDateType",
                                                                      "plDueDateType")
            .field(&vnDetails::due_date_type_, "DDT"),
        property<&vnDetails::Duration, &vnDetails::SetDuration>("Duration", "psDuration")
            .field(&vnDetails::duration_, "Dur"),
        property<&vnDetails::AssignType, &vnDetails::SetAssignType>("AssignType", "plAssignType")
            .field(&vnDetails::assign_type_, "AT"),

        // The one value that a text without it leaves alone.
        property<&vnDetails::AssignTo, &vnDetails::SetAssignTo>("AssignTo", "plAssignTo")
            .field(&vnDetails::assign_to_, "ATo")
            .departs(kMissingKeeps),
        property<&vnDetails::Table, &vnDetails::SetTable>("Table", "plTable")
            .field(&vnDetails::table_, "Tbl"),
        property<&vnDetails::Form, &vnDetails::SetForm>("Form", "psForm")
            .field(&vnDetails::form_, "Frm"),
        property<&vnDetails::Notes, &vnDetails::SetNotes>("Notes", "psNotes")
            .field(&vnDetails::notes_, "N"),
        method<&vnDetails::NewRevision>("NewRevision", "psReason"),
        // Files without passwords stay as they were.
        unpublished(&vnDetails::read_password_, "RP").departs(kOnlyWhenThere),
        unpublished(&vnDetails::write_password_, "WP").departs(kOnlyWhenThere),
    };
  }();
  static constexpr std::string_view kFileOrder[] = {"K",   "AB",  "DA",   "DC",  "DS",  "P",  "R",
                                                    "T",   "S",   "Desc", "DDT", "Dur", "AT", "ATo",
                                                    "Tbl", "Frm", "N",    "F",   "RP",  "WP"};
};

template <class T>
void vnDetails::Put(T vnDetails::*member, const T& value) {
  ReportChange(schema::Store<Schema>(*this, member, value));
}
template void vnDetails::Put(Text vnDetails::*, const Text&);
template void vnDetails::Put(int32_t vnDetails::*, const int32_t&);
template void vnDetails::Put(float vnDetails::*, const float&);
template void vnDetails::Put(automation::Date vnDetails::*, const automation::Date&);

void vnDetails::ReportChange(int32_t detail_id) {
  if (vndoc6::Scope* scope = document_scope())
    scope->Report<&DocumentListener::DetailsChange>(*this, detail_id);
}

automation::Ref<vnTitleRef> vnDetails::AuthorisedBy() { return ReadPart(authorised_by_, *this); }

automation::Ref<automation::Object> vnDetails::Fields() {
  return fields::Read(*this, fields_, &fields::MakeFieldValues);
}

void vnDetails::NewRevision(const Text& psReason) {
  const automation::Ref<vnDocument> document = Document();
  if (!document) return;
  vndoc6::Scope& scope = ScopeOf(*document);
  const automation::Ref<vnRevision> revision = automation::Make<vnRevision>();
  Inside::StoreRevisionDate(*revision, automation::services().today());
  Inside::StoreRevision(*revision, revision_);
  Inside::StoreReason(*revision, psReason);
  Inside::StoreIR(*revision, scope.IR());
  scope.IncrementIR();
  scope.RevisionHistory().Add(revision.get());
}

void vnDetails::TakeDocument(vnDocument* document) {
  Member::TakeDocument(document);
  if (vnTitleRef* authoriser = authorised_by_.built()) Inside::TakeDocument(*authoriser, document);
}

void vnDetails::Write(bag::BagWriter& writer) const {
  schema::WriteEntries<Schema>(writer, *this, *this);
}

// Hosts that listen while loading hear of the four that are set as a host sets them, not of the
// title, the scope and the purpose.
void vnDetails::Read(const bag::KeptText& text) {
  const automation::Ref<vnDetails> self(this);
  bag::BagReader reader(text);
  schema::ReadEntries<Schema>(reader, *this, *this);
}

const automation::ClassInfo& vnDetails::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnDetails>(
      "vnDetails", "The descriptive data of a document.",
      {0x713B8FFA, 0x823E, 0x43C2, {0x83, 0xA5, 0xDB, 0xE1, 0x82, 0x84, 0x52, 0x47}},
      {0x3BBFDB08, 0xF49B, 0x4D74, {0x92, 0xB0, 0x2E, 0x01, 0x4B, 0xEE, 0x9C, 0x14}},
      Schema::kRows);
  return info;
}

}  // namespace vndoc6
