#include "vndoc6/details/revision.h"

#include "automation/inside.h"
#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "collections/collection_text.h"
#include "core/scope.h"
#include "schema/rows.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/file.h"

namespace vndoc6 {

using automation::Variant;

namespace {

constexpr MemberEntries kRevisionEntries{"F", MemberEntries::Name::kByPosition, "IR"};

}  // namespace

struct vnRevision::Schema {
  // The keys are in every file: never change one.
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnRevision::Document>("Document").not_content("leads back to the root"),
        property<&vnRevision::RevisionDate>("RevisionDate").field(&vnRevision::revision_date_, "D"),
        property<&vnRevision::Revision>("Revision").field(&vnRevision::revision_, "R"),
        property<&vnRevision::IR>("IR").field(&vnRevision::ir_, "IR"),
        property<&vnRevision::Reason>("Reason").field(&vnRevision::reason_, "Rs"),
    };
  }();
};

void vnRevision::Write(bag::BagWriter& writer) const {
  schema::WriteEntries<Schema>(writer, *this, *this);
}

bool vnRevision::Read(const bag::KeptText& text) {
  bag::BagReader reader(text);
  // A missing number or date can't be converted either.
  const auto value = [&](std::string_view key) { return reader.Get(key).value_or(Variant(u"")); };
  try {
    const automation::Date date = value("D").ToDate();
    const float revision = value("R").ToSingle();
    const int32_t ir = value("IR").ToLong();
    reason_ = value("Rs").ToText();
    revision_date_ = date;
    revision_ = revision;
    ir_ = ir;
    unknown_entries().TakeFrom(reader);
  } catch (const automation::Error&) {
    return false;
  }
  return true;
}

// Hosts hear nothing of revisions that come: they never did.
void vnRevisions::Add(vnRevision* poRevision) {
  if (poRevision == nullptr) return;
  if (!store_.Add(automation::NumberText(poRevision->IR()), *poRevision)) return;
  Inside::TakeDocument(*poRevision, document());
}

void vnRevisions::AddImport(int32_t plIR, const Text& psReason, int32_t plRevision,
                            automation::Date pdDate) {
  const Scope* const scope = document_scope();
  if (scope == nullptr || !scope->IsAssignmentUnlocked()) {
    throw automation::Error(automation::kWrongState, {}, u"vnRevisions.AddImport");
  }
  const automation::Ref<vnRevision> revision = automation::Make<vnRevision>();
  Inside::StoreIR(*revision, plIR);
  Inside::StoreReason(*revision, psReason);
  Inside::StoreRevision(*revision, static_cast<float>(plRevision));
  Inside::StoreRevisionDate(*revision, pdDate);
  Add(revision.get());
}

// Hosts have always been told of a file that is none.
void vnRevisions::Remove(const Variant& pvRef) {
  if (!store_.Remove(pvRef)) return;
  if (Scope* scope = document_scope()) {
    scope->Report<&DocumentListener::StepFileChange>(static_cast<vnFile*>(nullptr), vnceRemove,
                                                     int32_t{0});
  }
}

void vnRevisions::Write(bag::BagWriter& writer) const { WriteText(writer, kRevisionEntries); }

void vnRevisions::Read(const bag::KeptText& text) {
  ForEachMember(text, kRevisionEntries, [this](const bag::KeptText& revision_text) {
    const automation::Ref<vnRevision> revision = automation::Make<vnRevision>();
    if (Inside::Read(*revision, revision_text)) Add(revision.get());
  });
}

const automation::ClassInfo& vnRevision::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnRevision>(
      "vnRevision", "A revision that the document has gone through.",
      {0x25112D78, 0x3ECE, 0x4A6D, {0x8D, 0xFD, 0xFD, 0x46, 0xC9, 0xDA, 0xA1, 0x1A}},
      {0x75DC4571, 0x6A09, 0x4B15, {0x99, 0x05, 0x9C, 0x63, 0xA8, 0x29, 0x3F, 0x04}},
      Schema::kRows);
  return info;
}

const automation::ClassInfo& vnRevisions::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnRevisions>(
      "vnRevisions", "The revision history of a document. Its members are keyed by their IR.",
      {0xAB9EB572, 0x7999, 0x4923, {0x87, 0x82, 0xFE, 0xD5, 0x89, 0x35, 0x33, 0x28}},
      {0xB7787F87, 0x6E39, 0x4EB0, {0xB7, 0x58, 0x11, 0x9C, 0x39, 0x4D, 0xF5, 0x3D}},
      std::tuple{
          property<&vnRevisions::Document>("Document").not_content("leads back to the root"),
          property<&vnRevisions::Item>("Item", by_reference{"pvIndexKey"}),
          property<&vnRevisions::Count>("Count").not_content("the members themselves are read"),
          property<&vnRevisions::NewEnum>("NewEnum").not_content("the members themselves are read"),
          method<&vnRevisions::Add>("Add", "poRevision"),
          method<&vnRevisions::AddImport>("AddImport", "plIR", "psReason", "plRevision", "pdDate")
              .hidden(),
          method<&vnRevisions::Remove>("Remove", "pvRef"),
          method<&vnRevisions::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
