#include "file_text.h"

#include <unordered_map>
#include <utility>
#include <vector>

#include "bag/bag_scanner.h"
#include "copies.h"
#include "one_line.h"
#include "platform/file_system.h"
#include "platform/keys.h"
#include "scratch_folder.h"

namespace vndoc {

using vndoc6::automation::Call;
using vndoc6::automation::Get;
using vndoc6::bag::BagEntry;
using vndoc6::bag::BagScanner;
using vndoc6::bag::KeptText;
using vndoc6::bag::SharedBytes;

namespace {

constexpr char kTextTag = '"';

bool IsBag(const KeptText& text) {
  BagScanner scanner(text);
  BagEntry entry;
  size_t count = 0;
  while (scanner.Next(entry)) ++count;
  return count > 0 && !scanner.faulty();
}

// The entries of a bag, each found at once by whoever asks in their order.
class Entries {
 public:
  explicit Entries(const KeptText& text) : scanner_(text) {
    BagEntry entry;
    while (scanner_.Next(entry)) rows_.push_back({scanner_.KeyOf(entry), entry, false});
  }

  struct Row {
    Text key;
    BagEntry entry;
    bool taken;  // for whoever asks
  };
  // Null without such a key.
  Row* Find(const Text& key) {
    if (next_ < rows_.size() && rows_[next_].key == key) return &rows_[next_++];
    if (index_.empty()) {
      for (size_t i = 0; i < rows_.size(); ++i) index_.emplace(rows_[i].key, i);
    }
    const auto found = index_.find(key);
    if (found == index_.end()) return nullptr;
    next_ = found->second + 1;
    return &rows_[found->second];
  }
  KeptText TextOf(const Row& row) const { return scanner_.TextOf(row.entry); }

 private:
  BagScanner scanner_;
  std::vector<Row> rows_;
  std::unordered_map<TextView, size_t> index_;
  size_t next_ = 0;
};

class Search {
 public:
  void Compare(const KeptText& file, const KeptText& again, const std::string& place) {
    Entries known(again);
    BagScanner scanner(file);
    BagEntry entry;
    while (scanner.Next(entry)) {
      const Text key = scanner.KeyOf(entry);
      const auto below = [&] { return (place.empty() ? "" : place + '/') + OneLine(key); };
      Entries::Row* const found = known.Find(key);
      if (found == nullptr) {
        lost.push_back({LostText::Kind::kUnknownKey, below(), 0});
      } else if (std::exchange(found->taken, true)) {
        lost.push_back({LostText::Kind::kTwice, below(), 0});
      } else if (entry.tag == kTextTag && found->entry.tag == kTextTag) {
        CompareValues(scanner.TextOf(entry), known.TextOf(*found), below);
      }
    }
    if (scanner.faulty()) {
      lost.push_back({LostText::Kind::kDoesNotParse, place, scanner.fault_offset()});
    }
  }

  std::vector<LostText> lost;

 private:
  // Texts that are no bags are taken as they are. Of one that was to be a bag nothing is left.
  template <class Place>
  void CompareValues(const KeptText& file, const KeptText& again, Place place) {
    if (file.raw() == again.raw()) return;
    if (IsBag(again) || IsBag(file)) {
      Compare(file, again, place());
    } else if (again.raw().empty()) {
      lost.push_back({LostText::Kind::kDoesNotParse, place(), 0});
    }
  }
};

// Reads everything, steps and links as copies.
class Rereader : public FrugalVisitor {
 public:
  Ref<Object> ObjectToVisit(Object& member) final {
    auto object = FrugalVisitor::ObjectToVisit(member);
    if (object.get() != &member) {
      original_ = &member;
      copy_ = object.get();
    }
    return object;
  }
  void OnObjectEnd(Object& object) final {
    if (&object != copy_) return;
    copy_ = nullptr;
    const Text kept = Call(*original_, u"Save").ToText();
    const Text reread = Call(object, u"Save").ToText();
    if (reread != kept) OnDifferent(*original_, kept, reread);
  }

 protected:
  // What a step or link writes before it was read and after.
  virtual void OnDifferent(Object& original, const Text& kept, const Text& reread) = 0;

 private:
  Object* original_ = nullptr;
  Object* copy_ = nullptr;  // while it is visited
};

// Puts what was read of steps and links in the place of what they were.
class Replacer : public Rereader {
  void OnDifferent(Object& original, const Text&, const Text& reread) override {
    Call(original, u"Load", {Variant(reread), Variant(Get(original, u"Key"))});
  }
};

// Says what was not read of them.
class MemberComparison : public Rereader {
 public:
  Search search;

 private:
  void OnDifferent(Object& original, const Text& kept, const Text& reread) override {
    // The keys of the file's parts.
    const std::string part = original.TypeName() == "vnStep" ? "S/" : "LK/";
    search.Compare(KeptText(kept), KeptText(reread),
                   part + OneLine(Get(original, u"Key").ToText()));
  }
};

// What a document writes, which is let go of.
std::string TextOf(Ref<vnDocument> document) {
  const ScratchFolder folder;
  const Text name = folder.Name("again");
  if (!document->SaveAs(name)) throw Failure("a temporary file can't be written");
  document = nullptr;
  auto bytes = vndoc6::platform::ReadWholeFile(name);
  if (!bytes) throw Failure("a temporary file can't be read again");
  return *std::move(bytes);
}

}  // namespace

std::vector<LostText> FindLostTexts(std::string file, std::string written_again) {
  Search search;
  search.Compare(KeptText(SharedBytes(std::move(file))),
                 KeptText(SharedBytes(std::move(written_again))), "");
  return std::move(search.lost);
}

// A document whose steps and links were read writes more than its file holds; with copies of them,
// one by one, there is no need for that text.
std::vector<LostText> FindLostTexts(Context& context, const std::string& file,
                                    Ref<vnDocument> document) {
  MemberComparison members;
  vndoc6::Walk(*document, members);
  std::string again = TextOf(std::move(document));
  std::vector<LostText> lost = FindLostTexts(ReadBytes(context, file), std::move(again));
  lost.insert(lost.end(), members.search.lost.begin(), members.search.lost.end());
  return lost;
}

std::string WriteAgain(Ref<vnDocument> document) {
  Replacer replacer;
  vndoc6::Walk(*document, replacer);
  return TextOf(std::move(document));
}

}  // namespace vndoc
