#include "json_values.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "automation/currency_text.h"
#include "command.h"
#include "vndoc6/automation/base64.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/picture.h"
#include "vndoc6/automation/services.h"

namespace vndoc {

using nlohmann::json;
using vndoc6::automation::Currency;
using vndoc6::automation::Date;
using vndoc6::automation::ErrorValue;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::Null;
using vndoc6::automation::NumberText;
using vndoc6::automation::Picture;
using vndoc6::automation::ToUtf8;
using vndoc6::automation::TypeKind;
using vndoc6::automation::ValueKind;
using vndoc6::automation::Variant;

namespace {

bool HasLoneSurrogates(TextView text) {
  while (!text.empty()) {
    if (vndoc6::automation::IsSurrogate(vndoc6::automation::TakeCodePoint(text))) return true;
  }
  return false;
}

bool IsPlain(TextView text) {
  return std::all_of(text.begin(), text.end(), [](char16_t unit) {
    return unit >= 0x20 && unit < 0x7F && unit != u'"' && unit != u'\\';
  });
}

void AppendUnits(TextView text, std::string& out) {
  out += "{\"Utf16\": [";
  for (size_t i = 0; i < text.size(); ++i) {
    if (i > 0) out += ", ";
    out += std::to_string(static_cast<unsigned>(text[i]));
  }
  out += "]}";
}

// A real needs its point: without one it is a Long.
template <class T>
void AppendReal(T value, std::string& out) {
  const std::string digits = ToUtf8(NumberText(value));
  if (!std::isfinite(value)) {
    out += std::isnan(value) ? "\"nan\"" : value < 0 ? "\"-inf\"" : "\"inf\"";
  } else {
    out += digits;
    if (digits.find_first_of(".eE") == std::string::npos) out += ".0";
  }
}

void AppendDate(Date value, std::string& out) {
  try {
    const Text text = Variant(value).ToText();
    if (Variant(text).ToDate() == value) return AppendJsonText(text, out);
  } catch (const vndoc6::automation::Error&) {
    // A day that the calendar has not.
  }
  AppendReal(value.days, out);
}

void AppendPicture(const Picture& picture, std::string& out) {
  out += "{\"Picture\": \"";
  vndoc6::automation::AppendBase64(picture.Bytes(), out);
  out += "\"}";
}

void AppendBare(const Variant& value, std::string& out) {
  switch (value.kind()) {
    case ValueKind::kEmpty:
    case ValueKind::kNull:
    case ValueKind::kOpaque:
      out += "null";
      break;
    case ValueKind::kBoolean:
      out += value.ToBoolean() ? "true" : "false";
      break;
    case ValueKind::kShort:
    case ValueKind::kLong:
      out += std::to_string(value.ToLong());
      break;
    case ValueKind::kSingle:
      AppendReal(*value.If<float>(), out);
      break;
    case ValueKind::kDouble:
      AppendReal(*value.If<double>(), out);
      break;
    case ValueKind::kCurrency:
    case ValueKind::kText:
      AppendJsonText(value.ToText(), out);
      break;
    case ValueKind::kDate:
      AppendDate(*value.If<Date>(), out);
      break;
    case ValueKind::kError:
      out += std::to_string(value.If<ErrorValue>()->scode);
      break;
    case ValueKind::kObject:
      const auto* const picture = dynamic_cast<const Picture*>(value.ToObject().get());
      if (picture != nullptr && !picture->Bytes().empty()) {
        AppendPicture(*picture, out);
      } else {
        out += "null";
      }
      break;
  }
}

// What a value is wrapped in where its type is not known otherwise; null for nothing.
const char* Wrapping(const Variant& value) {
  switch (value.kind()) {
    case ValueKind::kNull:
      return "Null";
    case ValueKind::kShort:
      return "Short";
    case ValueKind::kSingle:
      return "Single";
    case ValueKind::kDouble:
      return std::isfinite(*value.If<double>()) ? nullptr : "Double";
    case ValueKind::kCurrency:
      return "Currency";
    case ValueKind::kDate:
      return "Date";
    case ValueKind::kError:
      return "Error";
    default:
      return nullptr;
  }
}

[[noreturn]] void RefuseValue(const json& value) {
  if (value.is_array()) throw Failure("not a value: a list");
  if (value.is_string()) throw Failure("not a value: \"" + value.get<std::string>() + '"');
  if (!value.is_object()) throw Failure("not a value");
  throw Failure("not a value: an object with " + (value.empty() ? "nothing" : value.begin().key()));
}

std::string_view TextIn(const json& value) {
  if (!value.is_string()) throw JsonFormError();
  return value.get_ref<const std::string&>();
}
bool IsText(const json& value, std::string_view text) {
  return value.is_string() && TextIn(value) == text;
}

// A real loses its fraction.
int64_t IntegerIn(const json& value) {
  if (!value.is_number()) throw JsonFormError();
  if (value.is_number_integer() && !value.is_number_unsigned()) return value.get<int64_t>();
  const auto real = value.get<double>();
  constexpr double kLimit = 9.2e18;
  if (!(real > -kLimit && real < kLimit)) throw JsonFormError();
  return value.get<int64_t>();
}

double RealFrom(const json& value) {
  if (value.is_number()) return value.get<double>();
  if (IsText(value, "nan")) return std::nan("");
  if (IsText(value, "inf")) return HUGE_VAL;
  if (IsText(value, "-inf")) return -HUGE_VAL;
  RefuseValue(value);
}

// The digits of the highest Single stand for a Double that is a little higher.
Variant SingleFrom(const json& value) {
  const double real = RealFrom(value);
  constexpr double kHighest = 3.4028235677973366e38;  // what is below rounds to a Single
  if (std::isfinite(real) && std::abs(real) >= kHighest) return Variant(real);
  return Variant(static_cast<float>(real));
}

// A text says a day of the calendar, anything else is days.
Variant DateFrom(const json& value) {
  const bool is_days =
      !value.is_string() || IsText(value, "nan") || IsText(value, "inf") || IsText(value, "-inf");
  return Variant(is_days ? Date{RealFrom(value)} : FromJson(value).ToDate());
}

// Exactly: a Double has not all of its digits.
Variant CurrencyFrom(std::string_view text) {
  Currency value;
  if (!ReadDecimal(text, value)) throw Failure("not an amount: " + std::string(text));
  return Variant(value);
}

template <class Integer>
Integer IntegerFrom(const json& value) {
  const int64_t integer = IntegerIn(value);
  if (integer != static_cast<Integer>(integer)) {
    throw Failure("out of range: " + std::to_string(integer));
  }
  return static_cast<Integer>(integer);
}

Text UnitsFrom(const json& value) {
  if (!value.is_array()) throw JsonFormError();
  Text text;
  for (const json& unit : value) text += IntegerFrom<char16_t>(unit);
  return text;
}

Variant FromWrapped(std::string_view type, const json& value) {
  if (type == "Utf16") return Variant(UnitsFrom(value));
  if (type == "Null") return Variant(Null{});
  if (type == "Short") return Variant(IntegerFrom<int16_t>(value));
  if (type == "Single") return SingleFrom(value);
  if (type == "Double") return Variant(RealFrom(value));
  if (type == "Currency") return CurrencyFrom(TextIn(value));
  if (type == "Date") return DateFrom(value);
  if (type == "Error") return Variant(ErrorValue{IntegerFrom<int32_t>(value)});
  if (type == "Picture") {
    const auto bytes = vndoc6::automation::FromBase64(TextIn(value));
    if (bytes) return Variant(vndoc6::automation::services().make_picture(*bytes));
  }
  RefuseValue(value);
}

}  // namespace

void AppendJsonText(TextView text, std::string& out) {
  if (HasLoneSurrogates(text)) return AppendUnits(text, out);
  if (!IsPlain(text)) {
    out += nlohmann::json(ToUtf8(text)).dump();
    return;
  }
  out += '"';
  vndoc6::automation::AppendUtf8(text, out);
  out += '"';
}

void AppendJson(const Variant& value, TypeKind type, std::string& out) {
  const char* const wrapping = type == TypeKind::kVariant ? Wrapping(value) : nullptr;
  if (wrapping == nullptr) return AppendBare(value, out);
  out.append("{\"").append(wrapping).append("\": ");
  AppendBare(value, out);
  out += '}';
}

Variant FromJson(const json& value, TypeKind type) {
  if (type == TypeKind::kSingle) return SingleFrom(value);
  if (type == TypeKind::kDouble) return Variant(RealFrom(value));
  if (type == TypeKind::kDate) return DateFrom(value);
  if (type == TypeKind::kCurrency && value.is_string()) return CurrencyFrom(TextIn(value));
  if (value.is_null()) return {};
  if (value.is_boolean()) return Variant(value.get<bool>());
  if (value.is_string()) return Variant(FromUtf8(TextIn(value)));
  if (value.is_number()) {
    const auto real = value.get<double>();
    using Long = std::numeric_limits<int32_t>;
    const bool is_long = value.is_number_integer() && real >= Long::min() && real <= Long::max();
    return is_long ? Variant(value.get<int32_t>()) : Variant(real);
  }
  if (value.is_object() && value.size() == 1) {
    return FromWrapped(value.begin().key(), value.begin().value());
  }
  RefuseValue(value);
}

}  // namespace vndoc
