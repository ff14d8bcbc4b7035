#include "content/salvage_likeness.h"

#include <algorithm>

namespace vndoc6::salvage {
namespace {

using Kind = SavedEntry::Kind;

constexpr size_t kTextsLookedAt = 12;
constexpr std::ptrdiff_t kMembersLookedAt = 3;
constexpr size_t kBytesLookedAt = 256;  // between two texts

// `likeness` out of so many.
int Share(int likeness, size_t all) {
  if (likeness <= 0 || all == 0) return -1;
  return std::max(1, Likeness::kMost * likeness / static_cast<int>(all));
}

}  // namespace

Likeness::Likeness(const DamagedFile& file, const Region& region, bool opened)
    : file_(file), is_empty_(region.bytes.empty()), opened_(opened) {
  const std::vector<Mark>& marks = file.marks();
  size_t at = region.bytes.begin;
  size_t index = region.first_mark;
  while (index < region.end_mark && texts_.size() < kTextsLookedAt) {
    const Mark& open = marks[index];
    const Mark& close = marks[open.partner];
    std::string_view gap = file.View({at, std::max(at, open.at)});
    const size_t begin = open.is_there ? std::max(at, open.end()) : at;
    const size_t end = std::min(std::max(begin, close.at), region.bytes.end);
    if (open.is_there) {
      if (gap.size() > kBytesLookedAt) gap.remove_prefix(gap.size() - kBytesLookedAt);
      TakePlain(gap);
      keys_.push_back({gap.substr(gap.rfind(':') + 1), true});
    }
    texts_.push_back({{{begin, end}, index + 1, open.partner, region.depth + 1},
                      open.is_there ? keys_.back().key : std::string_view()});
    at = std::max(end, std::min(close.end(), region.bytes.end));
    index = open.partner + 1;
  }
  TakePlain(file.View({at, std::max(at, region.bytes.end)}).substr(0, kBytesLookedAt));
}

void Likeness::TakePlain(std::string_view gap) {
  for (size_t colon; (colon = gap.find(':')) != gap.npos; gap.remove_prefix(colon + 1)) {
    const size_t equals = gap.substr(0, colon).find('=');
    if (equals != gap.npos) keys_.push_back({gap.substr(0, equals), false});
  }
}

int Likeness::To(const SavedEntry& what) const {
  if (is_empty_) return 0;
  if (what.kind == Kind::kObject) return ToObject(*what.part);
  return what.kind == Kind::kCollection ? ToCollection(what) : 0;
}

bool Likeness::IsSurely(const SavedEntry& what, int least) const {
  constexpr size_t kEnoughEntries = 3;
  constexpr size_t kEnoughOfAMember = 2;
  if (To(what) < least) return false;
  if (what.kind == Kind::kObject) return keys_.size() >= kEnoughEntries;
  return Likeness(file_, texts_.front().region, true).keys_.size() >= kEnoughOfAMember;
}

int Likeness::ToObject(const SavedForm& form) const {
  int likeness = 0;
  for (const Key& key : keys_) {
    const SavedEntry* const entry = form.Find(key.key);
    const bool is_known = entry != nullptr && (entry->tag == '"') == key.is_text;
    // What is left of an opening stands before the first.
    if (is_known || opened_ || &key != &keys_.front()) likeness += is_known ? 1 : -1;
  }
  return Share(likeness, keys_.size());
}

int Likeness::ToCollection(const SavedEntry& what) const {
  if (texts_.empty()) return -1;
  int likeness = 0;
  int most = 0;
  for (const SubText& text : texts_) {
    const bool is_first = &text == texts_.data();
    const bool has_prefix = text.key.starts_with(what.prefix) && !text.key.empty();
    if (has_prefix || (!text.key.empty() && (opened_ || !is_first))) {
      likeness += has_prefix ? 1 : -1;
      ++most;
    }
    const Likeness member(file_, text.region, !text.key.empty());
    if (&text - texts_.data() >= kMembersLookedAt || member.is_empty_) continue;
    likeness += member.ToObject(*what.part);
    most += kMost;
  }
  return Share(likeness, static_cast<size_t>(most));
}

bool IsNearly(std::string_view damaged, std::string_view key) {
  if (damaged.size() > key.size() && damaged.ends_with(key)) return true;
  const std::string_view& longer = damaged.size() > key.size() ? damaged : key;
  const std::string_view& shorter = damaged.size() > key.size() ? key : damaged;
  if (shorter.empty() || longer.size() > shorter.size() + 1) return false;
  const auto at = std::mismatch(shorter.begin(), shorter.end(), longer.begin()).first;
  const auto same = static_cast<size_t>(at - shorter.begin());
  const std::string_view rest = longer.substr(std::min(same + 1, longer.size()));
  return rest == shorter.substr(std::min(longer.size() == shorter.size() ? same + 1 : same,
                                         shorter.size()));
}

}  // namespace vndoc6::salvage
