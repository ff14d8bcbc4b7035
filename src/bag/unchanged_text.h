// Writing back what was loaded and never read, without reading it.
#pragma once

#include <span>
#include <string_view>

#include "automation/variant.h"
#include "bag/bag_scanner.h"
#include "bag/bag_writer.h"

namespace vndoc6::bag {

// One entry of a text as an object writes it. A Boolean's tag is 'b' here.
struct EntryForm {
  std::string_view key;
  char tag;
  // The object knows this value already, and it may have changed.
  bool compared = false;
};

// Copies a kept text, if that is what writing the object would give: exactly the entries of `forms`
// in that order, and `is_same(key, value)` true for each that is compared. False, and nothing
// written, otherwise.
template <class IsSame>
bool CopyIfUnchanged(const KeptText& text, std::span<const EntryForm> forms, BagWriter& writer,
                     IsSame&& is_same) {
  BagScanner scanner(text);
  BagEntry entry;
  for (const EntryForm& form : forms) {
    if (!scanner.Next(entry) || entry.key != form.key) return false;
    const bool boolean = entry.tag == 'T' || entry.tag == 'F';
    if ((boolean ? 'b' : entry.tag) != form.tag) return false;
    automation::Variant value;
    if (form.compared && !(scanner.ValueOf(entry, value) && is_same(form.key, value))) return false;
  }
  if (scanner.Next(entry) || scanner.faulty()) return false;
  writer.Append(text);
  return true;
}

}  // namespace vndoc6::bag
