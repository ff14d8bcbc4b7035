#include "content/salvage_entries.h"

#include <algorithm>

#include "bag/bag_reader.h"
#include "bag/bag_scanner.h"
#include "content/salvage_likeness.h"
#include "content/salvage_sound.h"
#include "vndoc6/automation/base64.h"

namespace vndoc6::salvage {
namespace {

using Kind = SavedEntry::Kind;
constexpr size_t kNowhere = std::string_view::npos;
constexpr char kText = '"';

// A key that a version of this library may have written, or a host in one of its bags.
bool IsWord(std::string_view key) {
  return !key.empty() && std::all_of(key.begin(), key.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '.';
  });
}

class Search {
 public:
  Search(const DamagedFile& file, const Region& region, const SavedEntry& what)
      : file_(file), region_(region), what_(what) {}

  FoundEntries Find() {
    size_t at = region_.bytes.begin;
    size_t index = region_.first_mark;
    while (index < region_.end_mark) {
      const size_t partner = marks()[index].partner;
      at = TakeText(at, index, partner);
      index = partner + 1;
    }
    TakePlain({at, region_.bytes.end}, false);
    return std::move(found_);
  }

 private:
  const std::vector<Mark>& marks() const { return file_.marks(); }
  std::string_view View(Span span) const { return file_.View(span); }

  // --- Texts: what lies between two marks ---

  // Takes what lies before a text, and the text. Gives its end.
  size_t TakeText(size_t at, size_t opening, size_t closing) {
    const Mark& open = marks()[opening];
    const Mark& close = marks()[closing];
    FoundEntry entry;
    entry.opened = open.is_there;
    entry.closed = close.is_there;
    entry.spelled = (open.spelled || !open.is_there) && (close.spelled || !close.is_there);
    entry.inside = {{}, opening + 1, closing, region_.depth + 1};
    if (open.is_there) {
      entry.key = TakePlain({at, open.at}, true);
      entry.inside.bytes.begin = open.end();
    } else {
      entry.inside.bytes.begin = TakeKnown({at, std::min(open.at, region_.bytes.end)});
      entry.key = {entry.inside.bytes.begin, entry.inside.bytes.begin};
    }
    entry.inside.bytes.end =
        close.is_there ? close.at : EndWithoutClosing(entry.inside.bytes.begin, closing);
    entry.all = {entry.key.begin, close.is_there ? close.end() : entry.inside.bytes.end};
    found_.entries.push_back(entry);
    return entry.all.end;
  }

  // A text without its closing ends before the entries that are known here and stand directly
  // before the next mark.
  size_t EndWithoutClosing(size_t begin, size_t closing) const {
    for (size_t i = closing; i-- > region_.first_mark;) {
      if (!marks()[i].is_there) continue;
      begin = std::max(begin, marks()[i].end());
      break;
    }
    Span gap = {begin, std::min(marks()[closing].at, region_.bytes.end)};
    const bool key_follows = closing + 1 < region_.end_mark && marks()[closing + 1].is_there;
    if (key_follows) gap.end = KeyBefore(gap).begin;
    while (!gap.empty() && View(gap).back() == ':') {
      const Span value = {gap.begin, gap.end - 1};
      const size_t equals = View(value).rfind('=');
      if (equals == kNowhere) break;
      FoundEntry entry;
      if (!ReadPlain({gap.begin + equals + 1, value.end}, entry)) break;
      const Span key = KnownAnywhere({gap.begin, gap.begin + equals}, entry.tag);
      if (key.empty()) break;
      gap.end = key.begin;
    }
    return gap.end;
  }

  // The key at the end of `gap`, before an opening; empty when there is none.
  Span KeyBefore(Span gap) const {
    const std::string_view text = View(gap);
    size_t at = kNowhere;
    if (what_.kind == Kind::kObject) {
      const Span known = KnownKey(gap, kText);
      return known.empty() ? Span{gap.end, gap.end} : known;
    }
    if (what_.kind == Kind::kCollection) at = text.rfind(what_.prefix);
    if (at == kNowhere) at = text.rfind(':') + 1;  // 0 when there is none
    return at != 0 ? Span{gap.begin + at, gap.end} : Span{gap.end, gap.end};
  }

  // --- What lies between texts ---

  // Takes the plain entries of `gap`. With a key at its end gives that.
  Span TakePlain(Span gap, bool with_key) {
    for (;;) {
      const size_t equals = View(gap).find('=');
      const size_t colon = equals != kNowhere ? View(gap).find(':', equals) : kNowhere;
      if (colon == kNowhere) break;
      const Span piece = {gap.begin, gap.begin + colon};
      if (!TakeEntry(piece, gap.begin + equals)) Rubbish({piece.begin, piece.end + 1});
      gap.begin = piece.end + 1;
    }
    if (with_key) return TakeKey(gap);
    Rubbish(gap);
    return gap;
  }

