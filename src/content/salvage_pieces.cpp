#include "content/salvage_pieces.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>
#include <utility>

#include "content/salvage_likeness.h"
#include "content/salvage_whole.h"

namespace vndoc6::salvage {
namespace {

using Kind = SavedEntry::Kind;

bool SamePart(const SavedEntry& left, const SavedEntry& right) {
  return left.kind == right.kind && left.part == right.part && left.prefix == right.prefix;
}

// Whether nothing in a text had to be mended.
bool IsSound(const DamagedFile& file, const FoundEntry& found) {
  const std::vector<Mark>& marks = file.marks();
  for (size_t i = found.inside.first_mark; i < found.inside.end_mark; ++i) {
    if (!marks[i].is_there || !marks[i].spelled) return false;
  }
  return found.opened && found.closed && found.spelled &&
         IsWholeText(file.View(found.inside.bytes));
}

bool IsSurelyAnyPart(const DamagedFile& file, const Region& region) {
  const Likeness likeness(file, region, false);
  const auto& parts = PartsAtDepth(region.depth);
  return std::any_of(parts.begin(), parts.end(),
                     [&](const SavedEntry* part) { return likeness.IsSurely(*part); });
}

// The tail of a text that is surely some part, as a piece of its own.
std::optional<Piece> TearOff(const DamagedFile& file, FoundEntry& found) {
  static const SavedEntry kAnyBag = {"", '"', Kind::kBag};
  Region tail = found.inside;
  for (const FoundEntry& entry : FindEntries(file, found.inside, kAnyBag).entries) {
    tail.bytes.begin = entry.all.begin;
    if (!IsSurelyAnyPart(file, tail)) {
      if (entry.tag == '"') tail.first_mark = entry.inside.end_mark + 1;
      continue;
    }
    Piece torn;
    torn.found = found;
    torn.found.opened = false;
    torn.found.key = {tail.bytes.begin, tail.bytes.begin};
    torn.found.all.begin = tail.bytes.begin;
    torn.found.inside = tail;
    found.closed = false;
    found.all.end = found.inside.bytes.end = tail.bytes.begin;
    found.inside.end_mark = tail.first_mark;
    return torn;
  }
  return std::nullopt;
}

// What came behind a text may be in it when the next entry of its object is missing, or when
// something in it had to be mended.
bool MayHoldMore(const DamagedFile& file, const Piece& piece,
                 const std::set<const SavedEntry*>& taken) {
  const Place& place = piece.place;
  const bool has_marks = piece.found.inside.first_mark != piece.found.inside.end_mark;
  if (!piece.IsUnreadText() || place.entry == nullptr || !has_marks) return false;
  if (place.whole->kind != Kind::kObject || place.entry->part != nullptr) return false;
  const std::vector<SavedEntry>& entries = place.whole->part->entries;
  const auto next =
      std::find_if(entries.begin() + (place.entry - entries.data()) + 1, entries.end(),
                   [](const SavedEntry& entry) { return entry.always; });
  return next == entries.end() || taken.count(&*next) == 0 || !IsSound(file, piece.found);
}

// Adds a part to what it can be part of.
bool Adopt(Piece& stray, Group& group) {
  const SavedEntry& part = *stray.part->what;
  const SavedEntry* place = nullptr;
  if (group.whole->kind == Kind::kCollection) {
    if (part.kind == Kind::kObject && part.part == group.whole->part) place = group.whole;
  } else {
    for (const SavedEntry& entry : group.whole->part->entries) {
      const bool is_free = part.kind == Kind::kCollection || group.taken.count(&entry) == 0;
      if (place == nullptr && is_free && SamePart(entry, part)) place = &entry;
    }
  }
  if (place == nullptr) return false;
  stray.place = {place, group.whole, 0};
  group.pieces.push_back(&stray);
  group.taken.insert(place);
  return true;
}

}  // namespace

void ArrangePieces(const DamagedFile& file, Pieces& pieces, const SavedEntry& what,
                   uint32_t depth) {
  std::vector<Item> items;
  items.reserve(pieces.size());
  for (const Piece& piece : pieces) {
    items.push_back(piece.part ? Item{nullptr, piece.part->what} : Item{&piece.found, nullptr});
  }
  const std::vector<Place> places = Arrange(file, items, what, depth);
  for (size_t i = 0; i < pieces.size(); ++i) pieces[i].place = places[i];
}

bool ArrangeAsExpected(const DamagedFile& file, Pieces& pieces, const SavedEntry& what) {
  std::set<const SavedEntry*> taken;
  for (Piece& piece : pieces) {
    const FoundEntry& found = piece.found;
    if (!found.opened || !found.closed || !found.spelled) return false;
    const std::string_view key = file.View(found.key);
    const SavedEntry* entry = &what;
    if (what.kind == Kind::kCollection) {
      const bool is_member = found.tag == '"' && key.starts_with(what.prefix);
      if (!is_member ||
          !IsWhole(file.Kept(found.inside.bytes, found.inside.depth), what.part->self)) {
        return false;
      }
    } else {
      entry = what.part->Find(key);
      if (entry == nullptr || (entry->tag == '"') != (found.tag == '"')) return false;
      if (!taken.insert(entry).second && entry->kind != Kind::kPoints) return false;
    }
    piece.place = {entry, &what, 1};
  }
  return true;
}

bool TearApart(const DamagedFile& file, Pieces& pieces) {
  bool torn = false;
  Pieces all;
  for (size_t begin = 0, end = 0; begin < pieces.size(); begin = end) {
    std::set<const SavedEntry*> taken;
    for (; end < pieces.size() && pieces[end].place.number == pieces[begin].place.number; ++end) {
      taken.insert(pieces[end].place.entry);
    }
    for (size_t i = begin; i < end; ++i) {
      std::optional<Piece> tail;
      if (MayHoldMore(file, pieces[i], taken)) tail = TearOff(file, pieces[i].found);
      torn = torn || tail;
      all.push_back(std::move(pieces[i]));
      if (tail) all.push_back(*std::move(tail));
    }
  }
  pieces = std::move(all);
  return torn;
}

std::vector<Group> GroupsOf(Pieces& pieces, const SavedEntry& what, uint32_t depth) {
  std::vector<Group> groups;
  std::vector<Piece*> strays;
  size_t number = 0;
  for (Piece& piece : pieces) {
    if (piece.part && piece.place.entry == nullptr) {
      strays.push_back(&piece);
      continue;
    }
    if (groups.empty() || piece.place.number != number) groups.push_back({piece.place.whole});
    number = piece.place.number;
    groups.back().pieces.push_back(&piece);
    groups.back().taken.insert(piece.place.entry);
  }
  std::map<const SavedEntry*, size_t> last;
  for (size_t i = 0; i < groups.size(); ++i) last[groups[i].whole] = i;
  std::vector<const SavedEntry*> wholes = {&what};
  if (depth > 0) {
    wholes.insert(wholes.end(), PartsAtDepth(depth).begin(), PartsAtDepth(depth).end());
  }
  for (Piece* stray : strays) {
    bool adopted = std::any_of(last.begin(), last.end(), [&](const auto& group) {
      return Adopt(*stray, groups[group.second]);
    });
    for (const SavedEntry* whole : wholes) {
      // Only of members there may be more.
      const bool is_member = depth > 0 && whole == &whole->part->self;
      const bool may_be = is_member || last.count(whole) == 0;
      Group own = {whole};
      if (adopted || !may_be || !Adopt(*stray, own)) continue;
      adopted = true;
      last[whole] = groups.size();
      groups.push_back(std::move(own));
    }
    if (!adopted && !groups.empty()) groups.back().pieces.push_back(stray);  // is lost there
  }
  return groups;
}

const SavedEntry* MostLike(const DamagedFile& file, const FoundEntry& text) {
  constexpr int kEnough = 2;
  const Likeness likeness(file, text.inside, text.opened);
  const SavedEntry* best = nullptr;
  int most = 0;
  for (const SavedEntry* part : PartsAtDepth(text.inside.depth)) {
    const Likeness::Count count = likeness.CountOf(*part);
    const int difference = 2 * count.known - count.all;
    if (count.known < kEnough || (best != nullptr && difference <= most)) continue;
    best = part;
    most = difference;
  }
  return best;
}

}  // namespace vndoc6::salvage
