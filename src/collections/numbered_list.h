// NumberedList: what the collections share whose members are keyed by a number that the list hands
// out itself.
#pragma once

#include <cstdint>
#include <limits>

#include "collections/collection.h"

namespace vndoc6 {

// A member has ID() and SetID(); 0 stands for "not numbered yet", and is the first number handed
// out nevertheless.
template <class T, class Base = Member>
class NumberedList : public Collection<T, Base> {
 public:
  // Which list of its owner this is.
  const Text& ListName() const { return list_name_; }

  // --- Inside the library; hosts have no use for these. ---
  void InternalSetListName(const Text& list_name) { list_name_ = list_name; }

 protected:
  // Numbers a member that has no number and enters it under its number. False when the number is
  // taken or there are no more: then the member is not entered.
  bool AddNumbered(T& member) {
    if (member.ID() == 0 && !Number(member)) return false;
    if (!this->store_.Add(automation::NumberText(member.ID()), member)) return false;
    // Not the number after it: a list that was given its highest number by a host hands that very
    // number out next, and does not add the member it gave it to. Hosts rely on seeing it so.
    if (member.ID() >= next_id_) next_id_ = member.ID();
    return true;
  }

  // The saved text: "L1", "L2", ... and last the counter. An empty list writes nothing.
  void WriteNumbered(common::BagWriter& writer) {
    if (this->store_.empty()) return;
    this->WriteByPosition(writer, "L");
    writer.Add(kNextId, next_id_);
  }
  // Takes the counter over, then calls `add(member)` for a new member loaded from each other
  // entry, in order. A text without entries changes nothing.
  template <class Add>
  void ReadNumbered(const common::KeptText& text, Add&& add) {
    common::BagScanner scanner(text);
    common::BagEntry entry;
    for (bool first = true; scanner.Next(entry); first = false) {
      if (first) next_id_ = common::BagReader(text).GetLong(kNextId);
      if (entry.key == kNextId) continue;
      const automation::Ref<T> member = automation::Make<T>();
      member->InternalLoad(scanner.TextOf(entry), Text());
      add(member.get());
    }
  }

 private:
  static constexpr const char* kNextId = "NextID";

  bool Number(T& member) {
    member.SetID(next_id_);
    if (next_id_ == std::numeric_limits<int32_t>::max()) return false;
    ++next_id_;
    return true;
  }

  Text list_name_;
  int32_t next_id_ = 0;
};

}  // namespace vndoc6
