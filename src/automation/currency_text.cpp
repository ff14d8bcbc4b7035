#include "automation/currency_text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <system_error>

namespace vndoc6::automation {
namespace {

constexpr size_t kPlaces = 4;
constexpr uint64_t kUnits = 10000;

}  // namespace

void AppendDecimal(Currency value, std::string& out) {
  // Unsigned, for the lowest amount has no positive counterpart.
  auto amount = static_cast<uint64_t>(value.scaled);
  if (value.scaled < 0) {
    out += '-';
    amount = 0 - amount;
  }
  out += std::to_string(amount / kUnits);
  uint64_t fraction = amount % kUnits;
  if (fraction != 0) out += '.';
  for (uint64_t unit = kUnits / 10; fraction != 0; fraction %= unit, unit /= 10) {
    out += static_cast<char>('0' + fraction / unit);
  }
}

bool ReadDecimal(std::string_view decimal, Currency& value) {
  constexpr size_t kLongest = 26;
  const size_t point = std::min(decimal.find('.'), decimal.size());
  const std::string_view whole = decimal.substr(0, point);
  const std::string_view places = decimal.substr(std::min(point + 1, decimal.size()));
  const bool has_point = point < decimal.size();
  if (decimal.size() > kLongest || whole.empty() || whole == "-") return false;
  if (places.size() > kPlaces || places.empty() == has_point) return false;
  std::string all(whole);
  all += places;
  all.append(kPlaces - places.size(), '0');
  const char* const end = all.data() + all.size();
  const auto [stop, error] = std::from_chars(all.data(), end, value.scaled);
  return error == std::errc() && stop == end;
}

}  // namespace vndoc6::automation
