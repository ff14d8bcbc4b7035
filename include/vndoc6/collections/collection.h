// What every collection class shares: the published look-ups, and the collection's saved text.
#pragma once

#include <string_view>

#include "vndoc6/automation/enumerator.h"
#include "vndoc6/bag/kept_text.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/collections/keyed_store.h"
#include "vndoc6/core/member.h"

namespace vndoc6 {

struct MemberEntries;

// A collection class derives from this and adds its own Add and Remove, whose events differ. Base
// is what it belongs to.
template <class T, class Base = Member>
class Collection : public Base, public bag::Carrier {
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

 protected:
  friend struct Inside;
  const KeyedStore<T>& store() const { return store_; }
  // Gives the members the collection's document: those that came when it had none.
  void HandOnDocument();
  // Stores a member under its key, a fresh one when it has none. False when the key is taken.
  bool AddUnderOwnKey(T& member);
  // The whole saved text; an empty collection writes nothing of its own.
  void WriteText(bag::BagWriter& writer, const MemberEntries& entries) const;
  void WriteMembers(bag::BagWriter& writer, const MemberEntries& entries) const;
  // Calls `visit(text)` for the text of each member, in order. What else there is in the
  // collection's text is kept.
  template <class Visit>
  void ForEachMember(const bag::KeptText& text, const MemberEntries& entries, Visit&& visit);
  // Calls `add(member)` for a new member loaded from each text.
  template <class Add>
  void ReadMembers(const bag::KeptText& text, const MemberEntries& entries, Add&& add);
  // Adds the members of a document's own list, which were in the document already: they get the
  // document, and nothing is reported.
  void ReadMembersQuietly(const bag::KeptText& text, const MemberEntries& entries);

  KeyedStore<T> store_;
};

}  // namespace vndoc6
