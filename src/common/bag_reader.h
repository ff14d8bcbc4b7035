// BagReader: looks up the entries of a bag's text by key.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "automation/text.h"
#include "automation/variant.h"
#include "common/bag_scanner.h"
#include "common/kept_text.h"

namespace vndoc6::common {

// Looks entries up by key. A value of another type is converted as automation does. A missing key
// gives the default, and so does a value that can't be converted or does not follow its tag: a
// damaged value must not keep the rest of a document from being read. The first of several entries
// with one key counts. Asking in the order in which the entries were written finds each at once.
class BagReader {
 public:
  explicit BagReader(KeptText text);

  Text GetText(std::string_view key, TextView missing = {});
  int32_t GetLong(std::string_view key, int32_t missing = 0);
  bool GetBoolean(std::string_view key, bool missing = false);
  float GetSingle(std::string_view key, float missing = 0);
  automation::Date GetDate(std::string_view key, automation::Date missing = {});
  automation::Currency GetCurrency(std::string_view key, automation::Currency missing);
  std::optional<automation::Variant> Get(std::string_view key);
  // The value of a text entry as it lies there; empty when the key is missing. A value of another
  // type is given as its text.
  KeptText GetKept(std::string_view key);
  // The bytes of a picture entry; nothing when the key is missing or holds no picture.
  std::optional<std::vector<uint8_t>> GetPicture(std::string_view key);

 private:
  void DropRepeats();
  void OrderByKey();
  const BagEntry* Find(std::string_view key);
  const BagEntry* FindByKey(std::string_view key) const;
  bool Read(std::string_view key, automation::Variant& value);
  KeptText KeptOf(const BagEntry& entry) const;
  template <class T>
  T ValueOr(std::string_view key, T (automation::Variant::*convert)() const, T missing);

  BagScanner scanner_;
  std::vector<BagEntry> entries_;
  // Only for bags with many entries: their positions, ordered by key, each key once.
  std::vector<uint32_t> by_key_;
  size_t cursor_ = 0;
};

}  // namespace vndoc6::common
