// What the collection classes do inside: members under their keys, and the collection's text.
#pragma once

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "automation/inside.h"
#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "collections/member_entries.h"
#include "platform/keys.h"
#include "vndoc6/collections/numbered_collection.h"

namespace vndoc6 {

template <class T, class Base>
void Collection<T, Base>::HandOnDocument() {
  for (size_t i = 0; i < store_.size(); ++i) Inside::TakeDocument(store_[i], this->document());
}

template <class T, class Base>
bool Collection<T, Base>::AddUnderOwnKey(T& member) {
  if (member.Key().empty()) Inside::StoreKey(member, platform::NewKey());
  return store_.Add(member.Key(), member);
}

template <class T, class Base>
void Collection<T, Base>::WriteText(bag::BagWriter& writer, const MemberEntries& entries) const {
  WriteMembers(writer, entries);
  this->unknown_entries().Write(writer);
}

template <class T, class Base>
void Collection<T, Base>::WriteMembers(bag::BagWriter& writer, const MemberEntries& entries) const {
  std::string name;
  for (size_t i = 0; i < store_.size(); ++i) {
    const auto write = [&](bag::BagWriter& nested) { Inside::Write(store_[i], nested); };
    if constexpr (requires { store_[i].Key(); }) {
      if (entries.name == MemberEntries::Name::kByKey) {
        writer.AddNestedUnder(static_cast<char16_t>(entries.prefix[0]) + store_[i].Key(), write);
        continue;
      }
    }
    name.assign(entries.prefix).append(std::to_string(i + 1));
    writer.AddNested(name, write);
  }
}

template <class T, class Base>
template <class Visit>
void Collection<T, Base>::ForEachMember(const bag::KeptText& text, const MemberEntries& entries,
                                        Visit&& visit) {
  bag::BagScanner scanner(text);
  bag::BagEntry entry;
  std::vector<bag::KeptText> unknown;
  while (scanner.Next(entry)) {
    if (IsMember(scanner, entry, entries)) {
      visit(scanner.TextOf(entry));
    } else if (entry.key != entries.own) {
      unknown.push_back(scanner.WholeOf(entry));
    }
  }
  this->unknown_entries().Set(std::move(unknown));
}

template <class T, class Base>
template <class Add>
void Collection<T, Base>::ReadMembers(const bag::KeptText& text, const MemberEntries& entries,
                                      Add&& add) {
  ForEachMember(text, entries, [&](const bag::KeptText& member_text) {
    const automation::Ref<T> member = automation::Make<T>();
    Inside::Read(*member, member_text, Text());
    add(member.get());
  });
}

template <class T, class Base>
void Collection<T, Base>::ReadMembersQuietly(const bag::KeptText& text,
                                             const MemberEntries& entries) {
  ReadMembers(text, entries, [this](T* member) {
    if (AddUnderOwnKey(*member)) Inside::TakeDocument(*member, this->document());
  });
}

// A numbered list's members are under "L<position>", its counter behind them.
inline constexpr MemberEntries kNumberedEntries{"L", MemberEntries::Name::kByPosition, "ID",
                                                "NextID"};

template <class T, class Base>
bool NumberedCollection<T, Base>::AddNumbered(T& member) {
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

template <class T, class Base>
void NumberedCollection<T, Base>::WriteNumbered(bag::BagWriter& writer) const {
  this->WriteMembers(writer, kNumberedEntries);
  if (!this->store_.empty()) writer.Add(kNumberedEntries.own, next_id_);
  this->unknown_entries().Write(writer);
}

template <class T, class Base>
template <class Add>
void NumberedCollection<T, Base>::ReadNumbered(const bag::KeptText& text, Add&& add) {
  bag::BagEntry entry;
  if (!bag::BagScanner(text).Next(entry)) return;
  next_id_ = bag::BagReader(text).GetLong(kNumberedEntries.own);
  this->ReadMembers(text, kNumberedEntries, std::forward<Add>(add));
}

}  // namespace vndoc6
