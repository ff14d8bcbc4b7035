#include "vndoc6/automation/variant.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <limits>
#include <system_error>

#include "automation/currency_text.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/number_chars.h"

namespace vndoc6::automation {
namespace {

constexpr double kCurrencyScale = 10000;

// Half to even, as automation rounds.
double RoundHalfEven(double value) {
  const double floor = std::floor(value);
  const double rest = value - floor;
  if (rest < 0.5) return floor;
  if (rest > 0.5) return floor + 1;
  return std::fmod(floor, 2) == 0 ? floor : floor + 1;
}

template <class Integer>
Integer RoundTo(double value) {
  const double rounded = RoundHalfEven(value);
  // The upper bound of a 64-bit integer is no double; the next double below it is the limit then.
  constexpr double kLow = static_cast<double>(std::numeric_limits<Integer>::min());
  if (!(rounded >= kLow && rounded < -kLow)) throw Error(kOverflow);
  return static_cast<Integer>(rounded);
}

bool IsBlank(char16_t unit) { return unit == u' ' || (unit >= u'\t' && unit <= u'\r'); }

// The longest number that `text` begins with; `end` is where it stops, 0 when there is none.
double ParseLeading(TextView text, size_t& end) {
  size_t start = 0;
  while (start < text.size() && IsBlank(text[start])) ++start;
  const bool plus = start < text.size() && text[start] == u'+';
  std::string ascii;
  for (size_t i = start + (plus ? 1 : 0); i < text.size() && text[i] < 0x80; ++i) {
    const char unit = static_cast<char>(text[i]);
    // Letters other than the exponent's would make "nan" and "inf" numbers.
    if (!((unit >= '0' && unit <= '9') || unit == '.' || unit == '-' || unit == '+' ||
          unit == 'e' || unit == 'E')) {
      break;
    }
    ascii += unit;
  }
  double value = 0;
  const char* const first = ascii.data();
  const auto result = FromChars(first, first + ascii.size(), value);
  const bool found = result.ptr != first && !(plus && ascii[0] == '-');
  end = found ? start + (plus ? 1 : 0) + static_cast<size_t>(result.ptr - first) : 0;
  if (!found) return 0;
  if (result.ec == std::errc::result_out_of_range) throw Error(kOverflow);
  return value;
}

double NumberIn(TextView text) {
  size_t end = 0;
  const double value = ParseLeading(text, end);
  while (end > 0 && end < text.size() && IsBlank(text[end])) ++end;
  if (end == 0 || end != text.size()) throw Error(kTypeMismatch);
  return value;
}

template <class Number>
Text ShortestText(Number value) {
  std::array<char, 32> buffer;
  const auto result = ToChars(buffer.data(), buffer.data() + buffer.size(), value);
  return Text(buffer.data(), result.ptr);
}

Text CurrencyText(Currency value) {
  std::string decimal;
  AppendDecimal(value, decimal);
  return Text(decimal.begin(), decimal.end());
}

// From 30 December 1899, where automation dates begin.
constexpr int64_t kDaysTo1970 = 25569;

Text TwoDigits(int64_t value) { return (value < 10 ? u"0" : u"") + ShortestText(value); }

// ISO 8601, the one form that no locale changes: "2026-03-01", with a time "2026-03-01 14:30:00".
bool IsInCalendar(Date date) { return std::fabs(date.days) < 1e7; }

Text DateText(Date date) {
  if (!IsInCalendar(date)) throw Error(kOverflow);
  double whole = std::trunc(date.days);
  // The fraction counts forward from midnight, before 1899 too.
  int64_t seconds = static_cast<int64_t>(std::llround(std::fabs(date.days - whole) * 86400));
  if (seconds == 86400) {
    seconds = 0;
    whole += 1;
  }
  const std::chrono::year_month_day day =
      std::chrono::sys_days(std::chrono::days(static_cast<int64_t>(whole) - kDaysTo1970));
  Text text = ShortestText(static_cast<int>(day.year())) + u"-" +
              TwoDigits(static_cast<unsigned>(day.month())) + u"-" +
              TwoDigits(static_cast<unsigned>(day.day()));
  if (seconds == 0) return text;
  return text + u" " + TwoDigits(seconds / 3600) + u":" + TwoDigits(seconds / 60 % 60) + u":" +
         TwoDigits(seconds % 60);
}

// Reads the digits of one part of a date and the separator after it.
bool TakePart(TextView& text, char16_t separator, int64_t limit, int64_t& value) {
  value = 0;
  size_t length = 0;
  while (length < text.size() && text[length] >= u'0' && text[length] <= u'9' && length < 5) {
    value = value * 10 + (text[length] - u'0');
    ++length;
  }
  if (length == 0 || value > limit) return false;
  text.remove_prefix(length);
  if (separator == 0) return true;
  if (text.empty() || text[0] != separator) return false;
  text.remove_prefix(1);
  return true;
}

// The calendar repeats itself every 400 years, and the standard's ends in 32767. A day that its
// month has not is one of the next.
int64_t DayOf(int64_t year, int64_t month, int64_t day) {
  constexpr int64_t kCycle = 400;
  constexpr int64_t kCycleDays = 146097;
  const std::chrono::sys_days date = std::chrono::year(static_cast<int>(year % kCycle)) /
                                     static_cast<int>(month) / static_cast<int>(day);
  return date.time_since_epoch().count() + year / kCycle * kCycleDays + kDaysTo1970;
}

// A date in the form that DateText writes, or a number of days.
Date DateIn(TextView text) {
  TextView rest = text;
  int64_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  const bool has_date = TakePart(rest, u'-', 99999, year) && TakePart(rest, u'-', 12, month) &&
                        TakePart(rest, 0, 31, day) && month > 0 && day > 0;
  if (!has_date) return {NumberIn(text)};
  if (!rest.empty()) {
    if (rest[0] != u' ' && rest[0] != u'T') throw Error(kTypeMismatch);
    rest.remove_prefix(1);
    if (!(TakePart(rest, u':', 23, hour) && TakePart(rest, u':', 59, minute) &&
          TakePart(rest, 0, 59, second) && rest.empty())) {
      throw Error(kTypeMismatch);
    }
  }
  const auto days = static_cast<double>(DayOf(year, month, day));
  const double time = static_cast<double>(hour * 3600 + minute * 60 + second) / 86400;
  return {days < 0 ? days - time : days + time};
}

bool BooleanIn(TextView text) {
  if (EqualsAsciiFolded("true", text)) return true;
  if (EqualsAsciiFolded("false", text)) return false;
  return NumberIn(text) != 0;
}

}  // namespace

Text NumberText(int32_t value) { return ShortestText(value); }
Text NumberText(double value) { return ShortestText(value); }
Text NumberText(float value) { return ShortestText(value); }

double LeadingNumber(TextView text) {
  size_t end = 0;
  return ParseLeading(text, end);
}

int32_t RoundToLong(double value) { return RoundTo<int32_t>(value); }

bool Variant::IsNumber() const {
  switch (kind()) {
    case ValueKind::kBoolean:
    case ValueKind::kShort:
    case ValueKind::kLong:
    case ValueKind::kSingle:
    case ValueKind::kDouble:
    case ValueKind::kCurrency:
    case ValueKind::kDate:
      return true;
    default:
      return false;
  }
}

double Variant::ToDouble() const {
  switch (kind()) {
    case ValueKind::kEmpty:
      return 0;
    case ValueKind::kBoolean:
      return *If<bool>() ? -1 : 0;
    case ValueKind::kShort:
      return *If<int16_t>();
    case ValueKind::kLong:
      return *If<int32_t>();
    case ValueKind::kSingle:
      return static_cast<double>(*If<float>());
    case ValueKind::kDouble:
      return *If<double>();
    case ValueKind::kCurrency:
      return static_cast<double>(If<Currency>()->scaled) / kCurrencyScale;
    case ValueKind::kDate:
      return If<Date>()->days;
    case ValueKind::kText:
      return NumberIn(*If<Text>());
    case ValueKind::kObject:
      return DefaultValue().ToDouble();
    case ValueKind::kNull:
    case ValueKind::kError:
    case ValueKind::kOpaque:
      break;
  }
  throw Error(kTypeMismatch);
}

bool Variant::ToBoolean() const {
  if (const auto* value = If<bool>()) return *value;
  if (const auto* value = If<Text>()) return BooleanIn(*value);
  if (IsObject()) return DefaultValue().ToBoolean();
  return ToDouble() != 0;
}

int16_t Variant::ToShort() const {
  if (const auto* value = If<int16_t>()) return *value;
  return RoundTo<int16_t>(ToDouble());
}

int32_t Variant::ToLong() const {
  if (const auto* value = If<int32_t>()) return *value;
  return RoundTo<int32_t>(ToDouble());
}

float Variant::ToSingle() const {
  if (const auto* value = If<float>()) return *value;
  const double value = ToDouble();
  if (std::isfinite(value) &&
      std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max())) {
    throw Error(kOverflow);
  }
  return static_cast<float>(value);
}

