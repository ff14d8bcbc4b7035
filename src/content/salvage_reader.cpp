#include "content/salvage_reader.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "bag/escape.h"
#include "content/salvage_likeness.h"
#include "content/salvage_order.h"
#include "content/salvage_whole.h"

namespace vndoc6::salvage {
namespace {

using Kind = SavedEntry::Kind;
using Damages = std::vector<Damage>;

// What stands for a quote or an escape that means nothing.
constexpr char kMeaningless = '?';

// Whether damage may have made one of the other.
bool MayHaveBeen(std::string_view damaged, std::string_view mark) {
  if (damaged.size() != mark.size()) return false;
  size_t same = 0;
  for (size_t i = 0; i < mark.size(); ++i) same += damaged[i] == mark[i] ? 1 : 0;
  return same + 1 >= mark.size();
}

size_t SameBeginning(std::string_view left, std::string_view right) {
  size_t same = 0;
  while (same < std::min(left.size(), right.size()) && left[same] == right[same]) ++same;
  return same;
}

bool SamePart(const SavedEntry& left, const SavedEntry& right) {
  return left.kind == right.kind && left.part == right.part && left.prefix == right.prefix;
}

bool IsMember(const SavedEntry& what) {
  return what.kind == Kind::kObject && &what.part->self == &what;
}

// What was read of a text.
struct Part {
  // What it should have been. Of a member more than one where several have run into one.
  std::vector<Node> nodes;
  // What else came up in it.
  std::vector<Node> others;
};

// An entry of an object or a collection, or a part that came up elsewhere.
struct Piece {
  FoundEntry found;
  std::unique_ptr<Node> other;
  Place place;
  // What it was read as, and what came of it.
  const SavedEntry* read_as = nullptr;
  std::vector<Node> nodes;
  Damages damages;

  bool IsText() const { return !other && found.tag == '"'; }
  Item AsItem() const { return other ? Item{nullptr, other->what} : Item{&found, nullptr}; }
};
using Pieces = std::vector<Piece>;

// An object or a collection, and what belongs to it.
struct Group {
  const SavedEntry* whole;
  std::vector<Piece*> pieces;
  std::set<const SavedEntry*> taken = {};  // the entries that they are
};

class Reader {
 public:
  explicit Reader(const DamagedFile& file) : file_(file) {}

  Part Read(const SavedEntry& what, const Region& region, const std::string& place,
            Damages& damages);

 private:
  Node ReadText(const SavedEntry& what, const Region& region, const std::string& place,
                Damages& damages) const;
  Node ReadBag(const SavedEntry& what, const Region& region, const std::string& place,
               Damages& damages) const;
  Part ReadParts(const SavedEntry& what, const Region& region, const std::string& place,
                 Damages& damages);

  void Arrange(Pieces& pieces, const FoundEntries& found, const SavedEntry& what, uint32_t depth);
  bool ArrangeAsExpected(Pieces& pieces, const SavedEntry& what) const;
  bool ReadPieces(Pieces& pieces, const std::string& place);
  Part ReadPiece(Piece& piece, const std::string& place);
  bool TearApart(Pieces& pieces) const;
  bool IsSound(const Piece& piece) const;
  std::optional<Piece> TearApart(Piece& piece) const;

  Node ObjectOf(Group& group, uint32_t depth, const std::string& place, Damages& damages) const;
  Node CollectionOf(Group& group, const std::string& place, Damages& damages) const;
  std::optional<Field> UnknownField(const Piece& piece) const;
  void SetClosing(Node& node, const FoundEntry& found) const;

  std::string_view View(Span span) const { return file_.View(span); }
  std::string NameOf(const FoundEntry& found) const {
    const std::string name = PlainKey(View(found.key), found.inside.depth);
    return name.empty() ? "?" : name;
  }

