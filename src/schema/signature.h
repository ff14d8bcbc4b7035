// What the signature of a member function publishes: the types that automation knows, and the
// late-bound call that converts its arguments to them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/enumerator.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/font.h"
#include "vndoc6/automation/picture.h"

namespace vndoc6::automation {

namespace detail {

template <class T>
struct IsRef : std::false_type {};
template <class T>
struct IsRef<Ref<T>> : std::true_type {
  using Pointee = T;
};

template <class T>
constexpr TypeInfo ObjectType() {
  if constexpr (std::is_same_v<T, Object>) {
    return {TypeKind::kDispatch, nullptr, nullptr};
  } else if constexpr (std::is_same_v<T, Font>) {
    return {TypeKind::kFont, nullptr, nullptr};
  } else if constexpr (std::is_same_v<T, Picture>) {
    return {TypeKind::kPicture, nullptr, nullptr};
  } else if constexpr (std::is_same_v<T, Enumerator>) {
    return {TypeKind::kEnumerator, nullptr, nullptr};
  } else {
    return {TypeKind::kClass, &T::classInfo, nullptr};
  }
}

// The published type of a C++ type.
template <class T>
constexpr TypeInfo TypeOf() {
  using Plain = std::remove_cvref_t<T>;
  if constexpr (std::is_pointer_v<Plain>) {
    return ObjectType<std::remove_pointer_t<Plain>>();
  } else if constexpr (IsRef<Plain>::value) {
    return ObjectType<typename IsRef<Plain>::Pointee>();
  } else if constexpr (std::is_enum_v<Plain>) {
    return {TypeKind::kEnum, nullptr, &DescribeEnum<Plain>};
  } else if constexpr (std::is_void_v<Plain>) {
    return {TypeKind::kVoid, nullptr, nullptr};
  } else if constexpr (std::is_same_v<Plain, bool>) {
    return {TypeKind::kBoolean, nullptr, nullptr};
  } else if constexpr (std::is_same_v<Plain, int16_t>) {
    return {TypeKind::kShort, nullptr, nullptr};
  } else if constexpr (std::is_same_v<Plain, int32_t>) {
    return {TypeKind::kLong, nullptr, nullptr};
  } else if constexpr (std::is_same_v<Plain, float>) {
    return {TypeKind::kSingle, nullptr, nullptr};
  } else if constexpr (std::is_same_v<Plain, double>) {
    return {TypeKind::kDouble, nullptr, nullptr};
  } else if constexpr (std::is_same_v<Plain, Currency>) {
    return {TypeKind::kCurrency, nullptr, nullptr};
  } else if constexpr (std::is_same_v<Plain, Date>) {
    return {TypeKind::kDate, nullptr, nullptr};
  } else if constexpr (std::is_same_v<Plain, Text>) {
    return {TypeKind::kText, nullptr, nullptr};
  } else {
    static_assert(std::is_same_v<Plain, Variant>, "not a type that automation can pass");
    return {TypeKind::kVariant, nullptr, nullptr};
  }
}

// An argument as the member wants it. A text or Variant is borrowed from the caller where it has
// that form already.
template <class T>
class Converted {
 public:
  Converted(const Variant& value) : value_(Convert(value)) {}
  T get() const { return value_; }

 private:
  static T Convert(const Variant& value) {
    if constexpr (std::is_pointer_v<T>) {
      using Pointee = std::remove_pointer_t<T>;
      if (value.IsEmpty()) return nullptr;
      Object* object = value.ToObject().get();
      if (object == nullptr) return nullptr;
      auto* typed = dynamic_cast<Pointee*>(object);
      if (typed == nullptr) throw Error(kTypeMismatch);
      return typed;
    } else if constexpr (std::is_enum_v<T>) {
      return static_cast<T>(value.ToLong());
    } else if constexpr (std::is_same_v<T, bool>) {
      return value.ToBoolean();
    } else if constexpr (std::is_same_v<T, int16_t>) {
      return value.ToShort();
    } else if constexpr (std::is_same_v<T, int32_t>) {
      return value.ToLong();
    } else if constexpr (std::is_same_v<T, float>) {
      return value.ToSingle();
    } else if constexpr (std::is_same_v<T, double>) {
      return value.ToDouble();
    } else if constexpr (std::is_same_v<T, Currency>) {
      return value.ToCurrency();
    } else {
      static_assert(std::is_same_v<T, Date>, "not a type that automation can pass");
      return value.ToDate();
    }
  }
  T value_;
};

template <>
class Converted<Text> {
 public:
  Converted(const Variant& value) : text_(value.If<Text>()) {
    if (text_ != nullptr) return;
    converted_ = value.ToText();
    text_ = &converted_;
  }
  Converted(const Converted&) = delete;
  const Text& get() const { return *text_; }

 private:
  const Text* text_;
  Text converted_;
};

template <>
class Converted<Variant> {
 public:
  Converted(const Variant& value) : value_(value) {}
  const Variant& get() const { return value_; }

 private:
  const Variant& value_;
};

template <class T>
Converted<std::remove_cvref_t<T>> ConvertArgument(const Variant& value, int index) {
  return ForArgument(index, [&] { return Converted<std::remove_cvref_t<T>>(value); });
}

template <class Result>
Variant ToVariant(Result&& result) {
  using Plain = std::remove_cvref_t<Result>;
  if constexpr (std::is_enum_v<Plain>) {
    return Variant(static_cast<int32_t>(result));
  } else if constexpr (IsRef<Plain>::value) {
    return Variant(Ref<Object>(result));
  } else {
    return Variant(std::forward<Result>(result));
  }
}

template <class Member>
struct Signature;
template <class Class, class Result, class... Params>
struct Signature<Result (Class::*)(Params...)> {
  static constexpr size_t kCount = sizeof...(Params);
  static TypeInfo ResultType() { return TypeOf<Result>(); }
  static std::vector<ParameterInfo> Parameters() {
    return {ParameterInfo{nullptr, TypeOf<Params>(), false, {}, false}...};
  }

  template <auto kMember>
  static Variant Call(Object& object, const Variant* arguments) {
    return CallWith<kMember>(object, arguments, std::index_sequence_for<Params...>());
  }

 private:
  template <auto kMember, size_t... kIndex>
  static Variant CallWith(Object& object, [[maybe_unused]] const Variant* arguments,
                          std::index_sequence<kIndex...>) {
    auto& self = static_cast<Class&>(object);
    const auto call = [&]() -> Result {
      return (self.*kMember)(
          ConvertArgument<Params>(arguments[kIndex], static_cast<int>(kIndex)).get()...);
    };
    if constexpr (std::is_void_v<Result>) {
      call();
      return {};
    } else {
      return ToVariant(call());
    }
  }
};
template <class Class, class Result, class... Params>
struct Signature<Result (Class::*)(Params...) const> : Signature<Result (Class::*)(Params...)> {};

}  // namespace detail

}  // namespace vndoc6::automation
