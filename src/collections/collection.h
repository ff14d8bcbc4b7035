// What every collection class shares: the published look-ups, and the collection's saved text.
#pragma once

#include <string>

#include "automation/enumerator.h"
#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "collections/keyed_store.h"
#include "core/member.h"
#include "platform/keys.h"

namespace vndoc6 {

// A collection class derives from this and adds its own Add and Remove, whose events differ. Base
// is what it belongs to.
template <class T, class Base = Member>
class Collection : public Base {
 public:
  // The member at a 1-based position (a number) or under a key (a text, in any letter case);
  // Nothing when there is none.
  automation::Ref<T> Item(const automation::Variant& pvIndexKey) const {
    return automation::Ref<T>(store_.Find(pvIndexKey));
  }
  // How many members there are.
  int32_t Count() const { return static_cast<int32_t>(store_.size()); }
  // Walks the members there are now, in order; what changes meanwhile is not seen.
  automation::Ref<automation::Enumerator> NewEnum() const {
    return automation::Make<automation::Enumerator>(store_.Snapshot());
  }
  // Empties the collection. Raises nothing; the members keep their back-references.
  void RemoveAll() { store_.Clear(); }

  // --- Inside the library; hosts have no use for these. ---
  const KeyedStore<T>& InternalStore() const { return store_; }
  // Gives the members the collection's document: those that came when it had none.
  void InternalHandOnDocument() {
    for (size_t i = 0; i < store_.size(); ++i) {
      store_[i].InternalSetDocument(this->InternalDocument());
    }
  }

 protected:
  // Stores a member under its key, a fresh one when it has none. False when the key is taken.
  bool AddUnderOwnKey(T& member) {
    if (member.Key().empty()) member.InternalSetKey(platform::NewKey());
    return store_.Add(member.Key(), member);
  }
  // The saved text under "<prefix><position>"; an empty collection writes nothing.
  void WriteByPosition(bag::BagWriter& writer, std::string_view prefix) const {
    std::string key;
    for (size_t i = 0; i < store_.size(); ++i) {
      key.assign(prefix).append(std::to_string(i + 1));
      writer.AddNested(key, [&](bag::BagWriter& nested) { store_[i].InternalWrite(nested); });
    }
  }
  // The saved text under "<prefix><key>".
  void WriteByKey(bag::BagWriter& writer, char16_t prefix) const {
    for (size_t i = 0; i < store_.size(); ++i) {
      writer.AddNestedUnder(prefix + store_[i].Key(),
                            [&](bag::BagWriter& nested) { store_[i].InternalWrite(nested); });
    }
  }
  // Calls `add(member)` for a new member loaded from each entry, in order. Entry keys say nothing.
  template <class Add>
  static void ReadMembers(const bag::KeptText& text, Add&& add) {
    bag::BagScanner scanner(text);
    bag::BagEntry entry;
    while (scanner.Next(entry)) {
      const automation::Ref<T> member = automation::Make<T>();
      member->InternalLoad(scanner.TextOf(entry), Text());
      add(member.get());
    }
  }
  // Adds the members of a document's own list, which were in the document already: they get the
  // document, and nothing is reported.
  void ReadMembersQuietly(const bag::KeptText& text) {
    ReadMembers(text, [this](T* member) {
      if (AddUnderOwnKey(*member)) member->InternalSetDocument(this->InternalDocument());
    });
  }

  KeyedStore<T> store_;
};

}  // namespace vndoc6
