#include "bag/bag_reader.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <numeric>
#include <utility>

#include "vndoc6/automation/base64.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::bag {
namespace {

using automation::Currency;
using automation::Variant;

// Keys of one bag differ at their ends or in their lengths.
size_t HashOf(std::string_view key) {
  constexpr uint32_t kFactor = 0x9E3779B1;  // 2^32 by the golden ratio: spreads to the top bits
  uint32_t first = 0, last = 0;
  if (key.size() >= sizeof first) {
    std::memcpy(&first, key.data(), sizeof first);
    std::memcpy(&last, key.data() + key.size() - sizeof last, sizeof last);
  } else if (!key.empty()) {
    first = static_cast<unsigned char>(key.front());
    last = static_cast<unsigned char>(key.back());
  }
  const auto size = static_cast<uint32_t>(key.size());
  return ((first * 31 + last + size) * kFactor) >> 23;
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

// Looks for the next entry with a key of its own. False when there is none, or when there are so
// many that they are all in many_ now.
bool BagReader::TakeNext() {
  BagEntry entry;
  while (scanner_.Next(entry)) {
    const size_t hash = HashOf(entry.key);
    if (keys_.MayHave(hash) && PositionOf(entry.key) != count_) continue;
    if (count_ == kFew) {
      TakeMany(entry);
      return false;
    }
    keys_.Add(hash);
    std::construct_at(&few_.entries[count_++], entry);
    return true;
  }
  return false;
}

void BagReader::TakeMany(const BagEntry& next) {
  auto many = std::make_unique<Many>();
  std::vector<BagEntry>& entries = many->entries;
  std::vector<uint32_t>& by_key = many->by_key;
  entries.assign(few_.entries, few_.entries + count_);
  entries.push_back(next);
  BagEntry entry;
  while (scanner_.Next(entry)) entries.push_back(entry);
  by_key.resize(entries.size());
  std::iota(by_key.begin(), by_key.end(), 0U);
  const auto key = [&](uint32_t position) { return entries[position].key; };
  std::stable_sort(by_key.begin(), by_key.end(),
                   [key](uint32_t left, uint32_t right) { return key(left) < key(right); });
  const auto same = [key](uint32_t left, uint32_t right) { return key(left) == key(right); };
  by_key.erase(std::unique(by_key.begin(), by_key.end(), same), by_key.end());
  many->asked.assign(entries.size(), true);
  for (const uint32_t first : by_key) many->asked[first] = first < kFew && IsAsked(first);
  many_ = std::move(many);
}

bool BagReader::HasUnaskedElsewhere() {
  while (!many_ && TakeNext()) continue;
  if (!many_) return asked_ != AllOfTheFew();
  return std::find(many_->asked.begin(), many_->asked.end(), false) != many_->asked.end();
}

const BagEntry* BagReader::Find(std::string_view key) {
  if (many_) return FindByKey(key);
  if ((cursor_ < count_ || TakeNext()) && few_.entries[cursor_].key == key) {
    asked_ |= uint64_t{1} << cursor_;
    return &few_.entries[cursor_++];
  }
  return FindElsewhere(key);
}

// Leaves the cursor where it is when there is no such entry: the next one asked for may be there.
const BagEntry* BagReader::FindElsewhere(std::string_view key) {
  if (keys_.MayHave(HashOf(key))) {
    const size_t at = PositionOf(key);
    if (at != count_) {
      cursor_ = at + 1;
      SetAsked(at);
      return &few_.entries[at];
    }
  }
  while (!many_ && TakeNext()) {
    const BagEntry& last = few_.entries[count_ - 1];
    if (last.key != key) continue;
    cursor_ = count_;
    SetAsked(count_ - 1);
    return &last;
  }
  return many_ ? FindByKey(key) : nullptr;
}

size_t BagReader::PositionOf(std::string_view key) const {
  size_t at = 0;
  while (at < count_ && few_.entries[at].key != key) ++at;
  return at;
}

const BagEntry* BagReader::FindByKey(std::string_view key) {
  const std::vector<uint32_t>& by_key = many_->by_key;
  const auto found = std::lower_bound(
      by_key.begin(), by_key.end(), key,
      [this](uint32_t at, std::string_view sought) { return many_->entries[at].key < sought; });
  if (found == by_key.end() || many_->entries[*found].key != key) return nullptr;
  many_->asked[*found] = true;
  return &many_->entries[*found];
}

std::optional<Variant> BagReader::Get(std::string_view key) {
  const BagEntry* const entry = Find(key);
  Variant value;
  if (entry == nullptr || !scanner_.ValueOf(*entry, value)) return std::nullopt;
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
T BagReader::GetAs(std::string_view key, T (Variant::*convert)() const, T missing) {
  const BagEntry* const entry = Find(key);
  Variant value;
  if (entry == nullptr || !scanner_.ValueOf(*entry, value)) return missing;
  return ConvertedOr(value, convert, missing);
}

int32_t BagReader::LongOf(const BagEntry& entry, int32_t missing) const {
  Variant value;
  return scanner_.ValueOf(entry, value) ? ConvertedOr(value, &Variant::ToLong, missing) : missing;
}

int32_t BagReader::GetLong(std::string_view key, int32_t missing) {
  return GetAs(key, &Variant::ToLong, missing);
}

bool BagReader::GetBoolean(std::string_view key, bool missing) {
  return GetAs(key, &Variant::ToBoolean, missing);
}

float BagReader::GetSingle(std::string_view key, float missing) {
  return GetAs(key, &Variant::ToSingle, missing);
}

automation::Date BagReader::GetDate(std::string_view key, automation::Date missing) {
  return GetAs(key, &Variant::ToDate, missing);
}

Currency BagReader::GetCurrency(std::string_view key, Currency missing) {
  return GetAs(key, &Variant::ToCurrency, missing);
}

std::optional<std::vector<uint8_t>> BagReader::GetPicture(std::string_view key) {
  const BagEntry* const entry = Find(key);
  if (entry == nullptr || entry->tag != 'p') return std::nullopt;
  return automation::FromBase64(entry->value);
}

}  // namespace vndoc6::bag
