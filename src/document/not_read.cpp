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

class Search {
 public:
  explicit Search(const KeptText& file) : file_(file.raw()) {}

  // Texts in a bag are the host's, whatever they look like.
  void LookInto(const KeptText& text, const SavedEntry& what, const std::string& place,
                size_t begin) {
    BagScanner scanner(text);
    BagEntry found;
    while (scanner.Next(found)) {
      if (found.tag != '"' || what.part == nullptr) continue;
      const bool is_member = what.kind == Kind::kCollection;
      const SavedEntry* const entry = is_member ? &what.part->self : what.part->Find(found.key);
      if (entry == nullptr || entry->kind == Kind::kText) continue;
      const std::string key = automation::ToUtf8(scanner.KeyOf(found));
      LookInto(scanner.TextOf(found), *entry, place.empty() ? key : place + "/" + key,
               At(found.value, begin));
    }
    if (!scanner.faulty()) return;
    const size_t fault = scanner.fault_offset();
    found_.push_back({place, begin + fault, text.raw().size() - fault});
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
  search.LookInto(KeptText(file, text, 0), DocumentForm().self, {},
                  file.raw().size() - text.size());
  return search.Take();
}

}  // namespace vndoc6
