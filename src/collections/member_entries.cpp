#include "collections/member_entries.h"

#include <algorithm>

#include "bag/bag_reader.h"

namespace vndoc6 {

bool IsMemberOtherwise(const bag::BagScanner& scanner, const bag::BagEntry& entry,
                       const MemberEntries& entries) {
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  if (entry.key.starts_with(entries.prefix) && entry.key.size() > entries.prefix.size() &&
      std::all_of(entry.key.begin() + static_cast<std::ptrdiff_t>(entries.prefix.size()),
                  entry.key.end(), is_digit)) {
    return true;
  }
  // Hosts that write texts by hand name entries as they like.
  return bag::BagReader(scanner.TextOf(entry)).Get(entries.identity).has_value();
}

}  // namespace vndoc6
