#include "bag/escape.h"

#include <charconv>

namespace vndoc6::bag {
namespace {

constexpr std::string_view kLongClasses = "ocqi";
// "^z" and the class.
constexpr size_t kLongPrefix = 3;
// All levels of so many digits fit the level's type, with any number of levels added.
constexpr size_t kCountableDigits = 18;

}  // namespace

// Only the one spelling that AppendEscape uses is an escape, so that none is lost by respelling it.
Escape ReadLongEscape(std::string_view text) {
  if (text.size() <= kLongPrefix) return {};
  const size_t what = kLongClasses.find(text[2]);
  if (what == kLongClasses.npos) return {};
  size_t end = kLongPrefix;
  while (end < text.size() && text[end] >= '0' && text[end] <= '9') ++end;
  const std::string_view digits = text.substr(kLongPrefix, end - kLongPrefix);
  if (end == text.size() || text[end] != ';' || digits.size() < 2 || digits[0] == '0') return {};
  uint64_t level = kEndlessLevel;
  if (digits.size() <= kCountableDigits) {
    std::from_chars(digits.data(), digits.data() + digits.size(), level);
  }
  return {end + 1, static_cast<EscapeClass>(what), level};
}

void AppendEscape(EscapeClass what, uint64_t level, std::string& out) {
  const auto index = static_cast<size_t>(what);
  if (level <= kShortLevels) {
    out += {'^', static_cast<char>(kFirstLevels[index] + static_cast<int>(level) - 1)};
    return;
  }
  char digits[20];
  const auto [end, error] = std::to_chars(digits, digits + sizeof digits, level);
  out += {'^', kLongEscape, kLongClasses[index]};
  out.append(digits, end);
  out += ';';
}

}  // namespace vndoc6::bag
