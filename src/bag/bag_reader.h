// BagReader: looks up the entries of a bag's text by key.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "bag/bag_scanner.h"
#include "vndoc6/automation/text.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/bag/kept_text.h"

namespace vndoc6::bag {

// Looks entries up by key. A value of another type is converted as automation does. A missing key
// gives the default, and so does a value that can't be converted or does not follow its tag: a
// damaged value must not keep the rest of a document from being read. The first of several entries
// with one key counts.
//
// Entries are looked for only as far as somebody asks for them. Asking in the order in which they
// were written finds each at once, and what is asked for lets the rest alone.
class BagReader {
 public:
  explicit BagReader(KeptText text) : scanner_(std::move(text)) {}
  BagReader(const BagReader&) = delete;
  BagReader& operator=(const BagReader&) = delete;

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
  // For an entry that is known and not read.
  void Skip(std::string_view key) {
    if (count_ != 0 || !scanner_.AtEnd()) Find(key);
  }

  // Whether there is an entry that was not asked for.
  bool HasUnasked() {
    return scanner_.AtEnd() && !many_ ? asked_ != AllOfTheFew() : HasUnaskedElsewhere();
  }
  // Calls `visit(entry)` for each of these, in order; those for which it gives true are asked for.
  template <class Visit>
  void VisitUnasked(Visit&& visit) {
    if (!HasUnasked()) return;
    const size_t count = many_ ? many_->entries.size() : count_;
    for (size_t at = 0; at < count; ++at) {
      if (!IsAsked(at) && visit(many_ ? many_->entries[at] : few_.entries[at])) SetAsked(at);
    }
  }
  int32_t LongOf(const BagEntry& entry, int32_t missing = 0) const;
  KeptText WholeOf(const BagEntry& entry) const { return scanner_.WholeOf(entry); }

 private:
  // Up to so many entries are kept in the reader itself and searched one by one. As many as there
  // are bits in `asked_`.
  static constexpr size_t kFew = 64;
  // Not one of them is constructed before it is there: most bags are small.
  union Few {
    Few() {}
    BagEntry entries[kFew];
  };
  // Which keys are among the few, by a hash of theirs: says for sure when one is not. A fifth of
  // the time of reading everything.
  class KeySet {
   public:
    // Hashes are below 512.
    void Add(size_t hash) { words_[hash / 64] |= uint64_t{1} << (hash % 64); }
    bool MayHave(size_t hash) const { return (words_[hash / 64] >> (hash % 64) & 1) != 0; }

   private:
    uint64_t words_[8] = {};
  };

  const BagEntry* Find(std::string_view key);
  // Among the few; count_ when it is not there.
  size_t PositionOf(std::string_view key) const;
  const BagEntry* FindElsewhere(std::string_view key);
  const BagEntry* FindByKey(std::string_view key);
  bool HasUnaskedElsewhere();
  uint64_t AllOfTheFew() const {
    return count_ == kFew ? ~uint64_t{0} : (uint64_t{1} << count_) - 1;
  }
  bool IsAsked(size_t at) const { return many_ ? many_->asked[at] : (asked_ >> at & 1) != 0; }
  void SetAsked(size_t at) {
    if (many_) {
      many_->asked[at] = true;
    } else {
      asked_ |= uint64_t{1} << at;
    }
  }
  bool TakeNext();
  void TakeMany(const BagEntry& next);
  KeptText KeptOf(const BagEntry& entry) const;
  template <class T>
  T GetAs(std::string_view key, T (automation::Variant::*convert)() const, T missing);

  BagScanner scanner_;
  // The first entry of each key, as far as they were looked for.
  Few few_;
  size_t count_ = 0;
  KeySet keys_;
  // Which of the few were asked for, a bit each.
  uint64_t asked_ = 0;
  // Where the next look-up begins.
  size_t cursor_ = 0;
  // Only for bags with many entries: all of them, and their positions ordered by key, each key
  // once. Nobody can ask for a second one with a key, so that counts as asked for.
  struct Many {
    std::vector<BagEntry> entries;
    std::vector<uint32_t> by_key;
    std::vector<bool> asked;
  };
  std::unique_ptr<Many> many_;
};

}  // namespace vndoc6::bag
