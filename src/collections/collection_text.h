// What the collection classes do inside: members under their keys, and the collection's text.
#pragma once

#include <limits>
#include <string>

#include "automation/inside.h"
#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
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
void Collection<T, Base>::WriteByPosition(bag::BagWriter& writer, std::string_view prefix) const {
  std::string key;
  for (size_t i = 0; i < store_.size(); ++i) {
    key.assign(prefix).append(std::to_string(i + 1));
    writer.AddNested(key, [&](bag::BagWriter& nested) { Inside::Write(store_[i], nested); });
  }
}

template <class T, class Base>
void Collection<T, Base>::WriteByKey(bag::BagWriter& writer, char16_t prefix) const {
  for (size_t i = 0; i < store_.size(); ++i) {
    writer.AddNestedUnder(prefix + store_[i].Key(),
                          [&](bag::BagWriter& nested) { Inside::Write(store_[i], nested); });
  }
}

template <class T, class Base>
template <class Add>
void Collection<T, Base>::ReadMembers(const bag::KeptText& text, Add&& add) {
  bag::BagScanner scanner(text);
  bag::BagEntry entry;
  while (scanner.Next(entry)) {
    const automation::Ref<T> member = automation::Make<T>();
    Inside::Read(*member, scanner.TextOf(entry), Text());
    add(member.get());
  }
}

template <class T, class Base>
void Collection<T, Base>::ReadMembersQuietly(const bag::KeptText& text) {
  ReadMembers(text, [this](T* member) {
    if (AddUnderOwnKey(*member)) Inside::TakeDocument(*member, this->document());
  });
}

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
  if (this->store_.empty()) return;
  this->WriteByPosition(writer, "L");
  writer.Add("NextID", next_id_);
}

template <class T, class Base>
template <class Add>
void NumberedCollection<T, Base>::ReadNumbered(const bag::KeptText& text, Add&& add) {
  bag::BagEntry entry;
  if (!bag::BagScanner(text).Next(entry)) return;
  next_id_ = bag::BagReader(text).GetLong("NextID");
  bag::BagScanner scanner(text);
  while (scanner.Next(entry)) {
    if (scanner.KeyOf(entry) == u"NextID") continue;
    const automation::Ref<T> member = automation::Make<T>();
    Inside::Read(*member, scanner.TextOf(entry), Text());
    add(member.get());
  }
}

}  // namespace vndoc6
