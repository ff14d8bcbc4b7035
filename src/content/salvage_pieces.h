// The pieces of an object's or a collection's damaged text.
#pragma once

#include <memory>
#include <set>
#include <vector>

#include "content/salvage_order.h"
#include "content/salvage_tree.h"

namespace vndoc6::salvage {

// An entry; or a part that was read, of such an entry or of what came up elsewhere.
struct Piece {
  FoundEntry found;
  std::unique_ptr<Node> part;
  Place place;
  std::vector<Damage> damages = {};

  bool IsUnreadText() const { return part == nullptr && found.tag == '"'; }
};
using Pieces = std::vector<Piece>;

// An object or a collection, and the pieces that belong to it.
struct Group {
  const SavedEntry* whole;
  std::vector<Piece*> pieces = {};
  std::set<const SavedEntry*> taken = {};  // the entries that they are
};

// Gives the pieces their places, see salvage_order.h.
void ArrangePieces(const DamagedFile& file, Pieces& pieces, const SavedEntry& what, uint32_t depth);
// The same for a text without rubbish. False when something is not as it should be.
bool ArrangeAsExpected(const DamagedFile& file, Pieces& pieces, const SavedEntry& what);

// Takes out of texts and bags what came behind them when they lost their end. False when there was
// nothing; else the pieces lack some of their places.
bool TearApart(const DamagedFile& file, Pieces& pieces);

// The objects and collections that a text turned out to hold, in order. Parts for which there was
// no place join the last one that they can be part of, or make it up.
std::vector<Group> GroupsOf(Pieces& pieces, const SavedEntry& what, uint32_t depth);

// What a text is most like; null when nothing in it is known anywhere.
const SavedEntry* MostLike(const DamagedFile& file, const FoundEntry& text);

}  // namespace vndoc6::salvage
