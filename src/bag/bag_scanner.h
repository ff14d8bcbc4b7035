// BagScanner: finds the entries of a bag's text where it lies, without unescaping it first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "vndoc6/automation/number_chars.h"
#include "vndoc6/automation/text.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/bag/kept_text.h"

namespace vndoc6::bag {

// Where an entry's key and value lie. Views into the bag's own bytes.
struct BagEntry {
  std::string_view key;    // still escaped
  char tag;                // '"' for a text, else the type tag; '0' for a Long
  std::string_view value;  // without quotes and tag, still escaped
};

// The number that all of `digits` spell; false when they spell none.
template <class Number>
bool ReadNumber(std::string_view digits, Number& number) {
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = automation::FromChars(digits.data(), end, number);
  return error == std::errc() && stop == end;
}

// Walks the entries of a text once, in order. The text ends at the first fault: every entry before
// it counts, the rest is dropped, and fault_offset() says where.
//
// A text that is nested but was not written by BagWriter may hold escapes in unusual places; the
// walk then goes on in an unescaped copy. Entries stay valid as long as the scanner.
class BagScanner {
 public:
  explicit BagScanner(KeptText text, std::string_view separator = ":");
  bool Next(BagEntry& entry);
  // Whether Next would give nothing; it may even so, at a fault.
  bool AtEnd() const { return faulty_ || position_ == bytes_.size(); }
  bool faulty() const { return faulty_; }
  // Meaningful when faulty(): the offset of the entry at fault in the text's raw bytes.
  size_t fault_offset() const;

  // The entry's parts as they are meant. Only for entries of this scanner.
  Text KeyOf(const BagEntry& entry) const;
  KeptText TextOf(const BagEntry& entry) const;
  // All of it, with what ends it.
  KeptText WholeOf(const BagEntry& entry) const;
  // False when the value does not follow its tag (an entry out of which nothing can be made).
  bool ValueOf(const BagEntry& entry, automation::Variant& value) const;

 private:
  // Each false or npos where the text is at fault, or nested and unusual.
  bool Scan(BagEntry& entry);
  bool ScanText(size_t start, BagEntry& entry);
  bool ScanPlain(size_t start, BagEntry& entry);
  size_t FindKeyEnd() const;
  size_t OpeningSize(size_t key_end) const;
  size_t FindClosing(size_t start) const;

  bool AtSeparator(size_t at) const;
  size_t FindSeparator(size_t from) const;
  void GoOnUnescaped();
  const KeptText& HomeOf(std::string_view part) const;

  std::string separator_;
  KeptText text_;
  // The rest of the text from `copied_from_` on, when the walk had to go on in a copy.
  KeptText copy_;
  size_t copied_from_ = 0;

  // What is being walked: text_ or copy_.
  std::string_view bytes_;
  size_t position_ = 0;
  uint32_t depth_ = 0;
  bool faulty_ = false;
};

}  // namespace vndoc6::bag
