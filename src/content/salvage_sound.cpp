#include "content/salvage_sound.h"

#include "bag/bag_reader.h"
#include "bag/bag_scanner.h"
#include "content/salvage_whole.h"
#include "document/saved_form.h"

namespace vndoc6::salvage {
namespace {

using bag::BagEntry;
using bag::BagScanner;
using bag::KeptText;
using Kind = SavedEntry::Kind;

class SoundSearch {
 public:
  explicit SoundSearch(const KeptText& file) : file_(file.raw()) {}

  void LookInto(const KeptText& text, const SavedEntry& what) {
    BagScanner scanner(text);
    BagEntry found;
    while (scanner.Next(found)) {
      const SavedEntry* const entry = EntryOf(found, what);
      // A text or a bag may have taken in what came behind it.
      const bool is_part = entry != nullptr && entry->part != nullptr && found.tag == '"';
      if (!is_part || !IsSpelledRight(found, text.depth())) continue;
      const KeptText value = scanner.TextOf(found);
      if (IsWhole(value, *entry, Texts::kAny)) {
        entries_.push_back({At(found.key), 0});
        AddMarks(found, value, *entry, text.depth());
        entries_.back().end = entries_.back().marks.back().end();
      } else {
        LookInto(value, *entry);
      }
    }
  }

  std::vector<SoundEntry> Take() { return std::move(entries_); }

 private:
  size_t At(std::string_view part) const { return static_cast<size_t>(part.data() - file_.data()); }

  static const SavedEntry* EntryOf(const BagEntry& found, const SavedEntry& what) {
    return what.kind == Kind::kCollection ? &what.part->self : what.part->Find(found.key);
  }

  void AddMarks(const BagEntry& found, const KeptText& value, const SavedEntry& entry,
                uint32_t depth) {
    const auto level = static_cast<uint8_t>(depth);
    std::vector<Mark>& marks = entries_.back().marks;
    const size_t key_end = At(found.key) + found.key.size();
    const size_t begin = At(found.value);
    marks.push_back({key_end, static_cast<uint8_t>(begin - key_end), level, true});
    if (entry.kind != Kind::kText) AddMarksIn(value, entry);
    marks.push_back({begin + found.value.size(), kClosingSize, level, false});
  }

  void AddMarksIn(const KeptText& text, const SavedEntry& what) {
    static const SavedEntry kAnyText;
    BagScanner scanner(text);
    BagEntry found;
    while (scanner.Next(found)) {
      if (found.tag != '"') continue;
      const SavedEntry& entry = what.part != nullptr ? *EntryOf(found, what) : kAnyText;
      AddMarks(found, scanner.TextOf(found), entry, text.depth());
    }
  }

  static constexpr uint8_t kClosingSize = 2;
  std::string_view file_;
  std::vector<SoundEntry> entries_;
};

}  // namespace

std::vector<SoundEntry> FindSoundEntries(const KeptText& file) {
  SoundSearch search(file);
  search.LookInto(file, DocumentForm().self);
  return search.Take();
}

}  // namespace vndoc6::salvage
