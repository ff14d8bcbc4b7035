#include "content/salvage_reader.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "content/salvage_pieces.h"
#include "content/salvage_texts.h"
#include "content/salvage_whole.h"

namespace vndoc6::salvage {
namespace {

using Kind = SavedEntry::Kind;
using Damages = std::vector<Damage>;

// Whether damage to one byte may have made one of the other.
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

bool IsMember(const SavedEntry& what) {
  return what.kind == Kind::kObject && &what.part->self == &what;
}

void Append(Damages& damages, Damages more) {
  damages.insert(damages.end(), std::make_move_iterator(more.begin()),
                 std::make_move_iterator(more.end()));
}

// What was read of a text.
struct Part {
  // What it should have been. Of a member more than one where several have run into one.
  std::vector<Node> nodes = {};
  // What else came up in it.
  std::vector<Node> others = {};
};

class Reader {
 public:
  explicit Reader(const DamagedFile& file) : file_(file) {}

  Part Read(const SavedEntry& what, const Region& region, const std::string& place,
            Damages& damages);

 private:
  Part ReadParts(const SavedEntry& what, const Region& region, const Reading& reading);
  bool ReadPieces(Pieces& pieces, const std::string& place);
  Part ReadPiece(Piece& piece, const std::string& place);
  Node NodeOf(Group& group, const Reading& reading);
  void AddToObject(Piece& piece, Node& object, const Reading& reading);
  void AddToCollection(Piece& piece, Node& collection, const Reading& reading) const;
  std::optional<Field> UnknownField(const FoundEntry& found) const;

