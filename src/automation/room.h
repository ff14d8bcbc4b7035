// Room for what is about to be appended.
#pragma once

#include <algorithm>
#include <cstddef>

namespace vndoc6::automation {

// Reserves so that `more` fits behind what `out`, a string or vector, holds. `reserve` alone gives
// room that was there back in some standard libraries, and in others makes just what is asked for:
// a text that is appended to piece by piece would be copied at each piece.
template <class Sequence>
void MakeRoom(Sequence& out, size_t more) {
  if (out.capacity() - out.size() >= more) return;
  out.reserve(std::max(out.size() + more, 2 * out.capacity()));
}

}  // namespace vndoc6::automation
