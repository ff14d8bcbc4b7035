// NumberedCollection: a named collection whose members are keyed by a number that it hands out.
#pragma once

#include <limits>

#include "collections/collection.h"

namespace vndoc6 {

// T has an ID, stored as a Long.
template <class T, class Base = Member>
class NumberedCollection : public Collection<T, Base> {
 public:
  // The name that the owner gave the list.
  const Text& ListName() const { return list_name_; }

  // --- Inside the library; hosts have no use for these. ---
  void InternalSetListName(const Text& name) { list_name_ = name; }
  int32_t InternalNextID() const { return next_id_; }

 protected:
  // Gives the member the next number when it has none, and stores it under the number's decimal
  // digits. False when it was not stored: its number is taken, or the counter is at its end.
  bool AddNumbered(T& member) {
    if (member.ID() == 0) {
      member.SetID(next_id_);
      if (next_id_ == std::numeric_limits<int32_t>::max()) return false;
      ++next_id_;
    }
    if (!this->store_.Add(automation::NumberText(member.ID()), member)) return false;
    // Not the number after it: hosts rely on the next new member meeting this one's number, and
    // not being added.
    if (member.ID() >= next_id_) next_id_ = member.ID();
    return true;
  }
  // The members under "L<position>", then the counter. An empty list writes nothing.
  void WriteNumbered(bag::BagWriter& writer) const {
    if (this->store_.empty()) return;
    this->WriteByPosition(writer, "L");
    writer.Add("NextID", next_id_);
  }
  // Sets the counter, then calls `add(member)` for each member. A text without entries changes
  // nothing.
  template <class Add>
  void ReadNumbered(const bag::KeptText& text, Add&& add) {
    bag::BagEntry entry;
    if (!bag::BagScanner(text).Next(entry)) return;
    next_id_ = bag::BagReader(text).GetLong("NextID");
    bag::BagScanner scanner(text);
    while (scanner.Next(entry)) {
      if (scanner.KeyOf(entry) == u"NextID") continue;
      const automation::Ref<T> member = automation::Make<T>();
      member->InternalLoad(scanner.TextOf(entry), Text());
      add(member.get());
    }
  }

 private:
  int32_t next_id_ = 0;
  Text list_name_;
};

}  // namespace vndoc6
