// Variant: any value that automation can pass, and the conversions between them.
#pragma once

#include <compare>
#include <cstdint>
#include <variant>

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/text.h"

namespace vndoc6::automation {

struct Empty {
  friend bool operator==(Empty, Empty) = default;
};
struct Null {
  friend bool operator==(Null, Null) = default;
};
// Fixed-point money, scaled by 10,000.
struct Currency {
  int64_t scaled = 0;
  friend auto operator<=>(const Currency&, const Currency&) = default;
};
// Days since 30 December 1899; the fraction is the time of day.
struct Date {
  double days = 0;
  friend auto operator<=>(const Date&, const Date&) = default;
};
// For people: the date as text, as a Variant gives it, or the number of days where the calendar has
// no such day. Raises nothing.
Text DayText(Date date);
struct ErrorValue {
  int32_t scode = 0;
  friend auto operator<=>(const ErrorValue&, const ErrorValue&) = default;
};
// A value that automation can pass and this library can't hold: an array, a record. It is taken
// for what names nothing and converts to nothing; nobody can keep it.
struct Opaque {
  friend bool operator==(Opaque, Opaque) = default;
};
// What a caller passes for an optional argument that it leaves out.
inline constexpr ErrorValue kMissing{static_cast<int32_t>(0x80020004)};

// The kinds of value, in the order of Variant's alternatives.
enum class ValueKind : uint8_t {
  kEmpty,
  kNull,
  kBoolean,
  kShort,
  kLong,
  kSingle,
  kDouble,
  kCurrency,
  kDate,
  kError,
  kOpaque,
  kText,
  kObject
};

class Variant {
 public:
  Variant() = default;
  Variant(Null value) : value_(Plain(value)) {}
  Variant(bool value) : value_(Plain(value)) {}
  Variant(int16_t value) : value_(Plain(value)) {}
  Variant(int32_t value) : value_(Plain(value)) {}
  Variant(float value) : value_(Plain(value)) {}
  Variant(double value) : value_(Plain(value)) {}
  Variant(Currency value) : value_(Plain(value)) {}
  Variant(Date value) : value_(Plain(value)) {}
  Variant(Text value) : value_(std::move(value)) {}
  Variant(TextView value) : value_(Text(value)) {}
  Variant(const char16_t* value) : value_(Text(value)) {}
  // Null stands for Nothing: an object value that names no object.
  Variant(Ref<Object> value) : value_(std::move(value)) {}
  template <class T, class = std::enable_if_t<std::is_base_of_v<Object, T>>>
  Variant(const Ref<T>& value) : value_(Ref<Object>(value)) {}
  Variant(ErrorValue value) : value_(Plain(value)) {}
  Variant(Opaque value) : value_(Plain(value)) {}
  // Any other pointer would silently become a Boolean.
  template <class T>
  Variant(T* value) = delete;

  ValueKind kind() const {
    const auto* plain = std::get_if<Plain>(&value_);
    return static_cast<ValueKind>(plain != nullptr ? plain->index()
                                                   : kPlainKinds - 1 + value_.index());
  }
  bool IsEmpty() const { return kind() == ValueKind::kEmpty; }
  bool IsText() const { return kind() == ValueKind::kText; }
  bool IsObject() const { return kind() == ValueKind::kObject; }
  bool IsMissing() const { return Is(kMissing); }
  // True for the kinds that count as a position where a position or a key is expected.
  bool IsNumber() const;

  // The value when it is exactly of that type; null otherwise.
  template <class T>
  const T* If() const {
    if constexpr (std::is_same_v<T, Text> || std::is_same_v<T, Ref<Object>>) {
      return std::get_if<T>(&value_);
    } else {
      const auto* plain = std::get_if<Plain>(&value_);
      return plain != nullptr ? std::get_if<T>(plain) : nullptr;
    }
  }

  // Conversions by the rules of automation: True is -1, reals round half to even, texts are read
  // as numbers, and a foreign object stands for its default value, which is read once. Raise error
  // 6 on overflow, 13 when the value has no such form.
  bool ToBoolean() const;
  int16_t ToShort() const;
  int32_t ToLong() const;
  float ToSingle() const;
  double ToDouble() const;
  Currency ToCurrency() const;
  Date ToDate() const;
  Text ToText() const;
  // The object, possibly Nothing; error 13 for any other kind.
  const Ref<Object>& ToObject() const;
  // The value itself, for whoever keeps it; error 13 for an opaque one.
  const Variant& ToStorable() const;

  // The name that scripts know the kind by: "String", "Long", ...; of an object its class name,
  // "Nothing" when there is none.
  std::string_view TypeName() const;

  friend bool operator==(const Variant&, const Variant&) = default;

 private:
  // Of an object: what is converted in its place.
  Variant DefaultValue() const;
  bool Is(ErrorValue error) const {
    const auto* value = If<ErrorValue>();
    return value != nullptr && *value == error;
  }
  // Apart from the others, so that nearly every value is copied and dropped as plain bytes.
  using Plain = std::variant<Empty, Null, bool, int16_t, int32_t, float, double, Currency, Date,
                             ErrorValue, Opaque>;
  static_assert(std::is_trivially_copyable_v<Plain>);
  static constexpr size_t kPlainKinds = std::variant_size_v<Plain>;
  std::variant<Plain, Text, Ref<Object>> value_;
};

// Numbers as texts, without locale: the shortest form that reads back identically.
Text NumberText(int32_t value);
Text NumberText(double value);
Text NumberText(float value);

// The number that a text begins with, leading blanks skipped; 0 when it begins with none.
double LeadingNumber(TextView text);
// A real as a Long, rounding half to even; error 6 outside its range.
int32_t RoundToLong(double value);

}  // namespace vndoc6::automation
