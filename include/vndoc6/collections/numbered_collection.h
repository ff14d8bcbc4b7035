// NumberedCollection: a named collection whose members are keyed by a number that it hands out.
#pragma once

#include "vndoc6/collections/collection.h"

namespace vndoc6 {

// T has an ID, stored as a Long.
template <class T, class Base = Member>
class NumberedCollection : public Collection<T, Base> {
 public:
  // The name that the owner gave the list.
  const Text& ListName() const { return list_name_; }

 protected:
  friend struct Inside;
  void StoreListName(const Text& name) { list_name_ = name; }
  int32_t next_id() const { return next_id_; }
  // Gives the member the next number when it has none, and stores it under the number's decimal
  // digits. False when it was not stored: its number is taken, or the counter is at its end.
  bool AddNumbered(T& member);
  // The members under "L<position>", then the counter. An empty list writes no counter.
  void WriteNumbered(bag::BagWriter& writer) const;
  // Sets the counter, then calls `add(member)` for each member. A text without entries changes
  // nothing.
  template <class Add>
  void ReadNumbered(const bag::KeptText& text, Add&& add);

 private:
  int32_t next_id_ = 0;
  Text list_name_;
};

}  // namespace vndoc6
