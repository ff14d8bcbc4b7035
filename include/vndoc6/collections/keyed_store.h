// KeyedStore: the ordered, 1-based, case-insensitively keyed store behind every collection class.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "vndoc6/automation/error.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/automation/text.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/bag/position.h"

namespace vndoc6 {

// Members stay under the key they were added with, whatever their own key becomes later. Finding by
// position or key, appending and removing the last one are constant time; removing another one
// moves those behind it.
template <class T>
class KeyedStore {
 public:
  size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  // 0-based.
  T& operator[](size_t index) const { return *entries_[index].member; }

  // False, and nothing changed, when the key is taken.
  bool Add(TextView key, T& member) {
    std::string folded = automation::FoldedUtf8(key);
    if (FindFolded(folded) != kNone) return false;
    entries_.push_back({automation::Owned<T>(&member), std::move(folded)});
    try {
      IndexLast();
    } catch (...) {
      entries_.pop_back();
      throw;
    }
    return true;
  }

  T* Find(TextView key) const {
    const size_t index = FindFolded(automation::FoldedUtf8(key));
    return index != kNone ? entries_[index].member.get() : nullptr;
  }
  // A number is a 1-based position, a text a key; null for anything that names no member.
  T* Find(const automation::Variant& position_or_key) const {
    const size_t index = IndexOf(position_or_key);
    return index != kNone ? entries_[index].member.get() : nullptr;
  }

  // Takes out what Find would give, and gives it back; null when there is none.
  automation::Ref<T> Remove(const automation::Variant& position_or_key) {
    const size_t index = IndexOf(position_or_key);
    return index != kNone ? RemoveAt(index) : nullptr;
  }
  automation::Ref<T> Remove(TextView key) {
    const size_t index = FindFolded(automation::FoldedUtf8(key));
    return index != kNone ? RemoveAt(index) : nullptr;
  }
  // Looks at every member.
  bool Contains(const T& member) const {
    return std::any_of(entries_.begin(), entries_.end(),
                       [&](const Entry& entry) { return entry.member.get() == &member; });
  }
  // False when it is not in here.
  bool RemoveMember(const T& member) {
    for (size_t i = entries_.size(); i-- > 0;) {
      if (entries_[i].member.get() != &member) continue;
      RemoveAt(i);
      return true;
    }
    return false;
  }
  void Clear() {
    slots_.clear();
    // Members go when the store is empty already: what they let go of may look into it.
    const std::vector<Entry> entries = std::exchange(entries_, {});
  }

  // The members there are now, safe against changes while they are visited.
  std::vector<automation::Ref<automation::Object>> Snapshot() const {
    std::vector<automation::Ref<automation::Object>> members;
    members.reserve(entries_.size());
    for (const Entry& entry : entries_) members.emplace_back(entry.member.get());
    return members;
  }

 private:
  struct Entry {
    automation::Owned<T> member;
    std::string key;  // folded, in the form that takes least memory
  };
  static constexpr size_t kNone = static_cast<size_t>(-1);
  // Up to here a look at every key takes no longer than an index, and its 128 bytes are saved.
  static constexpr size_t kUnindexed = 8;

  size_t IndexOf(const automation::Variant& position_or_key) const {
    if (const auto* key = position_or_key.If<Text>())
      return FindFolded(automation::FoldedUtf8(*key));
    return bag::IndexOfPosition(position_or_key, entries_.size()).value_or(kNone);
  }

  size_t FindFolded(std::string_view folded) const {
    if (slots_.empty()) {
      for (size_t i = 0; i < entries_.size(); ++i) {
        if (entries_[i].key == folded) return i;
      }
      return kNone;
    }
    for (size_t slot = FirstSlot(folded);; slot = NextSlot(slot)) {
      if (slots_[slot] == 0) return kNone;
      const size_t index = slots_[slot] - 1;
      if (entries_[index].key == folded) return index;
    }
  }

  automation::Ref<T> RemoveAt(size_t index) {
    automation::Ref<T> removed(entries_[index].member.get());
    const bool last = index + 1 == entries_.size();
    // No other member has stepped over a slot that was taken after all of theirs.
    if (last && !slots_.empty()) slots_[SlotOf(index)] = 0;
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
    if (!last) ReindexInPlace();
    return removed;
  }

  // The index is open addressing; a slot holds a position plus 1, or 0 when it is free.
  size_t FirstSlot(std::string_view folded) const {
    return std::hash<std::string_view>()(folded) & (slots_.size() - 1);
  }
  size_t NextSlot(size_t slot) const { return (slot + 1) & (slots_.size() - 1); }
  size_t SlotOf(size_t index) const {
    size_t slot = FirstSlot(entries_[index].key);
    while (slots_[slot] != index + 1) slot = NextSlot(slot);
    return slot;
  }

  void IndexLast() {
    if (slots_.empty() && entries_.size() <= kUnindexed) return;
    if (slots_.empty() || entries_.size() * 4 > slots_.size() * 3) {
      Reindex(std::max<size_t>(slots_.size() * 2, 32));
      return;
    }
    Index(entries_.size() - 1);
  }
  void Index(size_t index) {
    size_t slot = FirstSlot(entries_[index].key);
    while (slots_[slot] != 0) slot = NextSlot(slot);
    slots_[slot] = static_cast<uint32_t>(index + 1);
  }
  void Reindex(size_t slot_count) {
    slots_ = std::vector<uint32_t>(slot_count, 0);
    for (size_t i = 0; i < entries_.size(); ++i) Index(i);
  }
  // Needs no memory: a removal never fails half-way.
  void ReindexInPlace() {
    if (slots_.empty()) return;
    std::fill(slots_.begin(), slots_.end(), 0);
    for (size_t i = 0; i < entries_.size(); ++i) Index(i);
  }

  std::vector<Entry> entries_;
  std::vector<uint32_t> slots_;
};

}  // namespace vndoc6
