#include "vndoc6/automation/number_chars.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>

namespace vndoc6::automation::stand_in {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// digits * 10 ^ exponent
struct Decimal {
  std::string digits;
  int64_t exponent = 0;
};

// Without a decimal point, which the C library's functions take from the locale.
template <class Real>
Real Value(const Decimal& decimal) {
  const std::string text = decimal.digits + 'e' + std::to_string(decimal.exponent);
  if constexpr (sizeof(Real) == sizeof(float)) {
    return std::strtof(text.c_str(), nullptr);
  } else {
    return std::strtod(text.c_str(), nullptr);
  }
}

// Takes `word`, in small letters, off the front of `text`, which may have capitals.
bool Take(std::string_view& text, std::string_view word) {
  const bool found = text.size() >= word.size() &&
                     std::equal(word.begin(), word.end(), text.begin(),
                                [](char small, char any) { return small == (any | 0x20); });
  if (found) text.remove_prefix(word.size());
  return found;
}

bool TakeInfinity(std::string_view& text) {
  if (!Take(text, "inf")) return false;
  Take(text, "inity");
  return true;
}

bool TakeNan(std::string_view& text) {
  if (!Take(text, "nan")) return false;
  if (!text.starts_with('(')) return true;
  const auto is_payload = [](char c) {
    return IsDigit(c) || c == '_' || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z');
  };
  const auto end = std::find_if_not(text.begin() + 1, text.end(), is_payload);
  if (end != text.end() && *end == ')') text.remove_prefix(end - text.begin() + 1);
  return true;
}

// Takes digits; those behind the point count for the exponent.
size_t TakeDigits(std::string_view& text, Decimal& decimal, bool behind_point) {
  size_t count = 0;
  for (; count < text.size() && IsDigit(text[count]); ++count) {
    if (text[count] != '0' || !decimal.digits.empty()) decimal.digits += text[count];
  }
  if (behind_point) decimal.exponent -= static_cast<int64_t>(count);
  text.remove_prefix(count);
  return count;
}

void TakeExponent(std::string_view& text, Decimal& decimal) {
  constexpr int64_t kPlenty = 1'000'000'000'000;  // more than a text can have digits
  std::string_view rest = text;
  if (!Take(rest, "e")) return;
  const bool negative = rest.starts_with('-');
  if (negative || rest.starts_with('+')) rest.remove_prefix(1);
  if (rest.empty() || !IsDigit(rest[0])) return;
  int64_t exponent = 0;
  for (; !rest.empty() && IsDigit(rest[0]); rest.remove_prefix(1)) {
    exponent = std::min(exponent * 10 + (rest[0] - '0'), kPlenty);
  }
  decimal.exponent += negative ? -exponent : exponent;
  text = rest;
}

bool TakeDecimal(std::string_view& text, Decimal& decimal) {
  size_t count = TakeDigits(text, decimal, false);
  if (text.starts_with('.')) {
    std::string_view rest = text.substr(1);
    const size_t places = TakeDigits(rest, decimal, true);
    if (count + places > 0) text = rest;
    count += places;
  }
  if (count == 0) return false;
  TakeExponent(text, decimal);
  return true;
}

template <class Real>
std::from_chars_result Read(const char* first, const char* last, Real& value) {
  std::string_view text(first, static_cast<size_t>(last - first));
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  Real read = 0;
  bool in_range = true;
  Decimal decimal;
  if (TakeInfinity(text)) {
    read = std::numeric_limits<Real>::infinity();
  } else if (TakeNan(text)) {
    read = std::numeric_limits<Real>::quiet_NaN();
  } else if (!TakeDecimal(text, decimal)) {
    return {first, std::errc::invalid_argument};
  } else if (!decimal.digits.empty()) {
    read = Value<Real>(decimal);
    in_range = read != 0 && std::isfinite(read);
  }
  const char* const end = last - text.size();
  if (!in_range) return {end, std::errc::result_out_of_range};
  value = negative ? -read : read;
  return {end, std::errc()};
}

// `value`, which is positive, rounded to so many digits.
Decimal Rounded(double value, int count) {
  std::array<char, 40> text;
  std::snprintf(text.data(), text.size(), "%.*e", count - 1, value);
  const std::string_view all(text.data());
  const size_t mark = all.find('e');
  Decimal decimal;
  std::copy_if(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(mark),
               std::back_inserter(decimal.digits), IsDigit);
  decimal.exponent = std::atoi(text.data() + mark + 1) - (count - 1);
  return decimal;
}

// The next decimal up of as many digits; one more after nines.
Decimal Next(Decimal decimal) {
  size_t last = decimal.digits.size();
  while (last > 0 && decimal.digits[last - 1] == '9') decimal.digits[--last] = '0';
  if (last > 0) {
    ++decimal.digits[last - 1];
  } else {
    decimal.digits.insert(0, 1, '1');
  }
  return decimal;
}

// The fewest digits that give a positive number back, and of those the nearest.
template <class Real>
Decimal Shortest(Real value) {
  // So many digits survive in each number that has all its bits; a smaller one may have just one.
  int count = std::isnormal(value) ? std::numeric_limits<Real>::digits10 : 1;
  Decimal decimal = Rounded(value, count);
  while (Value<Real>(decimal) != value) {
    // Numbers below a power of two are nearer than those above: where the nearest decimal, being
    // below, is another number already, the next one up may still be this one.
    const Decimal up = Next(decimal);
    if (Value<Real>(up) == value) {
      decimal = up;
      break;
    }
    decimal = Rounded(value, ++count);
  }
  const size_t kept = decimal.digits.find_last_not_of('0') + 1;
  decimal.exponent += static_cast<int64_t>(decimal.digits.size() - kept);
  decimal.digits.resize(kept);
  return decimal;
}

std::string Scientific(const Decimal& decimal) {
  const int64_t exponent = decimal.exponent + static_cast<int64_t>(decimal.digits.size()) - 1;
  std::string text = decimal.digits.substr(0, 1);
  if (decimal.digits.size() > 1) text += '.' + decimal.digits.substr(1);
  text += exponent < 0 ? "e-" : "e+";
  const std::string power = std::to_string(std::abs(exponent));
  return text + (power.size() < 2 ? "0" : "") + power;
}

// A whole number has all its digits in this form, not zeros behind the shortest.
std::string Fixed(double value, const Decimal& decimal) {
  const std::string& digits = decimal.digits;
  if (decimal.exponent >= 0) {
    std::array<char, 400> whole;
    std::snprintf(whole.data(), whole.size(), "%.0f", value);
    return whole.data();
  }
  const auto places = static_cast<size_t>(-decimal.exponent);
  if (places >= digits.size()) return "0." + std::string(places - digits.size(), '0') + digits;
  return digits.substr(0, digits.size() - places) + '.' + digits.substr(digits.size() - places);
}

// The shorter of both forms; the fixed one of two that are as long.
template <class Real>
std::string ShortestText(Real value) {
  const std::string sign = std::signbit(value) ? "-" : "";
  value = std::abs(value);
  if (std::isnan(value)) return sign + "nan";
  if (std::isinf(value)) return sign + "inf";
  if (value == 0) return sign + "0";
  const Decimal decimal = Shortest(value);
  const std::string fixed = Fixed(value, decimal);
  const std::string scientific = Scientific(decimal);
  return sign + (fixed.size() <= scientific.size() ? fixed : scientific);
}

std::to_chars_result Give(std::string_view text, char* first, char* last) {
  if (text.size() > static_cast<size_t>(last - first)) {
    return {last, std::errc::value_too_large};
  }
  return {std::copy(text.begin(), text.end(), first), std::errc()};
}

}  // namespace

std::from_chars_result FromChars(const char* first, const char* last, float& value) {
  return Read(first, last, value);
}

std::from_chars_result FromChars(const char* first, const char* last, double& value) {
  return Read(first, last, value);
}

std::to_chars_result ToChars(char* first, char* last, float value) {
  return Give(ShortestText(value), first, last);
}

std::to_chars_result ToChars(char* first, char* last, double value) {
  return Give(ShortestText(value), first, last);
}

std::to_chars_result ToFixedChars(char* first, char* last, double value, int places) {
  std::string text(static_cast<size_t>(std::numeric_limits<double>::max_exponent10 + places + 8),
                   '\0');
  const int size = std::snprintf(text.data(), text.size(), "%.*f", places, value);
  text.resize(static_cast<size_t>(size));
  // The digits' end, before which the locale's point stands.
  if (places > 0) {
    const size_t whole = text.find_first_not_of("-0123456789");
    text.replace(whole, text.size() - static_cast<size_t>(places) - whole, ".");
  }
  return Give(text, first, last);
}

}  // namespace vndoc6::automation::stand_in
