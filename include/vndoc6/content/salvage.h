// Salvage: the document that a damaged document file still holds, and what is missing of it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace vndoc6 {

struct Damage {
  enum class Kind {
    kLost,     // bytes of which nothing could be made, or that were guessed
    kMissing,  // entries that every save writes, `keys`, are not there
    kUnknown,  // an entry whose key this version does not know; kept
    kTwice,    // a second entry with one key; left out
    kMended,   // a key, an opening or a closing was damaged; what it belongs to is there
  };

  Kind kind = Kind::kLost;
  // The keys that lead there from the document, with slashes: "S/T{key}/Fig". Empty for the
  // document itself.
  std::string place;
  // In the file, in bytes.
  size_t offset = 0;
  size_t size = 0;
  std::string keys = {};
};

struct Salvaged {
  // The text of a document that loads without a fault; the file's own when nothing is wrong with
  // it. Empty when there was nothing of a document in it.
  std::string text;
  // In the file's order; at most kMostDamages. Empty when nothing is wrong with it.
  std::vector<Damage> damages;
  size_t damages_not_listed = 0;

  static constexpr size_t kMostDamages = 10000;
};

// Every object comes back whose own bytes were not touched, in its place as far as that is known:
// what is around it may be damaged in any way. Goes by what objects write, by the levels of the
// escapes and by the order of the entries. Looks for passwords nowhere. Takes time and memory in
// proportion to the file's size.
Salvaged Salvage(std::string file);

}  // namespace vndoc6
