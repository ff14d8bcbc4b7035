// Writing back what was loaded and never read, without reading it.
#pragma once

#include <string_view>

#include "bag/bag_scanner.h"
#include "bag/bag_writer.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6::bag {

// Walks a kept text beside the entries that writing its object would give.
class UnchangedEntries {
 public:
  explicit UnchangedEntries(const KeptText& text) : text_(text), scanner_(text) {}

  // Whether the next entry has that key, and a value of that tag; a Boolean's is 'b' here.
  bool Next(std::string_view key, char tag) {
    if (!scanner_.Next(entry_) || entry_.key != key) return false;
    const bool boolean = entry_.tag == 'T' || entry_.tag == 'F';
    return (boolean ? 'b' : entry_.tag) == tag;
  }
  // Whether that entry still says what the object has.
  bool ValueIs(const automation::Variant& now) const {
    automation::Variant value;
    return scanner_.ValueOf(entry_, value) && value == now;
  }
  // Copies the text, unless there is more in it. False, and nothing written, then.
  bool CopyTo(BagWriter& writer) {
    if (scanner_.Next(entry_) || scanner_.faulty()) return false;
    writer.Append(text_);
    return true;
  }

 private:
  const KeptText& text_;
  BagScanner scanner_;
  BagEntry entry_;
};

}  // namespace vndoc6::bag
