// The standard's conversions between numbers and digits, also where the standard library lacks
// those of floating-point numbers, as libc++ does. No locale matters.
#pragma once

#include <charconv>
#include <cmath>
#include <type_traits>

namespace vndoc6::automation {

// What stands in for the standard's: the same bytes and results, only slower.
namespace stand_in {

std::from_chars_result FromChars(const char* first, const char* last, float& value);
std::from_chars_result FromChars(const char* first, const char* last, double& value);
std::to_chars_result ToChars(char* first, char* last, float value);
std::to_chars_result ToChars(char* first, char* last, double value);
std::to_chars_result ToFixedChars(char* first, char* last, double value, int places);

}  // namespace stand_in

template <class Number>
constexpr bool kStandardReads = requires(const char* at, Number& value) {
  std::from_chars(at, at, value);
};
template <class Number>
constexpr bool kStandardWrites = requires(char* at, Number value) {
  std::to_chars(at, at, value);
};
template <class Number>
constexpr bool kStandardWritesFixed = requires(char* at, Number value) {
  std::to_chars(at, at, value, std::chars_format::fixed, 1);
};

// As std::from_chars.
template <class Number>
std::from_chars_result FromChars(const char* first, const char* last, Number& value) {
  if constexpr (kStandardReads<Number>) {
    return std::from_chars(first, last, value);
  } else {
    return stand_in::FromChars(first, last, value);
  }
}

// As std::to_chars: as few characters as give the number back. What is no number is "nan" or
// "-nan", where standard libraries differ.
template <class Number>
std::to_chars_result ToChars(char* first, char* last, Number value) {
  if constexpr (std::is_integral_v<Number>) {
    return std::to_chars(first, last, value);
  } else {
    if constexpr (kStandardWrites<Number>) {
      if (!std::isnan(value)) return std::to_chars(first, last, value);
    }
    return stand_in::ToChars(first, last, value);
  }
}

// As std::to_chars of a finite number with std::chars_format::fixed.
template <class Number>
std::to_chars_result ToFixedChars(char* first, char* last, Number value, int places) {
  if constexpr (kStandardWritesFixed<Number>) {
    return std::to_chars(first, last, value, std::chars_format::fixed, places);
  } else {
    return stand_in::ToFixedChars(first, last, value, places);
  }
}

}  // namespace vndoc6::automation