  const DamagedFile& file_;
};

Part Reader::Read(const SavedEntry& what, const Region& region, const std::string& place,
                  Damages& damages) {
  const Reading reading = {file_, place, damages};
  Part part;
  if (IsWhole(file_.Kept(region.bytes, region.depth), what)) {
    Node node;
    node.what = &what;
    node.is_whole = true;
    node.raw = file_.View(region.bytes);
    node.depth = region.depth;
    part.nodes.push_back(std::move(node));
  } else if (what.kind == Kind::kText) {
    part.nodes.push_back(ReadText(reading, what, region));
  } else if (what.kind == Kind::kBag) {
    part.nodes.push_back(ReadBag(reading, what, region));
  } else {
    part = ReadParts(what, region, reading);
  }
  for (Node& node : part.nodes) node.offset = region.bytes.begin;
  return part;
}

Part Reader::ReadParts(const SavedEntry& what, const Region& region, const Reading& reading) {
  // What comes up in the wrong part moves by one part each time: further than this it can't go.
  constexpr int kMostRounds = 4;
  Pieces pieces;
  bool arranged = false;
  {
    FoundEntries found = FindEntries(file_, region, what);
    for (const Span& rubbish : found.rubbish) reading.Lose(rubbish);
    pieces.resize(found.entries.size());
    for (size_t i = 0; i < pieces.size(); ++i) pieces[i].found = found.entries[i];
    arranged = found.rubbish.empty() && ArrangeAsExpected(file_, pieces, what);
  }
  for (int round = 0; round < kMostRounds; ++round) {
    if (!arranged) ArrangePieces(file_, pieces, what, region.depth);
    if (TearApart(file_, pieces)) ArrangePieces(file_, pieces, what, region.depth);
    arranged = false;
    if (!ReadPieces(pieces, reading.place)) break;
  }

  Part part;
  for (Group& group : GroupsOf(pieces, what, region.depth)) {
    Node node = NodeOf(group, reading);
    const bool is_expected = group.whole == &what;
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

// Reads the texts, those without a place as what they are most like. A part that was read stays
// what it was read as. True when there are more parts now than before.
bool Reader::ReadPieces(Pieces& pieces, const std::string& place) {
  bool more = false;
  Pieces all;
  all.reserve(pieces.size());
  for (Piece& piece : pieces) {
    const SavedEntry* const entry = piece.place.entry;
    const bool has_parts = entry != nullptr && entry->part != nullptr;
    const SavedEntry* const stray =
        piece.IsUnreadText() && entry == nullptr ? MostLike(file_, piece.found) : nullptr;
    if (!piece.IsUnreadText() || !(has_parts || stray != nullptr)) {
      all.push_back(std::move(piece));
      continue;
    }
    Part part = has_parts ? ReadPiece(piece, place)
                          : Read(*stray, piece.found.inside,
                                 Below(place, NameOf(file_, piece.found)), piece.damages);
    more = more || !part.others.empty() || stray != nullptr;
    std::move(part.others.begin(), part.others.end(), std::back_inserter(part.nodes));
    for (Node& node : part.nodes) {
      all.push_back({piece.found, std::make_unique<Node>(std::move(node)), piece.place,
                     std::exchange(piece.damages, {})});
      // The first is the entry's own.
      piece.found = FoundEntry();
      piece.found.all = {all.back().part->offset, all.back().part->offset};
    }
  }
  pieces = std::move(all);
  return more;
}

// Rubbish that is a damaged opening or closing is not lost: there is another one for it.
void MendEnds(const FoundEntry& found, const Region& inside, Damages& damages) {
  const uint32_t depth = inside.depth - 1;
  for (Damage& damage : damages) {
    const bool at_begin = !found.opened && damage.offset == inside.bytes.begin &&
                          damage.size <= Opening(depth).size();
    const bool at_end = !found.closed && damage.offset + damage.size == inside.bytes.end &&
                        damage.size <= Closing(depth).size();
    if (damage.kind == Damage::Kind::kLost && damage.size != 0 && (at_begin || at_end)) {
      damage.kind = Damage::Kind::kMended;
    }
  }
}

// Takes the remains of a text's own marks out of it.
Region WithoutMarks(const Reading& reading, const FoundEntry& found, const SavedEntry& what,
                    std::string_view key) {
  const uint32_t depth = found.inside.depth - 1;
  Region inside = found.inside;
  const auto view = [&] { return reading.file.View(inside.bytes); };
  if (what.kind == Kind::kText && !found.closed) {
    const std::string closing = Closing(depth);
    const size_t size = std::min(closing.size(), view().size());
    const bool is_there = MayHaveBeen(view().substr(view().size() - size), closing);
    const bool is_cut = !is_there && view().ends_with(closing.substr(0, 1));
    inside.bytes.end -= is_there ? size : is_cut ? 1 : 0;
    reading.Tell(is_there ? Damage::Kind::kMended : Damage::Kind::kLost,
                 {inside.bytes.end, found.inside.bytes.end});
  }
  if (!found.opened && !key.empty() && view().starts_with(key)) {
    const std::string opening = Opening(depth);
    inside.bytes.begin += key.size();
    // Any byte may begin a text, but entries are known.
    const bool is_there =
        what.kind == Kind::kText && MayHaveBeen(view().substr(0, opening.size()), opening);
    const size_t size = is_there ? opening.size() : SameBeginning(view(), opening);
    reading.Tell(Damage::Kind::kMended, {inside.bytes.begin, inside.bytes.begin + size});
    inside.bytes.begin += size;
  }
  return inside;
}

// A text that has its place.
Part Reader::ReadPiece(Piece& piece, const std::string& place) {
  const FoundEntry& found = piece.found;
  const SavedEntry& entry = *piece.place.entry;
  const bool is_member = piece.place.whole->kind == Kind::kCollection;
  const SavedEntry& what = is_member ? entry.part->self : entry;
  const std::string below = Below(place, is_member ? NameOf(file_, found) : entry.key);
  Damages damages;
  const Region inside =
      WithoutMarks({file_, below, damages}, found, what, is_member ? "" : entry.key);
  Part part = Read(what, inside, below, piece.damages);
  MendEnds(found, inside, piece.damages);
  Append(piece.damages, std::move(damages));
  return part;
}

Node Reader::NodeOf(Group& group, const Reading& reading) {
  Node node;
  node.what = group.whole;
  node.offset = group.pieces.front()->found.all.begin;
  for (Piece* piece : group.pieces) {
    if (group.whole->kind == Kind::kCollection) {
      AddToCollection(*piece, node, reading);
    } else {
      AddToObject(*piece, node, reading);
    }
    Append(reading.damages, std::move(piece->damages));
  }
  return node;
}

void Reader::AddToObject(Piece& piece, Node& object, const Reading& reading) {
  const FoundEntry& found = piece.found;
  const SavedEntry* const entry = piece.place.entry;
  const std::string_view key = file_.View(found.key);
  if (entry == nullptr) {
    // What is known but has no place is there already.
    const bool is_known = object.what->part->Find(key) != nullptr;
    std::optional<Field> field = piece.part || is_known ? std::nullopt : UnknownField(found);
    if (!field) return reading.Lose(found.all);
    const std::string place = Below(reading.place, NameOf(file_, found));
    Reading{file_, place, reading.damages}.Tell(Damage::Kind::kUnknown, found.all);
    object.fields.push_back(*std::move(field));
    return;
  }
  Field field;
  field.entry = entry;
  field.key = key;
  if (piece.part) {
    field.content = *std::move(piece.part);
  } else if (found.tag == '"') {
    // Neither an object nor a collection: nothing else can come up in it.
    field.content = std::move(ReadPiece(piece, reading.place).nodes.front());
    if (entry->kind == Kind::kText) field.content.closing = ClosingOf(file_, found);
  } else {
    field.plain = file_.View({found.key.end, found.all.end});
  }
  if (found.opened && !key.empty() && (!entry->Has(key) || !found.spelled)) {
    const std::string place = Below(reading.place, entry->key);
    Reading{file_, place, reading.damages}.Tell(Damage::Kind::kMended, found.key);
  }
  Node one;
  one.what = object.what;
  one.fields.push_back(std::move(field));
  Join(object, std::move(one));
}

void Reader::AddToCollection(Piece& piece, Node& collection, const Reading& reading) const {
  const FoundEntry& found = piece.found;
  if (piece.place.entry == nullptr || !piece.part) return reading.Lose(found.all);
  const std::string_view key = file_.View(found.key);
  if (key.starts_with(collection.what->prefix)) piece.part->key = key;
  if (!found.opened || !found.closed || !found.spelled) {
    const std::string place = Below(reading.place, NameOf(file_, found));
    Reading{file_, place, reading.damages}.Tell(Damage::Kind::kMended, found.key);
  }
  Node one;
  one.what = collection.what;
  one.members.push_back(*std::move(piece.part));
  Join(collection, std::move(one));
}

// An entry that may be another version's.
std::optional<Field> Reader::UnknownField(const FoundEntry& found) const {
  static const SavedEntry kAnyText;
  Field field;
  field.key = file_.View(found.key);
  const bool has_key = !field.key.empty() && IsWholeText(field.key) &&
                       field.key.find_first_of("=^") == field.key.npos;
  if (!has_key || !found.opened || !found.closed || !found.spelled) return std::nullopt;
  if (found.tag != '"') {
    field.plain = file_.View({found.key.end, found.all.end});
    return field;
  }
  Damages damages;
  field.content = ReadText({file_, {}, damages}, kAnyText, found.inside);
  field.content.closing = ClosingOf(file_, found);
  return damages.empty() ? std::optional(std::move(field)) : std::nullopt;
}

}  // namespace

Node ReadDocument(const DamagedFile& file, std::vector<Damage>& damages) {
  Part part = Reader(file).Read(DocumentForm().self, file.Whole(), {}, damages);
  const std::string place;
  for (const Node& other : part.others) {
    Reading{file, place, damages}.Lose({other.offset, other.offset});
  }
  return std::move(part.nodes.front());
}

}  // namespace vndoc6::salvage
