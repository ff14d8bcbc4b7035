// Reading a whole file, the same on every platform.
#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>

namespace vndoc6::platform {

// All that `file.Read(bytes, size)` gives until it gives nothing more; nothing when it fails.
// `expected` is what the file says it holds, which may be untrue.
//
// Goes through a piece: what a file untruly says it holds takes no memory.
template <class File>
std::optional<std::string> ReadToEnd(const File& file, size_t expected) {
  constexpr size_t kPiece = size_t{1} << 18;
  constexpr size_t kMostReserved = size_t{1} << 30;
  const auto piece = std::unique_ptr<char[]>(new char[kPiece]);
  std::string bytes;
  bytes.reserve(std::min(expected, kMostReserved));
  while (const auto count = file.Read(piece.get(), kPiece)) {
    if (*count == 0) return bytes;
    bytes.append(piece.get(), *count);
  }
  return std::nullopt;
}

}  // namespace vndoc6::platform
