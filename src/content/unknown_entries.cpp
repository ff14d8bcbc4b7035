#include "vndoc6/content/unknown_entries.h"

#include <utility>

#include "automation/inside.h"
#include "bag/bag_scanner.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/step.h"

namespace vndoc6 {
namespace {

// Null for an object that has no saved text of its own.
bag::UnknownEntries* Carried(automation::Object& object) {
  if (auto* const carrier = dynamic_cast<bag::Carrier*>(&object)) {
    return &Inside::unknown_entries(*carrier);
  }
  // What these two carry is built when somebody asks.
  if (auto* const step = dynamic_cast<vnStep*>(&object)) return &Inside::unknown_entries(*step);
  if (auto* const link = dynamic_cast<vnLink*>(&object)) return &Inside::unknown_entries(*link);
  return nullptr;
}

}  // namespace

std::vector<UnknownEntry> UnknownEntriesOf(automation::Object& object) {
  std::vector<UnknownEntry> entries;
  const bag::UnknownEntries* const carried = Carried(object);
  if (carried == nullptr) return entries;
  for (const bag::KeptText& text : carried->list()) {
    bag::BagScanner scanner(text);
    bag::BagEntry found;
    if (!scanner.Next(found)) continue;
    UnknownEntry entry{scanner.KeyOf(found), {}, std::string(text.Unescaped().raw())};
    scanner.ValueOf(found, entry.value);
    entries.push_back(std::move(entry));
  }
  return entries;
}

std::string UnknownTextOf(automation::Object& object) {
  std::string text;
  for (const UnknownEntry& entry : UnknownEntriesOf(object)) text += entry.text;
  return text;
}

bool PutUnknownText(automation::Object& object, std::string_view text) {
  bag::UnknownEntries* const carried = Carried(object);
  if (carried == nullptr) return false;
  bag::BagScanner scanner{bag::KeptText(bag::SharedBytes(std::string(text)))};
  bag::BagEntry found;
  std::vector<bag::KeptText> entries;
  while (scanner.Next(found)) entries.push_back(scanner.WholeOf(found));
  if (scanner.faulty()) return false;
  carried->Set(std::move(entries));
  return true;
}

}  // namespace vndoc6
