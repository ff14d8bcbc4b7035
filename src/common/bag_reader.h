// BagReader: finds the entries of a bag's text where it lies, without unescaping it first.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "automation/text.h"
#include "automation/variant.h"
#include "common/kept_text.h"

namespace vndoc6::common {

// Where an entry's key and value lie. Views into the bag's own bytes.
struct BagEntry {
  std::string_view key;    // still escaped
  char tag;                // '"' for a text, else the type tag; '0' for a Long
  std::string_view value;  // without quotes and tag, still escaped
};

// Walks the entries of a text once, in order. The text ends at the first fault: every entry before
// it counts, the rest is dropped, and fault_offset() says where.
//
// A text that is nested but was not written by BagWriter may hold escapes in unusual places; the
// walk then goes on in an unescaped copy. Entries stay valid as long as the scanner.
class BagScanner {
 public:
  explicit BagScanner(KeptText text, std::string_view separator = ":");
  bool Next(BagEntry& entry);
  bool faulty() const { return faulty_; }
  // Meaningful when faulty(): the offset of the entry at fault in the text's raw bytes.
  size_t fault_offset() const;

  // The entry's parts as they are meant. Only for entries of this scanner.
  Text KeyOf(const BagEntry& entry) const;
  KeptText TextOf(const BagEntry& entry) const;
  // False when the value does not follow its tag (an entry out of which nothing can be made).
  bool ValueOf(const BagEntry& entry, automation::Variant& value) const;

 private:
  // (the implementer's)
};

// Looks entries up by key. Missing keys give the default; a value of another type is converted as
// automation does (error 13 or 6 when it can't be). The first of several entries with one key
// counts. Asking in the order in which the entries were written finds each at once.
class BagReader {
 public:
  explicit BagReader(KeptText text);

  Text GetText(std::string_view key);
  int32_t GetLong(std::string_view key, int32_t missing = 0);
  bool GetBoolean(std::string_view key, bool missing = false);
  float GetSingle(std::string_view key, float missing = 0);
  automation::Currency GetCurrency(std::string_view key, automation::Currency missing);
  std::optional<automation::Variant> Get(std::string_view key);
  // The value of a text entry as it lies there; empty when the key is missing. A value of another
  // type is given as its text.
  KeptText GetKept(std::string_view key);
  // The bytes of a picture entry; nothing when the key is missing or holds no picture.
  std::optional<std::vector<uint8_t>> GetPicture(std::string_view key);

 private:
  // (the implementer's)
};

}  // namespace vndoc6::common
