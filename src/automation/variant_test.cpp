#include "vndoc6/automation/variant.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <optional>

#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::automation {
namespace {

// The error that a conversion ends with; nothing when it succeeds.
std::optional<int32_t> ErrorOf(const std::function<void()>& convert) {
  try {
    convert();
    return std::nullopt;
  } catch (const Error& error) {
    return error.number();
  }
}

// What the conversion gives as text; "!" and the number of the error that it ends with.
template <class Result>
std::string Outcome(Result (Variant::*convert)() const, const Variant& value) {
  std::string outcome;
  const auto error = ErrorOf([&] { outcome = ToUtf8(Variant((value.*convert)()).ToText()); });
  return error ? "!" + std::to_string(*error) : outcome;
}

TEST(Variant, ConvertsEachKind) {
  const struct {
    Variant value;
    const char* text;
    const char* number;
    const char* truth;
  } cases[] = {
      {Variant(), "", "0", "False"},
      {Variant(Null()), "!13", "!13", "!13"},
      {Variant(true), "True", "-1", "True"},
      {Variant(false), "False", "0", "False"},
      {Variant(int16_t{-7}), "-7", "-7", "True"},
      {Variant(0), "0", "0", "False"},
      {Variant(1.5F), "1.5", "1.5", "True"},
      {Variant(-0.1), "-0.1", "-0.1", "True"},
      {Variant(Currency{0}), "0", "0", "False"},
      {Variant(Currency{5000}), "0.5", "0.5", "True"},
      {Variant(Currency{-95000}), "-9.5", "-9.5", "True"},
      {Variant(Date{1.5}), "1899-12-31 12:00:00", "1.5", "True"},
      {Variant(kMissing), "!13", "!13", "!13"},
      {Variant(u"\t +1.5E1\r"), "\t +1.5E1\r", "15", "True"},
      {Variant(u"TRUE"), "TRUE", "!13", "True"},
      {Variant(u"false"), "false", "!13", "False"},
      {Variant(u"0"), "0", "0", "False"},
      {Variant(u"+-1"), "+-1", "!13", "!13"},
      {Variant(u"1 2"), "1 2", "!13", "!13"},
      {Variant(u"nan"), "nan", "!13", "!13"},
      {Variant(u""), "", "!13", "!13"},
      {Variant(u"1e999"), "1e999", "!6", "!6"},
      {Variant(Ref<Object>()), "!13", "!13", "!13"},
  };
  for (const auto& [value, text, number, truth] : cases) {
    SCOPED_TRACE(std::string(value.TypeName()) + " " + text);
    EXPECT_EQ(Outcome(&Variant::ToText, value), text);
    EXPECT_EQ(Outcome(&Variant::ToDouble, value), number);
    EXPECT_EQ(Outcome(&Variant::ToBoolean, value), truth);
  }
}

TEST(Variant, DatesAreTextsInTheFormThatNoLocaleChanges) {
  for (const auto& [days, text] : std::initializer_list<std::pair<double, TextView>>{
           {0, u"1899-12-30"},
           {46082, u"2026-03-01"},
           {45351, u"2024-02-29"},
           {46082.604166666664, u"2026-03-01 14:30:00"},
           {-1.25, u"1899-12-29 06:00:00"},
           // Less than half a second before midnight is the next day, before 1899 too.
           {45999.999999, u"2025-12-09"},
           {-5.999999, u"1899-12-26"},
           {9999999, u"29279-01-23"},
       }) {
    EXPECT_EQ(Variant(Date{days}).ToText(), text) << days;
    EXPECT_EQ(Variant(Variant(text).ToDate()).ToText(), text) << days;
  }
  EXPECT_EQ(Variant(u"2026-03-01T14:30:00").ToDate().days, 46082.604166666664);
  EXPECT_EQ(Variant(u"46082.5").ToDate().days, 46082.5);
  EXPECT_EQ(ErrorOf([] { Variant(Date{1e7}).ToText(); }), kOverflow);
  EXPECT_EQ(DayText(Date{1e300}), u"1e+300");
  EXPECT_EQ(DayText(Date{46082}), u"2026-03-01");
}

TEST(Variant, TextsThatAreNoDatesMismatch) {
  for (const TextView text :
       {u"2026-13-01", u"2026-00-01", u"2026-03-00", u"2026-03-32", u"2026-03-01x", u"2026-03-01 ",
        u"2026-03-01 14", u"2026-03-01 24:00:00", u"2026-03-01 14:60:00", u"2026-03-01 14:30:00x",
        u"2026-03", u""}) {
    EXPECT_EQ(ErrorOf([&] { Variant(text).ToDate(); }), kTypeMismatch) << ToUtf8(text);
  }
}

TEST(Variant, NumbersRoundHalfToEvenAndOverflow) {
  for (const auto& [from, to] : std::initializer_list<std::pair<double, int16_t>>{
           {0.5, 0}, {1.5, 2}, {-2.5, -2}, {32767.4, 32767}, {-32768.5, -32768}}) {
    EXPECT_EQ(Variant(from).ToShort(), to) << from;
    EXPECT_EQ(Variant(from).ToLong(), to) << from;
  }
  EXPECT_EQ(Variant(int16_t{7}).ToShort(), 7);
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  for (const double out : {32767.5, -32769.0, kNan}) {
    EXPECT_EQ(ErrorOf([&] { Variant(out).ToShort(); }), kOverflow) << out;
  }
  EXPECT_EQ(Variant(1e38).ToSingle(), 1e38F);
  EXPECT_EQ(ErrorOf([] { Variant(1e39).ToSingle(); }), kOverflow);
}

// A host's object with a default member that gives `value`, or raises an error.
class HostObject final : public Object {
 public:
  explicit HostObject(Variant value, int32_t error = 0) : value_(std::move(value)), error_(error) {}
  int reads = 0;
  Variant InvokeMember(int32_t id, CallKind, const Arguments&) override {
    EXPECT_EQ(id, kDefaultMember);
    ++reads;
    if (error_ != 0) throw Error(error_);
    return value_;
  }

 private:
  Variant value_;
  int32_t error_;
};

TEST(Variant, AHostsObjectIsConvertedByItsDefaultMember) {
  const auto object = [](Variant value) { return Variant(Make<HostObject>(std::move(value))); };
  const Ref<HostObject> text = Make<HostObject>(Variant(u"2026-03-01"));
  EXPECT_EQ(Variant(text).ToText(), u"2026-03-01");
  EXPECT_EQ(text->reads, 1);
  EXPECT_EQ(Variant(text).ToDate().days, 46082);
  EXPECT_EQ(object(Variant(u"True")).ToBoolean(), true);
  EXPECT_EQ(object(Variant(2.5)).ToLong(), 2);
  EXPECT_EQ(object(Variant(u"7")).ToSingle(), 7);
  constexpr Currency kExact{900719925474099301};
  EXPECT_EQ(object(Variant(kExact)).ToCurrency(), kExact);

  EXPECT_EQ(ErrorOf([&] { object(object(Variant(1))).ToLong(); }), kTypeMismatch);
  EXPECT_EQ(ErrorOf([] { Variant(Ref<Object>()).ToText(); }), kTypeMismatch);
  for (const auto& [raised, error] : std::initializer_list<std::pair<int32_t, int32_t>>{
           {kNotSupported, kTypeMismatch}, {kArgumentNotOptional, kTypeMismatch}, {3021, 3021}}) {
    const Variant failing(Make<HostObject>(Variant(), raised));
    EXPECT_EQ(ErrorOf([&] { failing.ToText(); }), error) << raised;
  }
}

}  // namespace
}  // namespace vndoc6::automation
