// vnItem: one entry of a pick-list. vnItems: a named pick-list.
#pragma once

#include "vndoc6/collections/numbered_collection.h"

namespace vndoc6 {

class vnItems;

// Setting an item's properties reports nothing.
class vnItem : public Member, public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // The item's number in its list; 0 until it has one. It stays in the list under the number it was
  // added with.
  int32_t ID() const { return id_; }
  void SetID(int32_t plID) { id_ = plID; }
  // The entry as users see it.
  const Text& DisplayName() const { return display_name_; }
  void SetDisplayName(const Text& psDisplayName) { display_name_ = psDisplayName; }
  // What the entry means; free text.
  const Text& Description() const { return description_; }
  void SetDescription(const Text& psDescription) { description_ = psDescription; }
  // The list that the item was added to last; Nothing for none.
  automation::Ref<vnItems> Items() const;

 protected:
  friend struct Inside;
  void StoreItems(vnItems* items);
  void Write(bag::BagWriter& writer) const;
  // Items are keyed by their ID; `key` is ignored.
  void Read(const bag::KeptText& text, const Text& key);

  automation::Object* FindParent() const override;

 private:
  struct Schema;
  int32_t id_ = 0;
  Text display_name_;
  Text description_;
  automation::Weak<vnItems> items_;
};

class vnItems : public NumberedCollection<vnItem> {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // Adds an item under the digits of its ID; one with ID 0 gets the next number first, also one
  // that was saved with ID 0. Reports vnceAdd. Nothing is added when the number is taken.
  void Add(vnItem* poItem);
  // Takes an item out and reports vnceRemove; nothing happens when there is none.
  void Remove(const automation::Variant& pvRef);
  // A new item with the next number. It is given back also when its number was taken, so that it
  // is not in the list.
  automation::Ref<vnItem> NewItem(const Text& psDisplayName = u"New Item");

 private:
  friend struct Inside;
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text);
};

}  // namespace vndoc6
