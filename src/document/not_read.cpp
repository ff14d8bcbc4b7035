#include "vndoc6/document/not_read.h"

#include <functional>
#include <utility>

#include "bag/bag_file.h"
#include "bag/bag_scanner.h"
#include "document/saved_form.h"

namespace vndoc6 {
namespace {

using bag::BagEntry;
using bag::BagScanner;
using bag::KeptText;
using Kind = SavedEntry::Kind;

// What a text in the file is: an entry of an outer one.
struct Place {
  const Place* outer;
  const BagScanner& scanner;
  const BagEntry& entry;
};

std::string NameOf(const Place* place) {
  if (place == nullptr) return {};
  const std::string outer = NameOf(place->outer);
  const std::string key = automation::ToUtf8(place->scanner.KeyOf(place->entry));
  return outer.empty() ? key : outer + "/" + key;
}

// The part that an entry of an object or a collection is; null for a value. Texts in a bag are the
// host's, whatever they look like.
const SavedEntry* PartOf(const SavedEntry& what, std::string_view key) {
  if (what.part == nullptr) return nullptr;
  if (what.kind == Kind::kCollection) return &what.part->self;
  for (const SavedEntry& entry : what.part->entries) {
    const bool is_part = entry.part != nullptr || entry.kind == Kind::kBag;
    if (is_part && entry.key == key) return &entry;
  }
  return nullptr;
}

class Search {
 public:
  explicit Search(const KeptText& file) : file_(file.raw()) {}

  void LookInto(const KeptText& text, const SavedEntry& what, const Place* place, size_t begin) {
    BagScanner scanner(text);
    BagEntry found;
    while (scanner.Next(found)) {
      if (found.tag != '"' || found.value.empty()) continue;
      const SavedEntry* const part = PartOf(what, found.key);
      if (part == nullptr) continue;
      const Place inner{place, scanner, found};
      LookInto(scanner.TextOf(found), *part, &inner, At(found.value, begin));
    }
    if (!scanner.faulty()) return;
    const size_t fault = scanner.fault_offset();
    found_.push_back({NameOf(place), begin + fault, text.raw().size() - fault});
  }

  std::vector<NotRead> Take() { return std::move(found_); }

 private:
  // Where a part lies in the file. One of an unescaped copy counts as lying where that begins.
  size_t At(std::string_view part, size_t begin) const {
    const std::less_equal<const char*> not_after;
    const bool is_in_file = not_after(file_.data(), part.data()) &&
                            not_after(part.data() + part.size(), file_.data() + file_.size());
    return is_in_file ? static_cast<size_t>(part.data() - file_.data()) : begin;
  }

  std::string_view file_;
  std::vector<NotRead> found_;
};

}  // namespace

std::vector<NotRead> FindNotRead(const KeptText& file) {
  Search search(file);
  const std::string_view text = bag::WithoutMark(file.raw());
  search.LookInto(KeptText(file, text, 0), DocumentForm().self, nullptr,
                  file.raw().size() - text.size());
  return search.Take();
}

}  // namespace vndoc6
