#include "process/condition.h"

#include "automation/describe.h"
#include "core/detail_id.h"
#include "document/document.h"
#include "process/link.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;
using bag::BagWriter;
using bag::KeptText;

namespace {

// What conditions report besides vndConditionTest: there are no events of their own for these.
constexpr int32_t kAdded = 1;
constexpr int32_t kRemoved = 2;

}  // namespace

// --- vnCondition ---

Ref<vnLink> vnCondition::Link() const { return link_.get(); }

void vnCondition::SetLink(vnLink* poLink) {
  link_ = poLink;
  ParentChanged();
}

automation::Object* vnCondition::FindParent() const { return OwnerOrDocument(link_.get()); }

void vnCondition::SetConditionTest(const Text& psConditionTest) {
  condition_test_ = psConditionTest;
  ReportTest();
}

void vnCondition::SetFailMessage(const Text& psFailMessage) {
  fail_message_ = psFailMessage;
  // The test's number, not vndFailMessage: hosts listen for this one.
  ReportTest();
}

void vnCondition::ReportTest() {
  if (vnDocument* document = InternalDocument()) {
    document->InternalConditionChange(*this, vndConditionTest);
  }
}

Text vnCondition::Save() const {
  return bag::BagTextOf([this](BagWriter& writer) { InternalWrite(writer); });
}

void vnCondition::Load(const Text& psLoad, const Text& psKey) {
  InternalLoad(KeptText(psLoad), psKey);
}

// The keys are in every file: never change one.
void vnCondition::InternalWrite(BagWriter& writer) const {
  writer.Add("K", key_);
  writer.Add("DN", display_name_);
  writer.Add("CT", condition_test_);
  writer.Add("FM", fail_message_);
}

void vnCondition::InternalLoad(const KeptText& text, const Text& key) {
  bag::BagReader reader(text);
  key_ = key.empty() ? reader.GetText("K") : key;
  display_name_ = reader.GetText("DN");
  condition_test_ = reader.GetText("CT");
  fail_message_ = reader.GetText("FM");
}

void vnCondition::InternalCopyFrom(const vnCondition& other) {
  display_name_ = other.display_name_;
  condition_test_ = other.condition_test_;
  fail_message_ = other.fail_message_;
}

const automation::ClassInfo& vnCondition::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnCondition>(
      "vnCondition", "One named test of a link or a step.",
      {0x99B6FA54, 0xFE30, 0x49E2, {0x92, 0xED, 0xCA, 0xEF, 0xBD, 0x2A, 0x9C, 0x26}},
      {0xB3A96EC0, 0x3C34, 0x42AD, {0x9E, 0x1C, 0x81, 0xF9, 0x6E, 0x02, 0x8B, 0x6A}},
      {
          get<&vnCondition::Document>("Document"),
          putref<&vnCondition::SetDocument>("Document", "poDocument"),
          get<&vnCondition::Link>("Link"),
          putref<&vnCondition::SetLink>("Link", "poLink"),
          get<&vnCondition::Key>("Key"),
          get<&vnCondition::DisplayName>("DisplayName"),
          put<&vnCondition::SetDisplayName>("DisplayName", "psDisplayName"),
          get<&vnCondition::ConditionTest>("ConditionTest"),
          put<&vnCondition::SetConditionTest>("ConditionTest", "psConditionTest"),
          get<&vnCondition::FailMessage>("FailMessage"),
          put<&vnCondition::SetFailMessage>("FailMessage", "psFailMessage"),
          method<&vnCondition::Save>("Save"),
          method<&vnCondition::Load>("Load", "psLoad", optional("psKey", u"")),
      });
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
  poCondition->InternalSetDocument(InternalDocument());
  if (!AddUnderOwnKey(*poCondition)) return;
  if (vnDocument* document = InternalDocument()) {
    document->InternalConditionChange(*poCondition, kAdded);
  }
}

void vnConditions::Remove(const Variant& pvRef) { InternalRemove(pvRef); }

bool vnConditions::InternalRemove(const Variant& ref) {
  const Ref<vnCondition> removed = store_.Remove(ref);
  if (!removed) return false;
  if (vnDocument* document = InternalDocument()) {
    document->InternalConditionChange(*removed, kRemoved);
  }
  return true;
}

void vnConditions::InternalWrite(BagWriter& writer) const { WriteByKey(writer, u'C'); }

void vnConditions::InternalLoad(const KeptText& text) {
  ReadMembers(text, [this](vnCondition* condition) { Add(condition); });
}

const automation::ClassInfo& vnConditions::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnConditions>(
      "vnConditions", "The tests of a link or a step.",
      {0x3C2F7737, 0x129C, 0x480F, {0x97, 0xBA, 0x98, 0xCF, 0x6D, 0xE8, 0xCD, 0xA3}},
      {0x622C9949, 0x2334, 0x4324, {0x90, 0xEE, 0xF5, 0xFF, 0x41, 0x1D, 0x10, 0xA8}},
      {
          get<&vnConditions::Document>("Document"),
          putref<&vnConditions::SetLink>("Link", "poLink"),
          get<&vnConditions::Item>("Item", by_reference{"pvIndexKey"}),
          get<&vnConditions::Count>("Count"),
          get<&vnConditions::NewEnum>("NewEnum"),
          method<&vnConditions::Add>("Add", "poCondition"),
          method<&vnConditions::Remove>("Remove", "pvRef"),
          method<&vnConditions::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
