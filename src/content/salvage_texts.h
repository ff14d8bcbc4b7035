// Reads texts and bags of a damaged file: what has no parts.
#pragma once

#include <string>
#include <vector>

#include "content/salvage_entries.h"
#include "content/salvage_tree.h"

namespace vndoc6::salvage {

// What is read tells of what could not be: `place` is where it lies.
struct Reading {
  const DamagedFile& file;
  const std::string& place;
  std::vector<Damage>& damages;

  void Lose(Span span) const;
  void Tell(Damage::Kind kind, Span span) const;
};

// Nothing in it may end the texts around it: what would is replaced.
Node ReadText(const Reading& reading, const SavedEntry& what, const Region& region);
// The entries of a bag that have their keys, each key once.
Node ReadBag(const Reading& reading, const SavedEntry& what, const Region& region);

// A text's own closing, which may hold the end of the text; empty where it is lost.
std::string_view ClosingOf(const DamagedFile& file, const FoundEntry& found);
// An entry's key as it is meant; "?" where it is lost.
std::string NameOf(const DamagedFile& file, const FoundEntry& found);

}  // namespace vndoc6::salvage
