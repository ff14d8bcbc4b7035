#include "platform/checksum.h"

#include <array>
#include <bit>
#include <cstring>

namespace vndoc6::platform {
namespace {

// Odd, with bits spread evenly: multiplying by it loses nothing and mixes upwards.
constexpr uint64_t kFactor = 0x9E3779B97F4A7C15;

uint64_t Mixed(uint64_t sum, uint64_t word) { return std::rotl((sum ^ word) * kFactor, 29); }

}  // namespace

// Four sums side by side, for a multiplication takes as long as four of them started in a row.
uint64_t Checksum(std::string_view bytes) {
  std::array<uint64_t, 4> sums = {1, 2, 3, 4};
  std::array<uint64_t, 4> words;
  uint64_t result = bytes.size();
  while (bytes.size() >= sizeof words) {
    std::memcpy(words.data(), bytes.data(), sizeof words);
    for (size_t i = 0; i < sums.size(); ++i) sums[i] = Mixed(sums[i], words[i]);
    bytes.remove_prefix(sizeof words);
  }
  words = {};
  if (!bytes.empty()) std::memcpy(words.data(), bytes.data(), bytes.size());
  for (size_t i = 0; i < sums.size(); ++i) result = Mixed(result, Mixed(sums[i], words[i]));
  return result ^ result >> 32;
}

}  // namespace vndoc6::platform
