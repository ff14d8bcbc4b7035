#include "content/salvage_order.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <set>

#include "content/salvage_likeness.h"

namespace vndoc6::salvage {
namespace {

using Kind = SavedEntry::Kind;

// What the places of items are worth.
constexpr int kSameKey = 8;
constexpr int kSameKeyOtherType = 5;
constexpr int kSameKeyOtherContent = 1;
constexpr int kSamePart = 8;
constexpr int kNearlySameKey = 3;
constexpr int kKnownByContent = 4;
constexpr int kOnlyByOrder = 1;
constexpr int kAgain = 3;  // at most, for a part of which there was something before
constexpr int kNoPlace = -1;
// What it costs when another object or collection begins without a mark that says so.
constexpr int kAnotherObject = -10;
constexpr int kAnotherCollection = -2;
constexpr int kNotWhatWasExpected = -5;

constexpr int kImpossible = std::numeric_limits<int>::min() / 2;
constexpr int kNone = -1;

// So many items are looked at together, so that memory is bounded.
constexpr size_t kTogether = 2048;

// One item, with a look at what lies in it when that is asked for.
class Sight {
 public:
  Sight(const DamagedFile& file, const Item& item) : file_(file), item_(item) {}

  // What it is worth as that entry of an object, or as a member of a collection; 0 for nothing.
  int As(const SavedEntry& entry, const SavedEntry& whole) {
    if (whole.kind == Kind::kCollection) return AsMember(whole);
    if (item_.part != nullptr) return item_.part == &entry || SameObject(entry) ? kSamePart : 0;
    return item_.entry->tag == '"' ? AsText(entry, whole) : AsPlain(entry);
  }
  // By its content alone.
  bool IsSurely(const SavedEntry& entry) const {
    return entry.part != nullptr && item_.entry->tag == '"' && look_ && look_->IsSurely(entry);
  }
  bool HasLostItsKey() const { return item_.entry == nullptr || item_.entry->key.empty(); }

 private:
  bool SameObject(const SavedEntry& entry) const {
    return entry.kind == Kind::kObject && item_.part->kind == Kind::kObject &&
           entry.part == item_.part->part;
  }

  int AsMember(const SavedEntry& whole) {
    if (item_.part != nullptr) {
      return item_.part->kind == Kind::kObject && item_.part->part == whole.part ? kSamePart : 0;
    }
    if (item_.entry->tag != '"') return 0;
    const int likeness = LikenessTo(whole.part->self);
    if (Key().starts_with(whole.prefix) && !Key().empty()) {
      return likeness < 0 ? kSameKeyOtherContent : kSameKey + likeness;
    }
    return likeness > 0 ? 2 * likeness : 0;
  }

  int AsText(const SavedEntry& entry, const SavedEntry& whole) {
    if (entry.tag != '"') return 0;
    const int likeness = LikenessTo(entry);
    if (entry.Has(Key())) return likeness < 0 ? kSameKeyOtherContent : kSameKey + likeness;
    if (likeness > 0) return kKnownByContent + likeness + (IsNearly(Key(), entry.key) ? 1 : 0);
    if (likeness < 0 || (look_->HasTexts() && IsSurelyAny(*whole.part))) return 0;
    if (IsNearly(Key(), entry.key)) return kNearlySameKey;
    if (!HasLostItsKey()) return entry.kind == Kind::kBag && look_->HasTexts() ? kOnlyByOrder : 0;
    return file_.View(item_.entry->inside.bytes).starts_with(entry.key) ? kNearlySameKey : 0;
  }

  bool IsSurelyAny(const SavedForm& form) const {
    return std::any_of(form.entries.begin(), form.entries.end(),
                       [&](const SavedEntry& entry) { return IsSurely(entry); });
  }

  int AsPlain(const SavedEntry& entry) const {
    if (entry.tag == '"') return 0;
    const bool same_type = entry.tag == item_.entry->tag;
    if (entry.Has(Key())) return same_type ? kSameKey : kSameKeyOtherType;
    const bool may_be = same_type && entry.kind != Kind::kPoints;
    return may_be && IsNearly(Key(), entry.key) ? kNearlySameKey : 0;
  }

  std::string_view Key() const { return file_.View(item_.entry->key); }
  int LikenessTo(const SavedEntry& what) {
    if (!look_) look_.emplace(file_, item_.entry->inside, item_.entry->opened);
    return look_->To(what);
  }

  const DamagedFile& file_;
  const Item& item_;
  std::optional<Likeness> look_;
};

class Arrangement {
 public:
  Arrangement(const DamagedFile& file, const SavedEntry& what, uint32_t depth)
      : file_(file), expected_(what), may_change_(depth > 0) {
    AddWhole(what);
    for (const SavedEntry* other : PartsAtDepth(depth)) {
      const bool same_object =
          other->kind == Kind::kObject && what.kind == Kind::kObject && other->part == what.part;
      if (may_change_ && other != &what && !same_object) AddWhole(*other);
    }
    values_.assign(places_.size(), kImpossible);
  }

  std::vector<Place> Find(const std::vector<Item>& items) {
    for (size_t begin = 0; begin < items.size(); begin += kTogether) {
      const size_t end = std::min(items.size(), begin + kTogether);
      steps_.assign((end - begin) * places_.size(), {});
      for (size_t i = begin; i < end; ++i) Look(items[i], &steps_[(i - begin) * places_.size()]);
      TraceBack(end - begin);
    }
    // What comes before everything else belongs to the first.
    const auto first = std::find_if(result_.begin(), result_.end(),
                                    [](const Place& place) { return place.whole != nullptr; });
    for (auto place = result_.begin(); place != first; ++place) {
      *place = {nullptr, first != result_.end() ? first->whole : &expected_, 1};
    }
    return std::move(result_);
  }

