#include "platform/keys.h"

#include <array>
#include <random>

namespace vndoc6::platform {
namespace {

// Seeded once from the system; keys must be unique, not secret.
std::mt19937_64& Generator() {
  static std::mt19937_64 generator = [] {
    std::random_device device;
    std::seed_seq seed{device(), device(), device(), device(),
                       device(), device(), device(), device()};
    return std::mt19937_64(seed);
  }();
  return generator;
}

}  // namespace

Text NewKey() {
  static constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  static constexpr TextView kShape = u"{xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx}";
  std::array<uint64_t, 2> bits{Generator()(), Generator()()};
  Text key(kShape);
  size_t used = 0;
  for (char16_t& unit : key) {
    if (unit != u'x' && unit != u'y') continue;
    const uint64_t digit = bits[used / 16] >> (used % 16 * 4) & 15;
    // 'y' carries the variant: 8, 9, A or B.
    unit = kDigits[unit == u'y' ? (digit & 3) | 8 : digit];
    ++used;
  }
  return key;
}

}  // namespace vndoc6::platform
