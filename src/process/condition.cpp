#include "vndoc6/process/condition.h"

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "collections/collection_text.h"
#include "core/scope.h"
#include "schema/rows.h"
#include "vndoc6/core/detail_id.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/link.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;
using bag::BagWriter;
using bag::KeptText;

namespace {

constexpr MemberEntries kConditionEntries{"C"};

}  // namespace

// --- vnCondition ---

struct vnCondition::Schema {
  // The keys are in every file: never change one.
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnCondition::Document, &vnCondition::SetDocument>("Document", "poDocument")
            .not_content("leads back to the root"),
        property<&vnCondition::Link, &vnCondition::SetLink>("Link", "poLink")
            .not_content("leads back to the owner"),
        property<&vnCondition::Key>("Key").identity(&vnCondition::key_, "K"),
        property<&vnCondition::DisplayName, &vnCondition::SetDisplayName>("DisplayName",
                                                                          "psDisplayName")
            .field(&vnCondition::display_name_, "DN"),
        property<&vnCondition::ConditionTest, &vnCondition::SetConditionTest>("ConditionTest",
                                                                              "psConditionTest")
            .field(&vnCondition::condition_test_, "CT")
            .reports(vndConditionTest),

        // The test's number, not vndFailMessage: hosts listen for this one.
        property<&vnCondition::FailMessage, &vnCondition::SetFailMessage>("FailMessage",
                                                                          "psFailMessage")
            .field(&vnCondition::fail_message_, "FM")
            .reports(vndConditionTest),
        method<&vnCondition::Save>("Save"),
        method<&vnCondition::Load>("Load", "psLoad", optional("psKey", u"")),
    };
  }();
};

Ref<vnLink> vnCondition::Link() const { return link_.get(); }

void vnCondition::SetLink(vnLink* poLink) {
  link_ = poLink;
  ParentChanged();
}

automation::Object* vnCondition::FindParent() const { return OwnerOrDocument(link_.get()); }

void vnCondition::Put(Text vnCondition::*member, const Text& value) {
  const int32_t detail_id = schema::Store<Schema>(*this, member, value);
  if (Scope* scope = document_scope()) {
    scope->Report<&DocumentListener::ConditionChange>(*this, detail_id);
  }
}

Text vnCondition::Save() const {
  return bag::BagTextOf([this](BagWriter& writer) { Write(writer); });
}

void vnCondition::Load(const Text& psLoad, const Text& psKey) { Read(KeptText(psLoad), psKey); }

void vnCondition::Write(BagWriter& writer) const {
  schema::WriteEntries<Schema>(writer, *this, *this);
}

void vnCondition::Read(const KeptText& text, const Text& key) {
  schema::ReadObject<Schema>(text, *this, *this, key);
}

void vnCondition::CopyFrom(const vnCondition& other) { schema::CopyValues<Schema>(other, *this); }

const automation::ClassInfo& vnCondition::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnCondition>(
      "vnCondition", "One named test of a link or a step.",
      {0x99B6FA54, 0xFE30, 0x49E2, {0x92, 0xED, 0xCA, 0xEF, 0xBD, 0x2A, 0x9C, 0x26}},
      {0xB3A96EC0, 0x3C34, 0x42AD, {0x9E, 0x1C, 0x81, 0xF9, 0x6E, 0x02, 0x8B, 0x6A}},
      Schema::kRows);
  return info;
}

// --- vnConditions ---

void vnConditions::SetLink(vnLink* poLink) {
  link_ = poLink;
  ParentChanged();
}

automation::Object* vnConditions::FindParent() const { return OwnerOrDocument(link_.get()); }

void vnConditions::Add(vnCondition* poCondition) {
  if (poCondition == nullptr) return;
  // The document comes first: also a condition whose key is taken gets it.
  Inside::TakeDocument(*poCondition, document());
  if (!AddUnderOwnKey(*poCondition)) return;
  if (Scope* scope = document_scope()) {
    scope->Report<&DocumentListener::ConditionChange>(*poCondition, int32_t{vnceAdd});
  }
}

void vnConditions::Remove(const Variant& pvRef) { RemoveMember(pvRef); }

bool vnConditions::RemoveMember(const Variant& ref) {
  const Ref<vnCondition> removed = store_.Remove(ref);
  if (!removed) return false;
  if (Scope* scope = document_scope()) {
    scope->Report<&DocumentListener::ConditionChange>(*removed, int32_t{vnceRemove});
  }
  return true;
}

void vnConditions::Write(BagWriter& writer) const { WriteText(writer, kConditionEntries); }

void vnConditions::Read(const KeptText& text) {
  ReadMembers(text, kConditionEntries, [this](vnCondition* condition) { Add(condition); });
}

const automation::ClassInfo& vnConditions::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnConditions>(
      "vnConditions", "The tests of a link or a step.",
      {0x3C2F7737, 0x129C, 0x480F, {0x97, 0xBA, 0x98, 0xCF, 0x6D, 0xE8, 0xCD, 0xA3}},
      {0x622C9949, 0x2334, 0x4324, {0x90, 0xEE, 0xF5, 0xFF, 0x41, 0x1D, 0x10, 0xA8}},
      std::tuple{
          property<&vnConditions::Document>("Document").not_content("leads back to the root"),
          putref<&vnConditions::SetLink>("Link", "poLink"),
          property<&vnConditions::Item>("Item", by_reference{"pvIndexKey"}),
          property<&vnConditions::Count>("Count").not_content("the members themselves are read"),
          property<&vnConditions::NewEnum>("NewEnum").not_content(
              "the members themselves are read"),
          method<&vnConditions::Add>("Add", "poCondition"),
          method<&vnConditions::Remove>("Remove", "pvRef"),
          method<&vnConditions::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