  // Takes one entry, `piece` without its ":". False when there is none. It may have lost its
  // beginning, or follow one that has lost its end.
  bool TakeEntry(Span piece, size_t equals) {
    FoundEntry entry;
    bool valid = ReadPlain({equals + 1, piece.end}, entry);
    Span key = {piece.begin, equals};
    const bool any_key = what_.kind == Kind::kBag || IsWord(View(key)) || IsAlmostKnown(key);
    if (!(valid && any_key)) {
      key = valid ? KnownKey(key, entry.tag) : Span();
      while (key.empty()) {
        const size_t next = View({equals + 1, piece.end}).find('=');
        if (next == kNowhere) return false;
        const Span before = {equals + 1, equals + 1 + next};
        equals = before.end;
        valid = ReadPlain({equals + 1, piece.end}, entry);
        if (valid) key = KnownKey(before, entry.tag);
      }
    }
    Rubbish({piece.begin, key.begin});
    Add(key, piece.end + 1, entry);
    return true;
  }

  // Takes entries that are known here, whole and one behind the other. Gives their end.
  size_t TakeKnown(Span gap) {
    for (;;) {
      const size_t equals = View(gap).find('=');
      const size_t colon = equals != kNowhere ? View(gap).find(':', equals) : kNowhere;
      if (colon == kNowhere) return gap.begin;
      const Span key = {gap.begin, gap.begin + equals};
      FoundEntry entry;
      if (!ReadPlain({key.end + 1, gap.begin + colon}, entry)) return gap.begin;
      if (key.empty() || KnownKey(key, entry.tag).size() != key.size()) return gap.begin;
      Add(key, gap.begin + colon + 1, entry);
      gap.begin += colon + 1;
    }
  }

  // The key before an opening; what stands before it there is rubbish.
  Span TakeKey(Span gap) {
    Span key = gap;
    if (!IsWord(View(gap)) && !IsAlmostKnown(gap)) {
      const Span known = what_.kind == Kind::kObject ? KnownKey(gap, kText) : Span();
      if (!known.empty()) key = known;
      if (what_.kind == Kind::kCollection) {
        const size_t prefix = View(gap).find(what_.prefix);
        if (prefix != kNowhere) key.begin += prefix;
      }
    }
    Rubbish({gap.begin, key.begin});
    return key;
  }

  void Add(Span key, size_t end, FoundEntry entry) {
    entry.key = key;
    entry.all = {key.begin, end};
    found_.entries.push_back(entry);
  }
  void Rubbish(Span span) {
    if (!span.empty()) found_.rubbish.push_back(span);
  }

  // --- Keys and values ---

  bool IsAlmostKnown(Span key) const {
    if (what_.kind != Kind::kObject) return false;
    return std::any_of(what_.part->entries.begin(), what_.part->entries.end(),
                       [&](const SavedEntry& entry) {
                         return key.size() <= entry.key.size() && IsNearly(View(key), entry.key);
                       });
  }

  // The longest key of an entry with that tag that `text` ends with; empty when there is none.
  Span KnownKey(Span text, char tag) const { return KnownKey(what_, text, tag); }
  Span KnownKey(const SavedEntry& what, Span text, char tag) const {
    if (what.kind != Kind::kObject) return {};
    size_t longest = 0;
    for (const SavedEntry& entry : what.part->entries) {
      if (entry.tag != tag) continue;
      const std::string_view key = KeyAtEnd(View(text), entry);
      if (entry.Has(key)) longest = std::max(longest, key.size());
    }
    return longest != 0 ? Span{text.end - longest, text.end} : Span();
  }
  // The same in whatever may lie so deep: another object may have run into this one.
  Span KnownAnywhere(Span text, char tag) const {
    Span longest = KnownKey(text, tag);
    for (const SavedEntry* part : PartsAtDepth(region_.depth)) {
      const Span key = KnownKey(*part, text, tag);
      if (key.size() > longest.size()) longest = key;
    }
    return longest;
  }

  static std::string_view KeyAtEnd(std::string_view text, const SavedEntry& entry) {
    if (entry.kind == Kind::kPoints) {
      const size_t number = text.rfind("EP");
      return number != kNowhere ? text.substr(number) : std::string_view();
    }
    return text.ends_with(entry.key) ? text.substr(text.size() - entry.key.size())
                                     : std::string_view();
  }

  // Whether `value` is one with its tag, and that tag.
  bool ReadPlain(Span value, FoundEntry& entry) const {
    // With a key and an end of its own it is a whole text.
    if (value.begin == 0 || value.empty()) return false;
    bag::BagScanner scanner(file_.Kept({value.begin - 1, value.end + 1}, 0));
    bag::BagEntry plain;
    if (!scanner.Next(plain) || plain.tag == kText) return false;
    const bool is_whole =
        plain.value.data() + plain.value.size() == View(value).data() + value.size();
    automation::Variant ignored;
    const bool valid = plain.tag == 'p' ? automation::FromBase64(plain.value).has_value()
                                        : scanner.ValueOf(plain, ignored);
    if (!is_whole || !valid) return false;
    entry.tag = plain.tag == 'T' || plain.tag == 'F' ? 'b' : plain.tag;
    return true;
  }

  const DamagedFile& file_;
  const Region& region_;
  const SavedEntry& what_;
  FoundEntries found_;
};

}  // namespace

DamagedFile::DamagedFile(bag::KeptText text)
    : kept_(std::move(text)),
      bytes_(kept_.raw()),
      marks_(FittedMarks(bytes_, FindSoundEntries(kept_))) {}

FoundEntries FindEntries(const DamagedFile& file, const Region& region, const SavedEntry& what) {
  return Search(file, region, what).Find();
}

}  // namespace vndoc6::salvage
