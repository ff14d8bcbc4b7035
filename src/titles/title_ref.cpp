#include "vndoc6/titles/title_ref.h"

#include <optional>

#include "automation/inside.h"
#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "collections/collection_text.h"
#include "core/scope.h"
#include "schema/rows.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/document/document.h"
#include "vndoc6/titles/titles.h"

namespace vndoc6 {
namespace {

constexpr MemberEntries kTitleRefEntries{"TR", MemberEntries::Name::kByPosition, "R"};

using automation::Variant;

// Nothing for a value that has no form as text.
std::optional<Text> TextIn(const Variant& value) {
  try {
    return value.ToText();
  } catch (const automation::Error&) {
    return std::nullopt;
  }
}

}  // namespace

automation::Ref<vnTitles> vnTitleRef::DocumentTitles() const {
  Scope* const scope = document_scope();
  return scope != nullptr ? &scope->Titles() : nullptr;
}

void vnTitleRef::SetRef(const Text& psRef) {
  const automation::Ref<vnTitleRef> self(this);
  const automation::Ref<vnTitles> titles = DocumentTitles();
  if (!titles || !titles->HandlerAvailable()) return;
  const automation::Ref<vnTitle> title = titles->Item(Variant(psRef));
  if (!title) return;
  ref_ = psRef;
  display_name_cache_ = title->DisplayName();
}

Text vnTitleRef::DisplayName() {
  const automation::Ref<vnTitleRef> self(this);
  const automation::Ref<vnTitles> titles = DocumentTitles();
  if (!titles || !titles->HandlerAvailable()) return display_name_cache_;
  const automation::Ref<vnTitle> title = titles->Item(Variant(ref_));
  return title ? title->DisplayName() : u".";
}

void vnTitleRef::SetDisplayName(const Text& psDisplayName) {
  const automation::Ref<vnTitles> titles = DocumentTitles();
  if (titles && !titles->UsingHandler()) display_name_cache_ = psDisplayName;
}

void vnTitleRef::Clear() {
  ref_.clear();
  display_name_cache_.clear();
}

struct vnTitleRef::Schema {
  // The keys are in every file: never change one.
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnTitleRef::Document>("Document").not_content("leads back to the root"),
        property<&vnTitleRef::Ref, &vnTitleRef::SetRef>("Ref", "psRef")
            .field(&vnTitleRef::ref_, "R")
            .restored_by<&vnTitleRef::RestoreRef>(),
        property<&vnTitleRef::DisplayNameCache>("DisplayNameCache")
            .field(&vnTitleRef::display_name_cache_, "DN"),
        property<&vnTitleRef::DisplayName, &vnTitleRef::SetDisplayName>("DisplayName",
                                                                        "psDisplayName")
            .restored_by<&vnTitleRef::RestoreDisplayName>(),
        method<&vnTitleRef::Clear>("Clear"),
    };
  }();
};

void vnTitleRef::Write(bag::BagWriter& writer) const {
  schema::WriteEntries<Schema>(writer, *this, *this);
}

void vnTitleRef::WriteValues(bag::BagWriter& writer) const {
  schema::WriteRows<Schema>(writer, *this, *this);
}

void vnTitleRef::Read(const bag::KeptText& text, const Text& /*key*/) {
  bag::BagReader reader(text);
  schema::ReadEntries<Schema>(reader, *this, *this);
}

// The name is the title handler's where there is one: what was last known of it counts.
void vnTitleRef::RestoreDisplayName(const Text& name) {
  if (display_name_cache_.empty()) display_name_cache_ = name;
}

bool vnTitleRefs::UsingHandler() const {
  Scope* const scope = document_scope();
  return scope != nullptr && scope->Titles().UsingHandler();
}

automation::Ref<vnTitleRef> vnTitleRefs::Add(const Variant& pvRef) {
  const automation::Ref<vnTitleRefs> self(this);
  const std::optional<Text> text = TextIn(pvRef);
  if (!text) return nullptr;
  return UsingHandler() ? AddTitle(*text) : AddFreeText(*text);
}

automation::Ref<vnTitleRef> vnTitleRefs::AddTitle(const Text& ref) {
  if (vnTitleRef* const present = store_.Find(TextView(ref))) return present;
  automation::Ref<vnTitleRef> reference = automation::Make<vnTitleRef>();
  Inside::TakeDocument(*reference, document());
  reference->SetRef(ref);
  AddReference(*reference);
  return reference;
}

automation::Ref<vnTitleRef> vnTitleRefs::AddFreeText(const Text& text) {
  if (store_.empty()) {
    const automation::Ref<vnTitleRef> reference = automation::Make<vnTitleRef>();
    AddReference(*reference);
  }
  store_[0].SetDisplayName(text);
  return &store_[0];
}

void vnTitleRefs::AddReference(vnTitleRef& reference) {
  Inside::TakeDocument(reference, document());
  if (!UsingHandler()) RemoveAll();
  store_.Add(reference.Ref(), reference);
}

// Whether there is a handler is known when all of the document is there.
void vnTitleRefs::RestoreReference(vnTitleRef* reference) {
  store_.Add(reference->Ref(), *reference);
}

void vnTitleRefs::Write(bag::BagWriter& writer) const { WriteText(writer, kTitleRefEntries); }

void vnTitleRefs::WriteValues(bag::BagWriter& writer) const {
  for (size_t i = 0; i < store_.size(); ++i) {
    writer.AddNested("TR" + std::to_string(i + 1),
                     [&](bag::BagWriter& nested) { Inside::WriteValues(store_[i], nested); });
  }
}

void vnTitleRefs::Read(const bag::KeptText& text) {
  ReadMembers(text, kTitleRefEntries, [this](vnTitleRef* reference) { AddReference(*reference); });
}

const automation::ClassInfo& vnTitleRef::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnTitleRef>(
      "vnTitleRef", "A reference to a title of the document, or a free text in its place.",
      {0xD8F8D0BA, 0x3482, 0x428B, {0x95, 0xF8, 0xD5, 0x07, 0x48, 0x1E, 0x35, 0x58}},
      {0x64573ADF, 0x1E72, 0x48A1, {0x94, 0x84, 0xF2, 0xF5, 0x40, 0x0E, 0x86, 0x38}},
      Schema::kRows);
  return info;
}

const automation::ClassInfo& vnTitleRefs::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnTitleRefs>(
      "vnTitleRefs", "Who performs or approves something: references to titles.",
      {0x2D68BD7C, 0xFD15, 0x4AB6, {0x97, 0x42, 0xA8, 0x33, 0x72, 0x06, 0x96, 0x2E}},
      {0x7C840E48, 0x212E, 0x43DF, {0x80, 0x49, 0x03, 0x31, 0x3A, 0xF0, 0x83, 0x04}},
      std::tuple{
          property<&vnTitleRefs::Document>("Document").not_content("leads back to the root"),
          property<&vnTitleRefs::Item>("Item", by_reference{"pvIndexKey"}),
          property<&vnTitleRefs::Count>("Count").not_content("the members themselves are read"),
          property<&vnTitleRefs::NewEnum>("NewEnum").not_content("the members themselves are read"),
          method<&vnTitleRefs::RemoveAll>("RemoveAll"),
          method<&vnTitleRefs::Add>("Add", "pvRef").restored_by<&vnTitleRefs::RestoreReference>(),
      });
  return info;
}

}  // namespace vndoc6
