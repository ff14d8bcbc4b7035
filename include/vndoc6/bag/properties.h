// Properties: the property bag, an ordered run of entries with a key and a value each. Everything
// the library saves is the text of such a bag; hosts keep what they like in bags of their own and
// in those of a document and its steps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <unordered_map>
#include <vector>

#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/enumerator.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/automation/text.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/bag/kept_text.h"

namespace vndoc6 {

class Properties;

// An entry of a bag. It is the bag's own: setting it changes the bag. Removed from its bag, it
// lives on as long as it is held.
class Property : public automation::Object {
 public:
  Property() = default;
  Property(Text key, const automation::Variant& value);

  // The entry's key in its bag; a bag tells keys apart exactly.
  Text Key() const { return key_; }
  // What was put there last: a value, or an object. An object becomes the entry's object too; any
  // other value takes the object away.
  automation::Variant Value() const;
  // An object becomes the entry's object too; any other value takes the object away.
  void SetValue(const automation::Variant& pvValue);
  // The object attached beside the value; Nothing when there is none. In the bag's text a picture
  // stands in place of the value, so that it is read back as the value and as the object. Any other
  // object is kept only as long as the bag lives, and is read back as Nothing.
  automation::Ref<automation::Object> Object() const { return object_.get(); }
  void SetObject(automation::Object* poObject);
  // The name of what the entry holds: "Picture", "String", "Long" and so on; the object's type when
  // there is one, else the value's.
  Text ValueTypeName() const;

  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

 protected:
  friend struct Inside;
  const Text& own_key() const { return key_; }
  void Write(bag::BagWriter& writer) const;
  // Takes over value and object of another entry.
  void CopyFrom(const Property& other);

  automation::Object* FindParent() const override;

 private:
  friend class Properties;
  void Join(Properties& bag, uint64_t serial);
  void Leave();
  void RestoreKey(const Text& key) { key_ = key; }

  Text key_;
  automation::Variant value_;  // never an object
  automation::Owned<automation::Object> object_;
  bool object_is_value_ = false;

  automation::Weak<Properties> bag_;
  uint64_t serial_ = 0;  // rises from entry to entry of a bag
};

// Keys are told apart exactly, letter case included. Positions count from 1. Looking up by position
// or key, adding, and removing at either end take constant time however large the bag is.
class Properties : public automation::Object {
 public:
  // Adds an entry at the end. A key that is there already gets the new value and keeps its place.
  void Add(const Text& psKey, const automation::Variant& pvValue);
  // The entry at a position (a number) or with a key (a text); Nothing when there is none.
  automation::Ref<Property> Item(const automation::Variant& pvIndexKey) const;
  // How many entries there are.
  int32_t Count() const { return static_cast<int32_t>(entries_.list.size()); }
  // Takes an entry out; nothing happens for an unknown key.
  void Remove(const Text& psKey);
  // Empties the bag.
  void RemoveAll();
  // The entry with a key; for an unknown key a free-standing one that holds the default.
  automation::Ref<Property> ItemDefault(const Text& psKey,
                                        const automation::Variant& pvDefault) const;
  // The value of the entry with a key; for an unknown key the default as given.
  automation::Variant Value(const Text& psKey, const automation::Variant& pvDefault) const;
  // The same as Add.
  void SetValue(const Text& psKey, const automation::Variant& pvValue) { Add(psKey, pvValue); }
  // Whether there is an entry with exactly that key.
  bool Exists(const Text& psKey) const { return entries_.Find(psKey) != nullptr; }
  // Walks the entries there are now, in order.
  automation::Ref<automation::Enumerator> NewEnum() const;
  // The key at a position; empty when there is none.
  Text Key(int32_t plIndex) const;
  // Whether there are no entries.
  bool IsEmpty() const { return entries_.list.empty(); }
  // A new bag with the same entries; objects are shared.
  automation::Ref<Properties> Clone() const;
  // Writes the bag's text to a file, in UTF-8. False when that fails; the file is then as it was.
  // psReserved has no effect.
  bool WriteToFile(const Text& psFileName, const Text& psReserved) const;
  // Replaces the entries by those of a file. False when the file can't be read, which changes
  // nothing, and when its text is not well formed; the entries before the fault are then there.
  // psReserved has no effect.
  bool ReadFromFile(const Text& psFileName, const Text& psReserved);
  // The bag's whole text, as LoadText reads it.
  Text SaveText() const { return GetText(); }
  // The same as SaveText, as a property.
  Text GetText() const;
  // Adds every entry of another bag, as Add does. Objects are shared. Nothing adds nothing.
  void Merge(Properties* poProperties);
  // Whether LoadText would take the whole text.
  bool IsWellFormed(const Text& psText, const Text& psSeparator) const;
  // Replaces the entries by those of a text. Of a text that is not well formed, the entries before
  // the first fault are taken. When a key comes twice, its first entry counts. The separator is
  // what ends an entry, ":" in every text that a bag writes; an empty one stands for ":".
  void LoadText(const automation::Variant& pvText, int32_t plReserved1, int32_t plReserved2,
                const Text& psSeparator);

  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

 protected:
  friend struct Inside;
  void Write(bag::BagWriter& writer) const;
  // LoadText for a kept text; false when it is not well formed.
  bool Read(const bag::KeptText& text, TextView separator = u":");
  // Whoever has this bag: held from outside, the bag holds it. Null for nobody.
  void StoreOwner(automation::Object* owner);

  automation::Object* FindParent() const override;

 private:
  struct Entries {
    Property* Find(TextView key) const;
    Property* At(const automation::Variant& position) const;
    void Append(Property& entry);
    automation::Ref<Property> Remove(TextView key);

    // Taking from either end of a deque moves nothing.
    std::deque<automation::Owned<Property>> list;

   private:
    bool IsIndexed() const { return !index_.empty(); }
    void BuildIndex() const;
    // By key; empty until a bag is large and somebody asks. The views are into the entries' keys.
    mutable std::unordered_map<TextView, Property*> index_;
  };

  std::vector<automation::Ref<automation::Object>> Snapshot() const;
  automation::Ref<Property> NewEntry(Text key, const automation::Variant& value);
  void Copy(const Property& entry);
  void RestoreEntry(Property* entry) { Copy(*entry); }
  void Replace(Entries entries);

  Entries entries_;
  uint64_t next_serial_ = 0;
  automation::Weak<automation::Object> owner_;
};

}  // namespace vndoc6
