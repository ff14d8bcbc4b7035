#include "platform/keys.h"

#include <array>
#include <iterator>
#include <span>

#include "platform/random.h"

namespace vndoc6::platform {
namespace {

constexpr size_t kKeyBytes = 16;
// Where the two digits of each byte stand.
constexpr std::array<uint8_t, kKeyBytes> kPlaces = {1,  3,  5,  7,  10, 12, 15, 17,
                                                    20, 22, 25, 27, 29, 31, 33, 35};

// A call of the system takes six times as long as a key's share of it.
struct Supply {
  RandomBytes bytes;
  size_t left;
  uint32_t forks;  // when it was drawn; a supply that a child finds is its parent's
};

// Each thread's own, so that none waits; all zero, so that none has to be made.
constinit thread_local Supply supply{};

std::span<uint8_t, kKeyBytes> DrawKeyBytes() {
  Supply& own = supply;
  const uint32_t forks = ForkCount();
  if (own.left == 0 || own.forks != forks) {
    own.left = 0;
    FillRandomly(own.bytes);
    own.forks = forks;
    own.left = own.bytes.size();
  }
  own.left -= kKeyBytes;
  return std::span<uint8_t, kKeyBytes>(own.bytes.data() + own.left, kKeyBytes);
}

constexpr char16_t Digit(int value) {
  return static_cast<char16_t>(value < 10 ? u'0' + value : u'A' + value - 10);
}

}  // namespace

Text NewKey() {
  char16_t key[] = u"{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
  const auto bytes = DrawKeyBytes();
  // The version, 4, and the variant.
  bytes[6] = static_cast<uint8_t>((bytes[6] & 0x0F) | 0x40);
  bytes[8] = static_cast<uint8_t>((bytes[8] & 0x3F) | 0x80);
  for (size_t i = 0; i < kKeyBytes; ++i) {
    key[kPlaces[i]] = Digit(bytes[i] >> 4);
    key[kPlaces[i] + 1u] = Digit(bytes[i] & 15);
  }
  return Text(key, std::size(key) - 1);
}

}  // namespace vndoc6::platform
