#include "content/salvage_likeness.h"

#include <algorithm>

namespace vndoc6::salvage {
namespace {

using Kind = SavedEntry::Kind;

constexpr size_t kTextsLookedAt = 12;
constexpr size_t kMembersLookedAt = 3;
constexpr size_t kBytesLookedAt = 256;  // between two texts

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

Likeness::Count Likeness::CountOf(const SavedEntry& what) const {
  if (what.kind == Kind::kObject) return CountOfObject(*what.part);
  return what.kind == Kind::kCollection ? CountOfCollection(what) : Count();
}

int Likeness::To(const SavedEntry& what) const {
  if (is_empty_ || what.part == nullptr) return 0;
  const Count count = CountOf(what);
  const int difference = 2 * count.known - count.all;
  return difference <= 0 ? -1 : std::max(1, kMost * difference / count.all);
}

bool Likeness::IsSurely(const SavedEntry& what) const {
  constexpr int kEnough = 3;
  const Count count = CountOf(what);
  return To(what) >= kMost / 2 && (count.all >= kEnough || count.known == kEnough - 1);
}

Likeness::Count Likeness::CountOfObject(const SavedForm& form) const {
  Count count;
  for (const Key& key : keys_) {
    const SavedEntry* const entry = form.Find(key.key);
    const bool is_known = entry != nullptr && (entry->tag == '"') == key.is_text;
    // What is left of an opening stands before the first.
    if (!is_known && !opened_ && &key == &keys_.front()) continue;
    count.known += is_known ? 1 : 0;
    ++count.all;
  }
  return count;
}

Likeness::Count Likeness::CountOfCollection(const SavedEntry& what) const {
  Count count;
  for (size_t i = 0; i < texts_.size(); ++i) {
    const SubText& text = texts_[i];
    const bool has_prefix = !text.key.empty() && text.key.starts_with(what.prefix);
    if (has_prefix || (!text.key.empty() && (opened_ || i != 0))) {
      count.known += has_prefix ? 1 : 0;
      ++count.all;
    }
    if (i >= kMembersLookedAt) continue;
    const Count member = Likeness(file_, text.region, !text.key.empty()).CountOfObject(*what.part);
    count.known += member.known;
    count.all += member.all;
  }
  return count;
}

bool IsNearly(std::string_view damaged, std::string_view key) {
  if (damaged.size() > key.size() && damaged.ends_with(key)) return true;
  const std::string_view& longer = damaged.size() > key.size() ? damaged : key;
  const std::string_view& shorter = damaged.size() > key.size() ? key : damaged;
  if (shorter.empty() || longer.size() > shorter.size() + 1) return false;
  const auto at = std::mismatch(shorter.begin(), shorter.end(), longer.begin()).first;
  const auto same = static_cast<size_t>(at - shorter.begin());
  const std::string_view rest = longer.substr(std::min(same + 1, longer.size()));
  return rest == shorter.substr(
                     std::min(longer.size() == shorter.size() ? same + 1 : same, shorter.size()));
}

}  // namespace vndoc6::salvage
