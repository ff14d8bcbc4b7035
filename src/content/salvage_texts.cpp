#include "content/salvage_texts.h"

#include <algorithm>
#include <set>

#include "bag/escape.h"
#include "content/salvage_whole.h"

namespace vndoc6::salvage {
namespace {

// What stands for a quote or an escape that means nothing.
constexpr char kMeaningless = '?';

}  // namespace

// What lies side by side is told together.
void Reading::Lose(Span span) const {
  const bool goes_on = !damages.empty() && damages.back().kind == Damage::Kind::kLost &&
                       damages.back().offset + damages.back().size == span.begin &&
                       damages.back().place == place;
  if (goes_on) {
    damages.back().size += span.size();
  } else {
    Tell(Damage::Kind::kLost, span);
  }
}

void Reading::Tell(Damage::Kind kind, Span span) const {
  damages.push_back({kind, place, span.begin, span.size()});
}

Node ReadText(const Reading& reading, const SavedEntry& what, const Region& region) {
  const std::string_view raw = reading.file.View(region.bytes);
  Node node;
  node.what = &what;
  auto bad = static_cast<size_t>(std::count(raw.begin(), raw.end(), '\0'));
  for (size_t at = 0; at < raw.size();) {
    const bag::Escape escape = raw[at] == '^' ? bag::ReadEscape(raw.substr(at)) : bag::Escape();
    const size_t size = std::max<size_t>(escape.size, 1);
    const bool ends_others = escape.size != 0 ? escape.level < region.depth : raw[at] == '"';
    if (ends_others) {
      node.text += kMeaningless;
      bad += size;
    } else {
      node.text += raw.substr(at, size);
    }
    at += size;
  }
  if (bad == 0 && !IsWholeText(raw)) bad = 1;
  if (bad != 0) reading.Tell(Damage::Kind::kLost, {region.bytes.begin, region.bytes.begin + bad});
  return node;
}

Node ReadBag(const Reading& reading, const SavedEntry& what, const Region& region) {
  static const SavedEntry kAnyText;
  const DamagedFile& file = reading.file;
  const FoundEntries found = FindEntries(file, region, what);
  for (const Span& rubbish : found.rubbish) reading.Lose(rubbish);
  Node node;
  node.what = &what;
  std::set<std::string_view> keys;
  for (const FoundEntry& entry : found.entries) {
    Field field;
    field.key = file.View(entry.key);
    const bool has_key = entry.opened && IsWholeText(field.key) &&
                         EndsNothing(field.key, region.depth) &&
                         field.key.find('=') == field.key.npos;
    if (!has_key) {
      reading.Lose(entry.all);
      continue;
    }
    const std::string place = Below(reading.place, NameOf(file, entry));
    const Reading below = {file, place, reading.damages};
    if (!keys.insert(field.key).second) {
      below.Tell(Damage::Kind::kTwice, entry.all);
      continue;
    }
    if (entry.tag == '"') {
      field.content = ReadText(below, kAnyText, entry.inside);
      field.content.closing = ClosingOf(file, entry);
    } else {
      field.plain = file.View({entry.key.end, entry.all.end});
    }
    node.fields.push_back(std::move(field));
  }
  return node;
}

std::string_view ClosingOf(const DamagedFile& file, const FoundEntry& found) {
  const bool is_there = found.closed && found.spelled;
  return is_there ? file.View({found.inside.bytes.end, found.all.end}) : std::string_view();
}

std::string NameOf(const DamagedFile& file, const FoundEntry& found) {
  const std::string name = PlainKey(file.View(found.key), found.inside.depth);
  return name.empty() ? "?" : name;
}

}  // namespace vndoc6::salvage
