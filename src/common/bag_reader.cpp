#include "common/bag_reader.h"

#include <algorithm>
#include <numeric>

#include "automation/error.h"
#include "common/base64.h"

namespace vndoc6::common {
namespace {

using automation::Currency;
using automation::Variant;

// Bags of this many entries are searched one by one; fewer than the slots of DropRepeats.
constexpr size_t kFew = 64;
constexpr size_t kSlots = 256;

size_t SlotOf(std::string_view key) {
  uint32_t mixed = static_cast<uint32_t>(key.size());
  for (const char c : key.substr(key.size() - std::min<size_t>(key.size(), 8))) {
    mixed = mixed * 37 + static_cast<unsigned char>(c);
  }
  return mixed % kSlots;
}

template <class T>
T ConvertedOr(const Variant& value, T (Variant::*convert)() const, const T& missing) {
  try {
    return (value.*convert)();
  } catch (const automation::Error&) {
    return missing;  // a text that is no number, a number out of range, a Null
  }
}

}  // namespace

BagReader::BagReader(KeptText text) : scanner_(std::move(text)) {
  entries_.reserve(kFew);
  BagEntry entry;
  while (scanner_.Next(entry)) entries_.push_back(entry);
  if (entries_.size() <= kFew) {
    DropRepeats();
  } else {
    OrderByKey();
  }
}

// Leaves the first entry of each key, so that a search may begin anywhere.
void BagReader::DropRepeats() {
  uint8_t slots[kSlots] = {};  // position + 1
  size_t kept = 0;
  for (const BagEntry& entry : entries_) {
    size_t slot = SlotOf(entry.key);
    while (slots[slot] != 0 && entries_[slots[slot] - 1U].key != entry.key) {
      slot = (slot + 1) % kSlots;
    }
    if (slots[slot] != 0) continue;
    entries_[kept++] = entry;
    slots[slot] = static_cast<uint8_t>(kept);
  }
  entries_.resize(kept);
}

void BagReader::OrderByKey() {
  by_key_.resize(entries_.size());
  std::iota(by_key_.begin(), by_key_.end(), 0U);
  const auto key = [this](uint32_t position) { return entries_[position].key; };
  std::stable_sort(by_key_.begin(), by_key_.end(),
                   [key](uint32_t left, uint32_t right) { return key(left) < key(right); });
  const auto same = [key](uint32_t left, uint32_t right) { return key(left) == key(right); };
  by_key_.erase(std::unique(by_key_.begin(), by_key_.end(), same), by_key_.end());
}

const BagEntry* BagReader::Find(std::string_view key) {
  if (!by_key_.empty()) return FindByKey(key);
  const size_t count = entries_.size();
  for (size_t tried = 0; tried < count; ++tried) {
    const size_t at = cursor_ < count ? cursor_ : 0;
    cursor_ = at + 1;
    if (entries_[at].key == key) return &entries_[at];
  }
  return nullptr;
}

const BagEntry* BagReader::FindByKey(std::string_view key) const {
  const auto found = std::lower_bound(
      by_key_.begin(), by_key_.end(), key,
      [this](uint32_t at, std::string_view sought) { return entries_[at].key < sought; });
  const bool is_there = found != by_key_.end() && entries_[*found].key == key;
  return is_there ? &entries_[*found] : nullptr;
}

bool BagReader::Read(std::string_view key, Variant& value) {
  const BagEntry* const entry = Find(key);
  return entry != nullptr && scanner_.ValueOf(*entry, value);
}

std::optional<Variant> BagReader::Get(std::string_view key) {
  Variant value;
  if (!Read(key, value)) return std::nullopt;
  return value;
}

Text BagReader::GetText(std::string_view key, TextView missing) {
  const BagEntry* const entry = Find(key);
  return entry != nullptr ? KeptOf(*entry).ToText() : Text(missing);
}

KeptText BagReader::GetKept(std::string_view key) {
  const BagEntry* const entry = Find(key);
  return entry != nullptr ? KeptOf(*entry) : KeptText();
}

KeptText BagReader::KeptOf(const BagEntry& entry) const {
  if (entry.tag == '"') return scanner_.TextOf(entry);
  Variant value;
  if (!scanner_.ValueOf(entry, value)) return KeptText();
  return KeptText(TextView(ConvertedOr(value, &Variant::ToText, Text())));
}

template <class T>
T BagReader::ValueOr(std::string_view key, T (Variant::*convert)() const, T missing) {
  Variant value;
  return Read(key, value) ? ConvertedOr(value, convert, missing) : missing;
}

int32_t BagReader::GetLong(std::string_view key, int32_t missing) {
  return ValueOr(key, &Variant::ToLong, missing);
}

bool BagReader::GetBoolean(std::string_view key, bool missing) {
  return ValueOr(key, &Variant::ToBoolean, missing);
}

float BagReader::GetSingle(std::string_view key, float missing) {
  return ValueOr(key, &Variant::ToSingle, missing);
}

automation::Date BagReader::GetDate(std::string_view key, automation::Date missing) {
  return ValueOr(key, &Variant::ToDate, missing);
}

Currency BagReader::GetCurrency(std::string_view key, Currency missing) {
  return ValueOr(key, &Variant::ToCurrency, missing);
}

std::optional<std::vector<uint8_t>> BagReader::GetPicture(std::string_view key) {
  const BagEntry* const entry = Find(key);
  if (entry == nullptr || entry->tag != 'p') return std::nullopt;
  return FromBase64(entry->value);
}

}  // namespace vndoc6::common
