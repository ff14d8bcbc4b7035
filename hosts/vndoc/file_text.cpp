#include "file_text.h"

#include <filesystem>
#include <map>

#include "common/bag_scanner.h"
#include "common/file_system.h"
#include "common/utility.h"
#include "compare/walk.h"
#include "one_line.h"

namespace vndoc {

using vndoc6::common::BagEntry;
using vndoc6::common::BagScanner;
using vndoc6::common::KeptText;
using vndoc6::common::SharedBytes;

namespace {

constexpr char kTextTag = '"';

bool IsBag(const KeptText& text) {
  BagScanner scanner(text);
  BagEntry entry;
  size_t count = 0;
  while (scanner.Next(entry)) ++count;
  return count > 0 && !scanner.faulty();
}

class Search {
 public:
  void Compare(const KeptText& file, const KeptText& again, const std::string& place) {
    BagScanner known(again);
    std::map<Text, BagEntry> known_entries;
    BagEntry entry;
    while (known.Next(entry)) known_entries.emplace(known.KeyOf(entry), entry);
    BagScanner scanner(file);
    while (scanner.Next(entry)) {
      const Text key = scanner.KeyOf(entry);
      const std::string below = (place.empty() ? "" : place + '/') + OneLine(key);
      const auto found = known_entries.find(key);
      if (found == known_entries.end()) {
        lost.push_back({LostText::Kind::kUnknownKey, below, 0});
      } else if (entry.tag == kTextTag && found->second.tag == kTextTag) {
        CompareValues(scanner.TextOf(entry), known.TextOf(found->second), below);
      }
    }
    if (scanner.faulty()) {
      lost.push_back({LostText::Kind::kDoesNotParse, place, scanner.fault_offset()});
    }
  }

  std::vector<LostText> lost;

 private:
  // Texts that are no bags are taken as they are.
  void CompareValues(const KeptText& file, const KeptText& again, const std::string& place) {
    if (file.raw() == again.raw()) return;
    if (IsBag(again) || IsBag(file)) Compare(file, again, place);
  }
};

}  // namespace

std::vector<LostText> FindLostTexts(std::string file, std::string written_again) {
  Search search;
  search.Compare(KeptText(SharedBytes(std::move(file))),
                 KeptText(SharedBytes(std::move(written_again))), "");
  return std::move(search.lost);
}

std::string WriteAgain(vnDocument& document) {
  vndoc6::ContentVisitor reads_all;
  vndoc6::Walk(document, reads_all);
  const auto path = std::filesystem::temp_directory_path() /
                    ("vndoc " + vndoc6::automation::ToUtf8(vndoc6::common::NewKey()));
  const bool saved = document.SaveAs(path.u16string());
  auto bytes = vndoc6::common::ReadWholeFile(path.u16string());
  std::error_code gone_already;
  std::filesystem::remove(path, gone_already);
  if (!saved || !bytes) throw Failure("a temporary file can't be written");
  return *std::move(bytes);
}

}  // namespace vndoc