Currency Variant::ToCurrency() const {
  if (const auto* value = If<Currency>()) return *value;
  if (IsObject()) return DefaultValue().ToCurrency();
  return {RoundTo<int64_t>(ToDouble() * kCurrencyScale)};
}

Date Variant::ToDate() const {
  if (const auto* value = If<Date>()) return *value;
  if (const auto* value = If<Text>()) return DateIn(*value);
  if (IsObject()) return DefaultValue().ToDate();
  return {ToDouble()};
}

Text DayText(Date date) {
  return IsInCalendar(date) ? DateText(date) : Variant(date.days).ToText();
}

Text Variant::ToText() const {
  switch (kind()) {
    case ValueKind::kEmpty:
      return {};
    case ValueKind::kBoolean:
      return *If<bool>() ? u"True" : u"False";
    case ValueKind::kShort:
      return ShortestText(*If<int16_t>());
    case ValueKind::kLong:
      return ShortestText(*If<int32_t>());
    case ValueKind::kSingle:
      return ShortestText(*If<float>());
    case ValueKind::kDouble:
      return ShortestText(*If<double>());
    case ValueKind::kCurrency:
      return CurrencyText(*If<Currency>());
    case ValueKind::kDate:
      return DateText(*If<Date>());
    case ValueKind::kText:
      return *If<Text>();
    case ValueKind::kObject:
      return DefaultValue().ToText();
    case ValueKind::kNull:
    case ValueKind::kError:
    case ValueKind::kOpaque:
      break;
  }
  throw Error(kTypeMismatch);
}

const Ref<Object>& Variant::ToObject() const {
  const auto* value = If<Ref<Object>>();
  if (value == nullptr) throw Error(kTypeMismatch);
  return *value;
}

const Variant& Variant::ToStorable() const {
  if (kind() == ValueKind::kOpaque) throw Error(kTypeMismatch);
  return *this;
}

Variant Variant::DefaultValue() const {
  // The call may let go of the object.
  const Ref<Object> object = ToObject();
  if (!object) throw Error(kTypeMismatch);
  Variant value = object->DefaultValue();
  if (value.IsObject()) throw Error(kTypeMismatch);
  return value;
}

std::string_view Variant::TypeName() const {
  static constexpr std::string_view kNames[] = {"Empty",   "Null",   "Boolean",  "Integer", "Long",
                                                "Single",  "Double", "Currency", "Date",    "Error",
                                                "Unknown", "String", "Nothing"};
  if (const auto* object = If<Ref<Object>>(); object != nullptr && *object) {
    return (*object)->TypeName();
  }
  return kNames[static_cast<size_t>(kind())];
}

}  // namespace vndoc6::automation
