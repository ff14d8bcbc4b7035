#include "vndoc6/details/item.h"

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "collections/collection_text.h"
#include "core/scope.h"
#include "schema/rows.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;
using bag::BagWriter;
using bag::KeptText;

// --- vnItem ---

struct vnItem::Schema {
  // The keys are in every file: never change one.
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnItem::Document>("Document").not_content("leads back to the root"),
        property<&vnItem::ID, &vnItem::SetID>("ID", "plID").field(&vnItem::id_, "ID"),
        property<&vnItem::DisplayName, &vnItem::SetDisplayName>("DisplayName", "psDisplayName")
            .field(&vnItem::display_name_, "DisplayName"),
        property<&vnItem::Description, &vnItem::SetDescription>("Description", "psDescription")
            .field(&vnItem::description_, "Description"),
        property<&vnItem::Items>("Items").not_content("leads back to the owner"),
    };
  }();
};

Ref<vnItems> vnItem::Items() const { return items_.get(); }

void vnItem::StoreItems(vnItems* items) {
  items_ = items;
  ParentChanged();
}

automation::Object* vnItem::FindParent() const { return OwnerOrDocument(items_.get()); }

void vnItem::Write(BagWriter& writer) const { schema::WriteEntries<Schema>(writer, *this, *this); }

void vnItem::Read(const KeptText& text, const Text& key) {
  schema::ReadObject<Schema>(text, *this, *this, key);
}

const automation::ClassInfo& vnItem::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnItem>(
      "vnItem", "One entry of a pick-list.",
      {0x0E64A40C, 0x1371, 0x43DC, {0xA6, 0x03, 0x78, 0x73, 0x3F, 0x31, 0x60, 0xED}},
      {0xDD46CDB4, 0xC187, 0x4DB2, {0xA6, 0x0A, 0x70, 0x8D, 0xC3, 0x12, 0x66, 0x96}},
      Schema::kRows);
  return info;
}

// --- vnItems ---

void vnItems::Add(vnItem* poItem) {
  if (poItem == nullptr || !AddNumbered(*poItem)) return;
  Inside::TakeDocument(*poItem, document());
  Inside::StoreItems(*poItem, this);
  if (Scope* scope = document_scope()) {
    scope->Report<&DocumentListener::ItemChange>(*poItem, vnceAdd, int32_t{0});
  }
}

void vnItems::Remove(const Variant& pvRef) {
  const Ref<vnItem> removed = store_.Remove(pvRef);
  if (!removed) return;
  if (Scope* scope = document_scope()) {
    scope->Report<&DocumentListener::ItemChange>(*removed, vnceRemove, int32_t{0});
  }
}

Ref<vnItem> vnItems::NewItem(const Text& psDisplayName) {
  const Ref<vnItem> item = automation::Make<vnItem>();
  item->SetDisplayName(psDisplayName);
  Add(item.get());
  return item;
}

void vnItems::Write(BagWriter& writer) const { WriteNumbered(writer); }

void vnItems::Read(const KeptText& text) {
  ReadNumbered(text, [this](vnItem* item) { Add(item); });
}

const automation::ClassInfo& vnItems::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnItems>(
      "vnItems", "A named pick-list.",
      {0xDE27809C, 0xA741, 0x4621, {0x8D, 0x4C, 0x95, 0xFF, 0x31, 0x44, 0x66, 0x61}},
      {0x08E8824E, 0x7224, 0x47EB, {0xB5, 0x8A, 0xAC, 0x19, 0xA1, 0xEF, 0xDF, 0x9F}},
      std::tuple{
          property<&vnItems::Document>("Document").not_content("leads back to the root"),
          property<&vnItems::Item>("Item", by_reference{"pvIndexKey"}),
          property<&vnItems::Count>("Count").not_content("the members themselves are read"),
          property<&vnItems::NewEnum>("NewEnum").not_content("the members themselves are read"),
          method<&vnItems::Add>("Add", "poItem"),
          method<&vnItems::Remove>("Remove", "pvRef"),
          method<&vnItems::RemoveAll>("RemoveAll"),
          method<&vnItems::NewItem>("NewItem", optional("psDisplayName", u"New Item")),
          property<&vnItems::ListName>("ListName"),
      });
  return info;
}

}  // namespace vndoc6
