#include "json_values.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "automation/currency_text.h"
#include "command.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/picture.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/bag/base64.h"

namespace vndoc {

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
  vndoc6::bag::AppendBase64(picture.Bytes(), out);
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

[[noreturn]] void RefuseValue(const JsonNode& json) {
  if (json.IsList()) throw Failure("not a value: a list");
  if (json.IsText()) throw Failure("not a value: \"" + std::string(json.text()) + '"');
  if (!json.IsObject()) throw Failure("not a value");
  const std::string what = json.size() == 0 ? "nothing" : std::string((*json.begin()).key());
  throw Failure("not a value: an object with " + what);
}

double RealFrom(const JsonNode& json) {
  if (json.IsNumber()) return json.real();
  if (json.IsText("nan")) return std::nan("");
  if (json.IsText("inf")) return HUGE_VAL;
  if (json.IsText("-inf")) return -HUGE_VAL;
  RefuseValue(json);
}

// The digits of the highest Single stand for a Double that is a little higher.
Variant SingleFrom(const JsonNode& json) {
  const double value = RealFrom(json);
  constexpr double kHighest = 3.4028235677973366e38;  // what is below rounds to a Single
  if (std::isfinite(value) && std::abs(value) >= kHighest) return Variant(value);
  return Variant(static_cast<float>(value));
}

// A text says a day of the calendar, anything else is days.
Variant DateFrom(const JsonNode& json) {
  const bool is_days =
      !json.IsText() || json.IsText("nan") || json.IsText("inf") || json.IsText("-inf");
  return Variant(is_days ? Date{RealFrom(json)} : FromJson(json).ToDate());
}

// Exactly: a Double has not all of its digits.
Variant CurrencyFrom(std::string_view text) {
  Currency value;
  if (!ReadDecimal(text, value)) throw Failure("not an amount: " + std::string(text));
  return Variant(value);
}

template <class Integer>
Integer IntegerFrom(const JsonNode& json) {
  const int64_t value = json.integer();
  if (value != static_cast<Integer>(value)) throw Failure("out of range: " + std::to_string(value));
  return static_cast<Integer>(value);
}

Text UnitsFrom(const JsonNode& json) {
  Text text;
  for (const JsonNode unit : json) text += IntegerFrom<char16_t>(unit);
  return text;
}

Variant FromWrapped(std::string_view type, const JsonNode& json) {
  if (type == "Utf16") return Variant(UnitsFrom(json));
  if (type == "Null") return Variant(Null{});
  if (type == "Short") return Variant(IntegerFrom<int16_t>(json));
  if (type == "Single") return SingleFrom(json);
  if (type == "Double") return Variant(RealFrom(json));
  if (type == "Currency") return CurrencyFrom(json.text());
  if (type == "Date") return DateFrom(json);
  if (type == "Error") return Variant(ErrorValue{IntegerFrom<int32_t>(json)});
  if (type == "Picture") {
    const auto bytes = vndoc6::bag::FromBase64(json.text());
    if (bytes) return Variant(vndoc6::automation::services().make_picture(*bytes));
  }
  RefuseValue(json);
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

Variant FromJson(const JsonNode& json, TypeKind type) {
  if (type == TypeKind::kSingle) return SingleFrom(json);
  if (type == TypeKind::kDouble) return Variant(RealFrom(json));
  if (type == TypeKind::kDate) return DateFrom(json);
  if (type == TypeKind::kCurrency && json.IsText()) return CurrencyFrom(json.text());
  switch (json.kind()) {
    case JsonKind::kNull:
      return {};
    case JsonKind::kBoolean:
      return Variant(json.boolean());
    case JsonKind::kInteger: {
      const int64_t number = json.integer();
      if (number == static_cast<int32_t>(number)) return Variant(static_cast<int32_t>(number));
      return Variant(static_cast<double>(number));
    }
    case JsonKind::kReal:
      return Variant(json.real());
    case JsonKind::kText:
      return Variant(FromUtf8(json.text()));
    case JsonKind::kObject:
      if (json.size() == 1) return FromWrapped((*json.begin()).key(), *json.begin());
      break;
    case JsonKind::kList:
      break;
  }
  RefuseValue(json);
}

}  // namespace vndoc
