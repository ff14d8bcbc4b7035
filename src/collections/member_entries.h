// What the entries of a collection's saved text are: its members, and others.
#pragma once

#include <string_view>

#include "bag/bag_scanner.h"

namespace vndoc6 {

// In every file: never change what a class has here.
struct MemberEntries {
  enum class Name { kByKey, kByPosition };

  // A member's entry is called by it and the member's key or position.
  std::string_view prefix;
  Name name = Name::kByKey;
  // An entry that texts of members have, whatever a host has called the member's own.
  std::string_view identity = "K";
  // An entry of the collection's own; empty for none.
  std::string_view own = {};
};

// Of a text whose key says nothing by its beginning alone.
bool IsMemberOtherwise(const bag::BagScanner& scanner, const bag::BagEntry& entry,
                       const MemberEntries& entries);

// Whether an entry, of this scanner, is a member's.
inline bool IsMember(const bag::BagScanner& scanner, const bag::BagEntry& entry,
                     const MemberEntries& entries) {
  if (entry.tag != '"') return false;
  const bool by_key = entries.name == MemberEntries::Name::kByKey;
  return (by_key && entry.key.starts_with(entries.prefix)) ||
         IsMemberOtherwise(scanner, entry, entries);
}

}  // namespace vndoc6
