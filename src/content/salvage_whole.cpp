#include "content/salvage_whole.h"

#include <algorithm>
#include <set>

#include "bag/bag_reader.h"
#include "bag/bag_scanner.h"
#include "bag/escape.h"

namespace vndoc6::salvage {
namespace {

using bag::BagEntry;
using bag::BagScanner;
using bag::KeptText;
using Kind = SavedEntry::Kind;

bool IsWholeValue(const BagScanner& scanner, const BagEntry& found) {
  automation::Variant ignored;
  return found.tag != '"' && scanner.ValueOf(found, ignored);
}

bool IsWholeEntry(const BagScanner& scanner, const BagEntry& found, const SavedEntry& entry,
                  uint32_t depth, Texts texts) {
  if (entry.tag != '"') return IsWholeValue(scanner, found);
  if (found.tag != '"' || !IsSpelledRight(found, depth)) return false;
  if (entry.kind == Kind::kText) return texts == Texts::kAny || IsWholeText(found.value);
  return IsWhole(scanner.TextOf(found), entry, texts);
}

bool IsWholeObject(const KeptText& text, const SavedForm& form, Texts texts) {
  BagScanner scanner(text);
  BagEntry found;
  std::vector<bool> seen(form.entries.size(), false);
  size_t next = 0;
  PointOrder points;
  while (scanner.Next(found)) {
    // As a rule they come in the form's order.
    while (next < form.entries.size() && !form.entries[next].Has(found.key)) ++next;
    const SavedEntry* entry = next < form.entries.size() ? &form.entries[next] : nullptr;
    if (entry == nullptr) {
      next = 0;
      entry = form.Find(found.key);
    }
    if (entry == nullptr || !IsWholeEntry(scanner, found, *entry, text.depth(), texts)) {
      return false;
    }
    const auto at = static_cast<size_t>(entry - form.entries.data());
    const bool is_point = entry->kind == Kind::kPoints;
    if (is_point ? !points.Take(found.key) : seen[at]) return false;
    seen[at] = true;
  }
  for (size_t i = 0; i < seen.size(); ++i) {
    if (form.entries[i].always && !seen[i]) return false;
  }
  return points.IsComplete() && !scanner.faulty();
}

bool IsWholeCollection(const KeptText& text, const SavedEntry& what, Texts texts) {
  BagScanner scanner(text);
  BagEntry found;
  size_t position = 0;
  while (scanner.Next(found)) {
    if (found.tag != '"' || !IsSpelledRight(found, text.depth())) return false;
    const Text key = scanner.KeyOf(found);
    ++position;
    if (!what.keyed && key != automation::FromUtf8(what.prefix + std::to_string(position))) {
      return false;
    }
    if (!IsWholeMember(scanner.TextOf(found), what, key, texts)) return false;
  }
  return !scanner.faulty();
}

bool IsWholeBag(const KeptText& text, Texts texts) {
  BagScanner scanner(text);
  BagEntry found;
  std::set<std::string_view> keys;
  while (scanner.Next(found)) {
    const bool is_whole =
        found.tag == '"' ? IsSpelledRight(found, text.depth()) : IsWholeValue(scanner, found);
    if (!is_whole || !keys.insert(found.key).second) return false;
    if (!EndsNothing(found.key, text.depth())) return false;
    const bool is_clean = IsWholeText(found.key) && (found.tag != '"' || IsWholeText(found.value));
    if (texts == Texts::kClean && !is_clean) return false;
  }
  return !scanner.faulty();
}

}  // namespace

bool EndsNothing(std::string_view raw, uint32_t depth) {
  for (size_t at = 0; (at = raw.find('^', at)) != raw.npos;) {
    const bag::Escape escape = bag::ReadEscape(raw.substr(at));
    if (escape.size != 0 && escape.level < depth) return false;
    at += std::max<size_t>(escape.size, 1);
  }
  return true;
}

bool IsSpelledRight(const BagEntry& found, uint32_t depth) {
  constexpr size_t kSize = 2;
  if (depth == 0) return true;
  std::string marks;
  bag::AppendEscape(bag::EscapeClass::kOpening, depth, marks);
  bag::AppendEscape(bag::EscapeClass::kClosing, depth, marks);
  const char* const end = found.value.data() + found.value.size();
  return std::string_view(found.value.data() - kSize, kSize) == marks.substr(0, kSize) &&
         std::string_view(end, kSize) == marks.substr(kSize);
}

bool IsWhole(const KeptText& text, const SavedEntry& what, Texts texts) {
  switch (what.kind) {
    case Kind::kText:
      return (texts == Texts::kAny || IsWholeText(text.raw())) &&
             EndsNothing(text.raw(), text.depth());
    case Kind::kBag:
      return IsWholeBag(text, texts);
    case Kind::kObject:
      return text.empty() || IsWholeObject(text, *what.part, texts);
    case Kind::kCollection:
      return IsWholeCollection(text, what, texts);
    default:
      return false;
  }
}

bool IsWholeMember(const KeptText& text, const SavedEntry& collection, TextView key, Texts texts) {
  if (text.empty() || !IsWhole(text, collection.part->self, texts)) return false;
  if (!collection.keyed) return true;
  const Text prefix = automation::FromUtf8(collection.prefix);
  return key.starts_with(prefix) && bag::BagReader(text).GetText("K") == key.substr(prefix.size());
}

bool IsWholeText(std::string_view raw) {
  if (raw.find_first_of(std::string_view("\0\"", 2)) != raw.npos) return false;
  const auto is_ascii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  return std::all_of(raw.begin(), raw.end(), is_ascii) ||
         automation::ToUtf8(automation::FromUtf8(raw)) == raw;
}

}  // namespace vndoc6::salvage
