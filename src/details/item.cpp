#include "details/item.h"

#include "automation/describe.h"
#include "document/document.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;
using bag::BagWriter;
using bag::KeptText;

// --- vnItem ---

Ref<vnItems> vnItem::Items() const { return items_.get(); }

void vnItem::InternalSetItems(vnItems* items) {
  items_ = items;
  ParentChanged();
}

automation::Object* vnItem::FindParent() const { return OwnerOrDocument(items_.get()); }

// The keys are in every file: never change one.
void vnItem::InternalWrite(BagWriter& writer) const {
  writer.Add("ID", id_);
  writer.Add("DisplayName", display_name_);
  writer.Add("Description", description_);
}

void vnItem::InternalLoad(const KeptText& text, const Text& /*key*/) {
  bag::BagReader reader(text);
  id_ = reader.GetLong("ID");
  display_name_ = reader.GetText("DisplayName");
  description_ = reader.GetText("Description");
}

const automation::ClassInfo& vnItem::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnItem>(
      "vnItem", "One entry of a pick-list.",
      {0x0E64A40C, 0x1371, 0x43DC, {0xA6, 0x03, 0x78, 0x73, 0x3F, 0x31, 0x60, 0xED}},
      {0xDD46CDB4, 0xC187, 0x4DB2, {0xA6, 0x0A, 0x70, 0x8D, 0xC3, 0x12, 0x66, 0x96}},
      {
          get<&vnItem::Document>("Document"),
          get<&vnItem::ID>("ID"),
          put<&vnItem::SetID>("ID", "plID"),
          get<&vnItem::DisplayName>("DisplayName"),
          put<&vnItem::SetDisplayName>("DisplayName", "psDisplayName"),
          get<&vnItem::Description>("Description"),
          put<&vnItem::SetDescription>("Description", "psDescription"),
          get<&vnItem::Items>("Items"),
      });
  return info;
}

// --- vnItems ---

void vnItems::Add(vnItem* poItem) {
  if (poItem == nullptr || !AddNumbered(*poItem)) return;
  vnDocument* const document = InternalDocument();
  poItem->InternalSetDocument(document);
  poItem->InternalSetItems(this);
  if (document != nullptr) document->InternalItemChange(*poItem, vnceAdd, 0);
}

void vnItems::Remove(const Variant& pvRef) {
  const Ref<vnItem> removed = store_.Remove(pvRef);
  if (!removed) return;
  if (vnDocument* document = InternalDocument()) {
    document->InternalItemChange(*removed, vnceRemove, 0);
  }
}

Ref<vnItem> vnItems::NewItem(const Text& psDisplayName) {
  const Ref<vnItem> item = automation::Make<vnItem>();
  item->SetDisplayName(psDisplayName);
  Add(item.get());
  return item;
}

void vnItems::InternalWrite(BagWriter& writer) const { WriteNumbered(writer); }

void vnItems::InternalLoad(const KeptText& text) {
  ReadNumbered(text, [this](vnItem* item) { Add(item); });
}

const automation::ClassInfo& vnItems::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnItems>(
      "vnItems", "A named pick-list.",
      {0xDE27809C, 0xA741, 0x4621, {0x8D, 0x4C, 0x95, 0xFF, 0x31, 0x44, 0x66, 0x61}},
      {0x08E8824E, 0x7224, 0x47EB, {0xB5, 0x8A, 0xAC, 0x19, 0xA1, 0xEF, 0xDF, 0x9F}},
      {
          get<&vnItems::Document>("Document"),
          get<&vnItems::Item>("Item", by_reference{"pvIndexKey"}),
          get<&vnItems::Count>("Count"),
          get<&vnItems::NewEnum>("NewEnum"),
          method<&vnItems::Add>("Add", "poItem"),
          method<&vnItems::Remove>("Remove", "pvRef"),
          method<&vnItems::RemoveAll>("RemoveAll"),
          method<&vnItems::NewItem>("NewItem", optional("psDisplayName", u"New Item")),
          get<&vnItems::ListName>("ListName"),
      });
  return info;
}

}  // namespace vndoc6
