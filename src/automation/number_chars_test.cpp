#include "vndoc6/automation/number_chars.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

namespace vndoc6::automation {
namespace {

// VNDOC6_NUMBERS asks for more of them.
int NumberCount() {
  const char* const wanted = std::getenv("VNDOC6_NUMBERS");
  return wanted != nullptr ? std::atoi(wanted) : 3'000;
}

template <class Write>
std::string Written(Write write) {
  char buffer[500];
  return {buffer, write(buffer, buffer + sizeof buffer).ptr};
}

// What was read, to its bits, where reading ended and how.
template <class Real, class Read>
std::string WasRead(std::string_view text, Read read) {
  Real value = 42;
  const auto result = read(text.data(), text.data() + text.size(), value);
  using Bits = std::conditional_t<sizeof value == 4, uint32_t, uint64_t>;
  return std::to_string(std::bit_cast<Bits>(value)) + " at " +
         std::to_string(result.ptr - text.data()) + " code " +
         std::to_string(static_cast<int>(result.ec));
}

template <class Real>
void ReadsAlike(std::string_view text) {
  if constexpr (kStandardReads<Real>) {
    EXPECT_EQ(
        WasRead<Real>(text, [](const char* first, const char* last,
                               Real& value) { return stand_in::FromChars(first, last, value); }),
        WasRead<Real>(text, [](const char* first, const char* last,
                               Real& value) { return std::from_chars(first, last, value); }))
        << text;
  }
}

template <class Real>
void WritesAlike(Real value) {
  if (std::isnan(value)) {
    EXPECT_EQ(Written([&](char* first, char* last) { return ToChars(first, last, value); }),
              std::signbit(value) ? "-nan" : "nan");
    return;
  }
  if constexpr (kStandardWrites<Real>) {
    const std::string standard =
        Written([&](char* first, char* last) { return std::to_chars(first, last, value); });
    EXPECT_EQ(
        Written([&](char* first, char* last) { return stand_in::ToChars(first, last, value); }),
        standard);
    ReadsAlike<Real>(standard);
  }
}

template <class Real>
Real FromBits(uint64_t bits) {
  if constexpr (sizeof(Real) == 4) {
    return std::bit_cast<float>(static_cast<uint32_t>(bits >> 32));
  } else {
    return std::bit_cast<double>(bits);
  }
}

template <class Real>
class NumberChars : public testing::Test {
 protected:
  // Numbers of each kind that converting has a way of its own for.
  void CompareOne() {
    const uint64_t bits = random_();
    const Real any = FromBits<Real>(bits);
    const auto power = std::uniform_int_distribution(Limits::min_exponent - Limits::digits,
                                                     Limits::max_exponent)(random_);
    WritesAlike(any);
    WritesAlike(any * Limits::min());
    WritesAlike(std::ldexp(Real{1}, power));
    WritesAlike(std::nextafter(std::ldexp(Real{1}, power), Real{0}));
    WritesAlike(static_cast<Real>(static_cast<int64_t>(bits) >> (bits % 64)));
    const int64_t whole = static_cast<int64_t>(bits) >> (bits / 64 % 64);
    WritesAlike(static_cast<Real>(whole % 10'000'000) / 10000);
    ReadsAlike<Real>(std::to_string(whole) + '.' + std::to_string(random_()) + 'e' +
                     std::to_string(power));
    if (std::isfinite(any)) CompareFixed(any, static_cast<int>(bits % 5));
  }

 private:
  using Limits = std::numeric_limits<Real>;

  void CompareFixed(Real value, int places) {
    if constexpr (!kStandardWritesFixed<Real>) return;
    EXPECT_EQ(Written([&](char* first, char* last) {
                return stand_in::ToFixedChars(first, last, static_cast<double>(value), places);
              }),
              Written([&](char* first, char* last) {
                return std::to_chars(first, last, value, std::chars_format::fixed, places);
              }));
  }

  std::mt19937_64 random_{std::random_device{}()};
};

using Reals = testing::Types<float, double>;
TYPED_TEST_SUITE(NumberChars, Reals);

TYPED_TEST(NumberChars, StandInsGiveTheSameAsTheStandard) {
  for (int i = 0; i < NumberCount() && !this->HasFailure(); ++i) this->CompareOne();
}

TYPED_TEST(NumberChars, StandInsEndWhereTheStandardEnds) {
  std::istringstream texts(
      "- -. . 1e 1e+ 1e-x .5 5. -0 -0.0e5 +1 1.e5 ..5 0x10 1e5e 1E+05 1e400 -1e400 1e-400 0e400 "
      "5e-324 2e-324 2.5e-324 1e-46 3.4028236e38 00012 0.0001 1e0000005 0.1.2 1e-5-6 e5 .e5 1,5 "
      "inf -inf INFINITY infin -i nan -nan nan() NaN(a_Z9) nan( nan(-) 1e99999999 1e-999999 "
      "1e99999999999999999999999 1e-99999999999999999999999 0.000000000000000000e1");
  ReadsAlike<TypeParam>("");
  ReadsAlike<TypeParam>(" 1");
  for (std::string text; texts >> text;) ReadsAlike<TypeParam>(text);
  const std::string zeros(2000, '0');
  ReadsAlike<TypeParam>("1" + zeros + "e-2000");
  ReadsAlike<TypeParam>("0." + zeros + "1e2001");
  if constexpr (kStandardWrites<TypeParam>) {
    char three[3];
    EXPECT_EQ(stand_in::ToChars(three, three + 3, TypeParam{0.5}).ptr, three + 3);
    EXPECT_EQ(stand_in::ToChars(three, three + 3, TypeParam{0.25}).ec, std::errc::value_too_large);
  }
}

}  // namespace
}  // namespace vndoc6::automation