  const DamagedFile& file_;
};

void Lose(Damages& damages, const std::string& place, Span span) {
  if (!damages.empty()) {
    Damage& last = damages.back();
    const bool goes_on = last.offset + last.size == span.begin && last.place == place;
    if (goes_on && last.kind == Damage::Kind::kLost) {
      last.size += span.size();
      return;
    }
  }
  damages.push_back({Damage::Kind::kLost, place, span.begin, span.size()});
}

void Append(Damages& damages, Damages more) {
  damages.insert(damages.end(), std::make_move_iterator(more.begin()),
                 std::make_move_iterator(more.end()));
}

Part Reader::Read(const SavedEntry& what, const Region& region, const std::string& place,
                  Damages& damages) {
  Part part;
  if (IsWhole(file_.Kept(region.bytes, region.depth), what)) {
    Node node;
    node.what = &what;
    node.is_whole = true;
    node.raw = View(region.bytes);
    part.nodes.push_back(std::move(node));
  } else if (what.kind == Kind::kText) {
    part.nodes.push_back(ReadText(what, region, place, damages));
  } else if (what.kind == Kind::kBag) {
    part.nodes.push_back(ReadBag(what, region, place, damages));
  } else {
    part = ReadParts(what, region, place, damages);
  }
  for (Node& node : part.nodes) node.offset = region.bytes.begin;
  return part;
}

// --- Texts and bags ---

// Nothing in it may end the texts around it.
Node Reader::ReadText(const SavedEntry& what, const Region& region, const std::string& place,
                      Damages& damages) const {
  const std::string_view raw = View(region.bytes);
  Node node;
  node.what = &what;
  size_t bad = static_cast<size_t>(std::count(raw.begin(), raw.end(), '\0'));
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
  if (bad != 0) damages.push_back({Damage::Kind::kLost, place, region.bytes.begin, bad});
  return node;
}

Node Reader::ReadBag(const SavedEntry& what, const Region& region, const std::string& place,
                     Damages& damages) const {
  static const SavedEntry kAnyText;
  const FoundEntries found = FindEntries(file_, region, what);
  for (const Span& rubbish : found.rubbish) Lose(damages, place, rubbish);
  Node node;
  node.what = &what;
  std::set<std::string_view> keys;
  for (const FoundEntry& entry : found.entries) {
    Field field;
    field.key = View(entry.key);
    const bool has_key = entry.opened && IsWholeText(field.key) &&
                         field.key.find('=') == std::string_view::npos;
    if (!has_key) {
      Lose(damages, place, entry.all);
      continue;
    }
    const std::string below = Below(place, NameOf(entry));
    if (!keys.insert(field.key).second) {
      damages.push_back({Damage::Kind::kTwice, below, entry.all.begin, entry.all.size()});
      continue;
    }
    if (entry.tag == '"') {
      field.content = ReadText(kAnyText, entry.inside, below, damages);
      SetClosing(field.content, entry);
    } else {
      field.plain = View({entry.key.end, entry.all.end});
    }
    node.fields.push_back(std::move(field));
  }
  return node;
}

// Adds a part that came up elsewhere to what it can be part of.
bool Adopt(Piece& stray, Group& group) {
  const SavedEntry& part = *stray.other->what;
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

// The objects and collections that a text turned out to hold, in order. Parts for which there was
// no place join the last one that they can be part of, or make it up.
std::vector<Group> GroupsOf(Pieces& pieces, const SavedEntry& what, uint32_t depth) {
  std::vector<Group> groups;
  std::vector<Piece*> strays;
  size_t number = 0;
  for (Piece& piece : pieces) {
    if (piece.other && piece.place.entry == nullptr) {
      strays.push_back(&piece);
      continue;
    }
    if (groups.empty() || piece.place.number != number) groups.push_back({piece.place.whole, {}});
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
      Group own = {whole, {}};
      if (adopted || !Adopt(*stray, own)) continue;
      adopted = true;
      last[whole] = groups.size();
      groups.push_back(std::move(own));
    }
    if (!adopted && !groups.empty()) groups.back().pieces.push_back(stray);  // is lost there
  }
  return groups;
}

// --- Objects and collections ---

Part Reader::ReadParts(const SavedEntry& what, const Region& region, const std::string& place,
                       Damages& damages) {
  // What comes up in the wrong part moves by one part each time: further than this it can't go.
  constexpr int kMostRounds = 4;
  FoundEntries found = FindEntries(file_, region, what);
  for (const Span& rubbish : found.rubbish) Lose(damages, place, rubbish);
  Pieces pieces(found.entries.size());
  for (size_t i = 0; i < pieces.size(); ++i) pieces[i].found = found.entries[i];
  found.entries = {};
  for (int round = 0; round < kMostRounds; ++round) {
    Arrange(pieces, found, what, region.depth);
    const bool torn = TearApart(pieces);
    if (torn) Arrange(pieces, found, what, region.depth);
    if (!ReadPieces(pieces, place) && !torn) break;
  }

  Part part;
  for (Group& group : GroupsOf(pieces, what, region.depth)) {
    const SavedEntry& whole = *group.whole;
    Node node = whole.kind == Kind::kCollection ? CollectionOf(group, place, damages)
                                                : ObjectOf(group, region.depth, place, damages);
    const bool is_expected = &whole == &what;
    if (is_expected && what.kind == Kind::kCollection && !part.nodes.empty()) {
      Join(part.nodes.front(), std::move(node));
    } else if (is_expected && (IsMember(what) || part.nodes.empty())) {
      part.nodes.push_back(std::move(node));
    } else {
      part.others.push_back(std::move(node));
    }
  }
  if (part.nodes.empty()) {
    part.nodes.emplace_back();
    part.nodes.back().what = &what;
  }
  return part;
}

// --- What the pieces of a text are ---

void Reader::Arrange(Pieces& pieces, const FoundEntries& found, const SavedEntry& what,
                     uint32_t depth) {
  if (found.rubbish.empty() && ArrangeAsExpected(pieces, what)) return;
  std::vector<Item> items;
  for (const Piece& piece : pieces) items.push_back(piece.AsItem());
  const std::vector<Place> places = salvage::Arrange(file_, items, what, depth);
  for (size_t i = 0; i < pieces.size(); ++i) pieces[i].place = places[i];
}

// False when something is not as it should be.
bool Reader::ArrangeAsExpected(Pieces& pieces, const SavedEntry& what) const {
  std::set<const SavedEntry*> seen;
  for (Piece& piece : pieces) {
    const FoundEntry& found = piece.found;
    if (piece.other || !found.opened || !found.closed || !found.spelled) return false;
    const std::string_view key = View(found.key);
    const SavedEntry* entry = &what;
    if (what.kind == Kind::kCollection) {
      const bool is_member = found.tag == '"' && key.starts_with(what.prefix);
      if (!is_member || !IsWhole(file_.Kept(found.inside.bytes, found.inside.depth),
                                 what.part->self)) {
        return false;
      }
    } else {
      entry = what.part->Find(key);
      if (entry == nullptr || (entry->tag == '"') != (found.tag == '"')) return false;
      if (!seen.insert(entry).second && entry->kind != Kind::kPoints) return false;
    }
    piece.place = {entry, &what, 1};
  }
  return true;
}

// The part that a text so deep is by its content; null when it is like none.
const SavedEntry* PartByContent(const DamagedFile& file, const Region& region, bool opened,
                                int least) {
  const Likeness likeness(file, region, opened);
  const SavedEntry* best = nullptr;
  for (const SavedEntry* part : PartsAtDepth(region.depth)) {
    if (best != nullptr && likeness.To(*part) <= likeness.To(*best)) continue;
    if (likeness.IsSurely(*part, least)) best = part;
  }
  return best;
}

// Whether nothing in a text had to be mended.
bool Reader::IsSound(const Piece& piece) const {
  const FoundEntry& found = piece.found;
  const auto& marks = file_.marks();
  for (size_t i = found.inside.first_mark; i < found.inside.end_mark; ++i) {
    if (!marks[i].is_there || !marks[i].spelled) return false;
  }
  return found.opened && found.closed && found.spelled && IsWholeText(View(found.inside.bytes));
}

// A text or a bag that has lost its end may hold what came behind it. Then the next entry of its
// object is missing, or something in it had to be mended.
bool Reader::TearApart(Pieces& pieces) const {
  bool torn = false;
  Pieces all;
  for (size_t begin = 0, end = 0; begin < pieces.size(); begin = end) {
    std::set<const SavedEntry*> seen;
    for (; end < pieces.size() && pieces[end].place.number == pieces[begin].place.number; ++end) {
      seen.insert(pieces[end].place.entry);
    }
    for (size_t i = begin; i < end; ++i) {
      std::optional<Piece> more;
      const Place& place = pieces[i].place;
      if (place.entry != nullptr && place.whole->kind == Kind::kObject) {
        const std::vector<SavedEntry>& entries = place.whole->part->entries;
        const auto next = std::find_if(entries.begin() + (place.entry - entries.data()) + 1,
                                       entries.end(),
                                       [](const SavedEntry& entry) { return entry.always; });
        const bool goes_on = next != entries.end() && seen.count(&*next) > 0;
        if (!goes_on || !IsSound(pieces[i])) more = TearApart(pieces[i]);
      }
      torn = torn || more;
      all.push_back(std::move(pieces[i]));
      if (more) all.push_back(*std::move(more));
    }
  }
  pieces = std::move(all);
  return torn;
}

std::optional<Piece> Reader::TearApart(Piece& piece) const {
  static const SavedEntry kAnyBag = {"", '"', Kind::kBag};
  Region& inside = piece.found.inside;
  const SavedEntry& entry = *piece.place.entry;
  if (!piece.IsText() || inside.first_mark == inside.end_mark) return std::nullopt;
  if (entry.kind != Kind::kText && entry.kind != Kind::kBag) return std::nullopt;
  Region tail = inside;
  for (const FoundEntry& found : FindEntries(file_, inside, kAnyBag).entries) {
    tail.bytes.begin = found.all.begin;
    if (PartByContent(file_, tail, false, Likeness::kMost / 2) == nullptr) {
      if (found.tag == '"') tail.first_mark = found.inside.end_mark + 1;
      continue;
    }
    Piece torn;
    torn.found = piece.found;
    torn.found.opened = false;
    torn.found.key = {tail.bytes.begin, tail.bytes.begin};
    torn.found.all.begin = tail.bytes.begin;
    torn.found.inside = tail;
    piece.found.closed = false;
    piece.found.all.end = inside.bytes.end = tail.bytes.begin;
    inside.end_mark = tail.first_mark;
    piece.read_as = nullptr;
    return torn;
  }
  return std::nullopt;
}

// Reads what is to be read as something else than before, and what has no place here as what it is
// by its content. True when other parts came up.
bool Reader::ReadPieces(Pieces& pieces, const std::string& place) {
  std::vector<std::pair<size_t, std::vector<Node>>> others;  // by the piece that they came up in
  std::set<size_t> strays;
  for (size_t i = 0; i < pieces.size(); ++i) {
    Piece& piece = pieces[i];
    if (!piece.IsText() || (piece.place.entry != nullptr && piece.place.entry == piece.read_as)) {
      continue;
    }
    Part part;
    if (piece.place.entry != nullptr) {
      part = ReadPiece(piece, place);
      piece.nodes = std::move(part.nodes);
    } else if (const SavedEntry* const what =
                   PartByContent(file_, piece.found.inside, piece.found.opened, 1)) {
      part = Read(*what, piece.found.inside, Below(place, NameOf(piece.found)), piece.damages);
      std::move(part.nodes.begin(), part.nodes.end(), std::back_inserter(part.others));
      strays.insert(i);
    }
    if (!part.others.empty()) others.emplace_back(i, std::move(part.others));
  }
  if (others.empty()) return false;
  Pieces all;
  auto next = others.begin();
  for (size_t i = 0; i < pieces.size(); ++i) {
    const bool is_stray = strays.count(i) > 0;
    Damages damages = is_stray ? std::move(pieces[i].damages) : Damages();
    if (!is_stray) all.push_back(std::move(pieces[i]));
    if (next == others.end() || next->first != i) continue;
    for (Node& other : next->second) {
      all.emplace_back();
      all.back().found.all = {other.offset, other.offset};
      all.back().other = std::make_unique<Node>(std::move(other));
      all.back().damages = std::exchange(damages, {});
    }
    ++next;
  }
  pieces = std::move(all);
  return true;
}

// Rubbish that is a damaged opening or closing is not lost: there is another one for it.
void MendEnds(const FoundEntry& found, uint32_t depth, Damages& damages) {
  for (Damage& damage : damages) {
    const bool at_begin = !found.opened && damage.offset == found.inside.bytes.begin &&
                          damage.size <= Opening(depth).size();
    const bool at_end = !found.closed &&
                        damage.offset + damage.size == found.inside.bytes.end &&
                        damage.size <= Closing(depth).size();
    if (damage.kind == Damage::Kind::kLost && damage.size != 0 && (at_begin || at_end)) {
      damage.kind = Damage::Kind::kMended;
    }
  }
}

Part Reader::ReadPiece(Piece& piece, const std::string& place) {
  const FoundEntry& found = piece.found;
  const SavedEntry& entry = *piece.place.entry;
  const bool is_member = piece.place.whole->kind == Kind::kCollection;
  const SavedEntry& what = is_member ? entry.part->self : entry;
  const uint32_t depth = found.inside.depth - 1;
  const std::string below = Below(place, is_member ? NameOf(found) : entry.key);
  Damages damages;
  Region inside = found.inside;
  if (what.kind == Kind::kText && !found.closed) {
    const std::string closing = Closing(depth);
    const std::string_view text = View(inside.bytes);
    const size_t size = std::min(closing.size(), text.size());
    const bool is_there = MayHaveBeen(text.substr(text.size() - size), closing);
    const bool is_cut = !is_there && text.ends_with(closing.substr(0, 1));
    inside.bytes.end -= is_there ? size : is_cut ? 1 : 0;
    damages.push_back({is_there ? Damage::Kind::kMended : Damage::Kind::kLost, below,
                       inside.bytes.end, found.inside.bytes.end - inside.bytes.end});
  }
  if (!is_member && !found.opened && View(inside.bytes).starts_with(entry.key)) {
    const std::string opening = Opening(depth);
    inside.bytes.begin += entry.key.size();
    const std::string_view text = View(inside.bytes);
    // Behind it, any byte may begin a text; entries are known.
    const bool is_there = what.kind == Kind::kText && MayHaveBeen(text.substr(0, opening.size()), opening);
    const size_t size = is_there ? opening.size() : SameBeginning(text, opening);
    damages.push_back({Damage::Kind::kMended, below, inside.bytes.begin, size});
    inside.bytes.begin += size;
  }
  piece.read_as = &entry;
  piece.damages.clear();
  Part part = Read(what, inside, below, piece.damages);
  MendEnds(found, depth, piece.damages);
  Append(piece.damages, std::move(damages));
  return part;
}

// --- Putting it together ---

Node Reader::ObjectOf(Group& group, uint32_t /*depth*/, const std::string& place,
                      Damages& damages) const {
  Node node;
  node.what = group.whole;
  node.offset = group.pieces.front()->found.all.begin;
  for (Piece* piece : group.pieces) {
    const FoundEntry& found = piece->found;
    const SavedEntry* const entry = piece->place.entry;
    Append(damages, std::move(piece->damages));
    if (entry == nullptr) {
      std::optional<Field> field;
      const bool is_known = group.whole->part->Find(View(found.key)) != nullptr;
      if (!is_known) field = UnknownField(*piece);
      const std::string name = field ? Below(place, NameOf(found)) : place;
      damages.push_back({field ? Damage::Kind::kUnknown : Damage::Kind::kLost, name,
                         found.all.begin, found.all.size()});
      if (field) node.fields.push_back(*std::move(field));
      continue;
    }
    Node part;
    part.what = node.what;
    Field field;
    field.entry = entry;
    field.key = piece->other ? std::string_view(entry->key) : View(found.key);
    if (piece->other) {
      field.content = *std::move(piece->other);
    } else if (found.tag == '"') {
      field.content = std::move(piece->nodes.front());
      SetClosing(field.content, found);
    } else {
      field.plain = View({found.key.end, found.all.end});
    }
    const bool is_damaged = !entry->Has(field.key) || !found.spelled;
    if (is_damaged && found.opened && !piece->other) {
      damages.push_back({Damage::Kind::kMended, Below(place, entry->key), found.all.begin,
                         found.key.size()});
    }
    part.fields.push_back(std::move(field));
    Join(node, std::move(part));
  }
  return node;
}

Node Reader::CollectionOf(Group& group, const std::string& place, Damages& damages) const {
  Node node;
  node.what = group.whole;
  node.offset = group.pieces.front()->found.all.begin;
  for (Piece* piece : group.pieces) {
    const FoundEntry& found = piece->found;
    Append(damages, std::move(piece->damages));
    if (piece->place.entry == nullptr) {
      Lose(damages, place, found.all);
      continue;
    }
    Node part;
    part.what = node.what;
    if (piece->other) {
      part.members.push_back(*std::move(piece->other));
    } else {
      part.members = std::move(piece->nodes);
      if (View(found.key).starts_with(node.what->prefix)) {
        part.members.front().key = View(found.key);
      }
      if (!(found.opened && found.closed && found.spelled)) {
        damages.push_back({Damage::Kind::kMended, Below(place, NameOf(found)), found.all.begin, 0});
      }
    }
    Join(node, std::move(part));
  }
  return node;
}

// An entry that may be another version's.
std::optional<Field> Reader::UnknownField(const Piece& piece) const {
  static const SavedEntry kAnyText;
  const FoundEntry& found = piece.found;
  if (piece.other || !found.opened || !found.closed || !found.spelled) return std::nullopt;
  Field field;
  field.key = View(found.key);
  if (field.key.find_first_of("=^") != field.key.npos || !IsWholeText(field.key)) {
    return std::nullopt;
  }
  if (field.key.empty()) return std::nullopt;
  if (found.tag != '"') {
    field.plain = View({found.key.end, found.all.end});
    return field;
  }
  Damages damages;
  field.content = ReadText(kAnyText, found.inside, {}, damages);
  SetClosing(field.content, found);
  return damages.empty() ? std::optional(std::move(field)) : std::nullopt;
}

// The closing of a text may hold the end of the text.
void Reader::SetClosing(Node& node, const FoundEntry& found) const {
  if (node.what->kind != Kind::kText || !found.closed || !found.spelled) return;
  node.closing = View({found.inside.bytes.end, found.all.end});
}

}  // namespace

Node ReadDocument(const DamagedFile& file, std::vector<Damage>& damages) {
  Part part = Reader(file).Read(DocumentForm().self, file.Whole(), {}, damages);
  for (const Node& other : part.others) Lose(damages, {}, {other.offset, other.offset});
  return std::move(part.nodes.front());
}

}  // namespace vndoc6::salvage
