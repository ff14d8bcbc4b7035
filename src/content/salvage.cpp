#include "vndoc6/content/salvage.h"

#include <algorithm>
#include <utility>

#include "bag/bag_reader.h"
#include "content/salvage_reader.h"
#include "content/salvage_whole.h"
#include "document/file_version.h"

namespace vndoc6 {
namespace {

using salvage::Node;

// A save writes it last: without it a file breaks off.
const SavedEntry& LastEntry() {
  const std::vector<SavedEntry>& entries = DocumentForm().entries;
  return *std::find_if(entries.rbegin(), entries.rend(),
                       [](const SavedEntry& entry) { return entry.always; });
}

bool BreaksOff(const Node& document) {
  const SavedEntry& last = LastEntry();
  return !document.is_whole &&
         std::none_of(document.fields.begin(), document.fields.end(),
                      [&](const salvage::Field& field) { return field.entry == &last; });
}

// A version before this one did not write all the entries.
bool IsOlder(std::string_view text) {
  bag::BagReader reader{bag::KeptText(bag::SharedBytes(std::string(text)))};
  return reader.GetSingle("DV", kDocumentVersion) < kDocumentVersion;
}

bool IsMissing(const Damage& damage) { return damage.kind == Damage::Kind::kMissing; }

}  // namespace

Salvaged Salvage(std::string bytes) {
  const size_t size = bytes.size();
  const bag::KeptText text{bag::SharedBytes(std::move(bytes))};
  Salvaged salvaged;
  if (size != 0 && salvage::IsWhole(text, DocumentForm().self)) {
    salvaged.text = text.raw();
    return salvaged;
  }
  const salvage::DamagedFile file(text);
  std::vector<Damage>& damages = salvaged.damages;
  Node document = salvage::ReadDocument(file, damages);
  const bool breaks_off = BreaksOff(document);
  salvaged.text = salvage::WriteDocument(document, damages);
  if (breaks_off || size == 0) damages.push_back({Damage::Kind::kLost, {}, size, 0});
  if (std::all_of(damages.begin(), damages.end(), IsMissing) && IsOlder(salvaged.text)) {
    damages.clear();
  }
  std::stable_sort(damages.begin(), damages.end(), [](const Damage& left, const Damage& right) {
    return left.offset < right.offset;
  });
  if (damages.size() > Salvaged::kMostDamages) {
    salvaged.damages_not_listed = damages.size() - Salvaged::kMostDamages;
    damages.resize(Salvaged::kMostDamages);
  }
  return salvaged;
}

}  // namespace vndoc6