 private:
  struct Candidate {
    const SavedEntry* entry;
    const SavedEntry* whole;
    size_t first;  // of the same whole
  };
  struct Step {
    int16_t from = kNone;  // none: no item had a place before
    bool placed = false;
    bool new_whole = false;
  };

  void AddWhole(const SavedEntry& whole) {
    const size_t first = places_.size();
    if (whole.kind == Kind::kCollection) {
      places_.push_back({&whole, &whole, first});
    } else if (whole.kind == Kind::kObject) {
      for (const SavedEntry& entry : whole.part->entries)
        places_.push_back({&entry, &whole, first});
    }
  }

  int StartCost(const SavedEntry& whole, bool is_first) const {
    const int other = &whole == &expected_ ? 0 : kNotWhatWasExpected;
    if (is_first) return other;
    if (!may_change_) return kImpossible;
    return whole.kind == Kind::kCollection ? kAnotherCollection : kAnotherObject + other;
  }

  void Look(const Item& item, Step* steps) {
    std::vector<int> values(values_.size(), kImpossible);
    Sight sight(file_, item);
    const size_t best = Best();
    int before = kImpossible;  // the best place in the same whole that comes before
    size_t before_at = 0;
    for (size_t i = 0; i < places_.size(); ++i) {
      const Candidate& place = places_[i];
      if (place.first == i) before = kImpossible;
      const auto offer = [&](int value, int from, bool placed, bool new_whole) {
        if (value <= values[i]) return;
        values[i] = value;
        steps[i] = {static_cast<int16_t>(from), placed, new_whole};
      };
      offer(values_[i] + kNoPlace, static_cast<int>(i), false, false);
      const int worth = sight.As(*place.entry, *place.whole);
      if (worth > 0) {
        offer(before + worth, static_cast<int>(before_at), true, false);
        offer(values_[i] + WorthAgain(place, sight, worth), static_cast<int>(i), true, false);
        offer(start_ + worth + StartCost(*place.whole, true), kNone, true, true);
        if (values_[best] > kImpossible) {
          offer(values_[best] + worth + StartCost(*place.whole, false), static_cast<int>(best),
                true, true);
        }
      }
      if (values_[i] > before) {
        before = values_[i];
        before_at = i;
      }
    }
    start_ += kNoPlace;
    values_ = std::move(values);
  }

  // A second item in a place: members, points, and what a part was torn into.
  static int WorthAgain(const Candidate& place, const Sight& sight, int worth) {
    if (place.whole->kind == Kind::kCollection || place.entry->kind == Kind::kPoints) return worth;
    if (place.entry->part != nullptr && sight.HasLostItsKey()) return worth;
    return place.entry->kind == Kind::kCollection ? std::min(worth, kAgain) : kImpossible;
  }

  size_t Best() const {
    return static_cast<size_t>(std::max_element(values_.begin(), values_.end()) - values_.begin());
  }

  // Appends the places of the items looked at last. The next ones go on behind them.
  void TraceBack(size_t count) {
    const size_t first = result_.size();
    result_.resize(first + count);
    std::vector<bool> begins(count, false);
    const size_t best = Best();
    int at = values_[best] > start_ ? static_cast<int>(best) : kNone;
    const int last = at;
    for (size_t i = count; i-- > 0 && at != kNone;) {
      const Step& step = steps_[i * places_.size() + static_cast<size_t>(at)];
      const Candidate& place = places_[static_cast<size_t>(at)];
      result_[first + i].whole = place.whole;
      if (step.placed) result_[first + i].entry = place.entry;
      begins[i] = step.new_whole;
      at = step.from;
    }
    for (size_t i = 0; i < count; ++i) {
      if (begins[i]) ++number_;
      result_[first + i].number = number_;
    }
    std::fill(values_.begin(), values_.end(), kImpossible);
    if (last != kNone) {
      values_[static_cast<size_t>(last)] = 0;
      start_ = kImpossible;
    }
  }

  const DamagedFile& file_;
  const SavedEntry& expected_;
  bool may_change_;
  std::vector<Candidate> places_;
  std::vector<int> values_;  // of the items so far, by the place of the last one that has one
  int start_ = 0;            // the same, when none has
  std::vector<Step> steps_;
  size_t number_ = 0;
  std::vector<Place> result_;
};

void PlaceOutOfOrder(const DamagedFile& file, const Item& item, std::set<const SavedEntry*>& taken,
                     Place& place) {
  if (item.entry == nullptr || place.whole->kind != Kind::kObject) return;
  Sight sight(file, item);
  for (const SavedEntry& entry : place.whole->part->entries) {
    if (taken.count(&entry) > 0 && entry.kind != Kind::kCollection) continue;
    const int worth = sight.As(entry, *place.whole);
    const bool same_key = entry.Has(file.View(item.entry->key)) && worth > kSameKeyOtherContent;
    if (!same_key && !(worth > 0 && sight.IsSurely(entry))) continue;
    place.entry = &entry;
    taken.insert(&entry);
    return;
  }
}

}  // namespace

std::vector<Place> Arrange(const DamagedFile& file, const std::vector<Item>& items,
                           const SavedEntry& what, uint32_t depth) {
  std::vector<Place> places = Arrangement(file, what, depth).Find(items);
  for (size_t begin = 0, end = 0; begin < places.size(); begin = end) {
    std::set<const SavedEntry*> taken;
    for (; end < places.size() && places[end].number == places[begin].number; ++end) {
      taken.insert(places[end].entry);
    }
    for (size_t i = begin; i < end; ++i) {
      if (places[i].entry == nullptr) PlaceOutOfOrder(file, items[i], taken, places[i]);
    }
  }
  return places;
}

}  // namespace vndoc6::salvage
