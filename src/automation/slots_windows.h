// The slots of the dual interfaces: a function with the calling convention and the parameter types
// of COM for each published member, instantiated from the member pointer in its table row. Compiled
// with the classes, so it names the binary forms itself instead of including the platform's
// headers, whose macros would rename things of the model. The door defines what is only declared
// here, and checks the forms against the platform's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

#include "automation/guard.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/font.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/automation/picture.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6::automation {

// What a host's interface pointer to an object of the model points to.
struct DualHead {
  const void* const* vtable;  // must be first: this is what makes it an interface pointer
  Object* object;
};

// A running call. It holds the object as a host does, and with it the DLL: the call may let go of
// the host's last reference.
class Running {
 public:
  explicit Running(const DualHead& self);
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running();
  Object& operator*() const { return object_; }

 private:
  const DualHead& self_;
  Object& object_;
};

namespace abi {

using Code = long;  // HRESULT
inline constexpr Code kOk = 0;

using String = char16_t*;  // BSTR
struct Money {             // CY
  int64_t scaled;
};
struct AnyValue {  // VARIANT
  uint16_t type;
  uint16_t reserved[3];
  union {
    int64_t value;
    void* record[2];
  } content;
};

// A text on its way in. Calls hand its memory on to the next one: putting a text would spend most
// of its time in the allocator otherwise.
class IncomingText {
 public:
  explicit IncomingText(String string);
  IncomingText(const IncomingText&) = delete;
  IncomingText& operator=(const IncomingText&) = delete;
  ~IncomingText();
  const Text& get() const { return *text_; }

 private:
  std::unique_ptr<Text> text_;
};

// Conversions that need the platform.
String WriteString(TextView text);
Variant ReadAny(const AnyValue& value);
void WriteAny(const Variant& value, AnyValue& out);
Ref<Object> ReadObject(void* object);
void* WriteObject(const Ref<Object>& object);
// The exception being handled as the thread's error object; gives its code.
Code ReportFault(const Object& object) noexcept;
// The answer to a call that has no place for its result.
Code RefuseCall() noexcept;

// How a parameter of C++ type T is passed, and held for the member while it runs.
template <class T, bool kByReference = false>
class Received {
 public:
  using Passed = std::conditional_t<std::is_enum_v<T>, int32_t, T>;  // numbers
  Received(Passed value) : value_(static_cast<T>(value)) {}
  T get() const { return value_; }

 private:
  T value_;
};
template <>
class Received<bool> {
 public:
  using Passed = int16_t;  // VARIANT_BOOL
  Received(Passed value) : value_(value != 0) {}
  bool get() const { return value_; }

 private:
  bool value_;
};
template <>
class Received<Currency> {
 public:
  using Passed = Money;
  Received(Passed value) : value_{value.scaled} {}
  Currency get() const { return value_; }

 private:
  Currency value_;
};
template <>
class Received<Date> {
 public:
  using Passed = double;
  Received(Passed value) : value_{value} {}
  Date get() const { return value_; }

 private:
  Date value_;
};
template <>
class Received<Text> {
 public:
  using Passed = String;
  Received(Passed value) : value_(value) {}
  const Text& get() const { return value_.get(); }

 private:
  IncomingText value_;
};
template <bool kByReference>
class Received<Variant, kByReference> {
 public:
  using Passed = std::conditional_t<kByReference, const AnyValue*, AnyValue>;
  Received(const AnyValue& value) : value_(ReadAny(value)) {}
  Received(const AnyValue* value) : value_(value != nullptr ? ReadAny(*value) : Variant()) {}
  const Variant& get() const { return value_; }

 private:
  Variant value_;
};
template <class T>
class Received<T*> {
 public:
  using Passed = void*;
  Received(Passed value) : value_(ReadObject(value)) {
    typed_ = dynamic_cast<T*>(value_.get());
    if (value_ && typed_ == nullptr) throw Error(kTypeMismatch);
  }
  T* get() const { return typed_; }

 private:
  Ref<Object> value_;
  T* typed_;
};

// How a result of C++ type T is given out, by a pointer of the caller's.
template <class T>
struct Given {
  using Out = std::conditional_t<std::is_enum_v<T>, int32_t, T>;  // numbers
  static void Give(T value, Out& out) { out = static_cast<Out>(value); }
};
template <>
struct Given<bool> {
  using Out = int16_t;
  static void Give(bool value, Out& out) { out = value ? -1 : 0; }
};
template <>
struct Given<Currency> {
  using Out = Money;
  static void Give(Currency value, Out& out) { out = {value.scaled}; }
};
template <>
struct Given<Date> {
  using Out = double;
  static void Give(Date value, Out& out) { out = value.days; }
};
template <>
struct Given<Text> {
  using Out = String;
  static void Give(const Text& value, Out& out) { out = WriteString(value); }
};
template <>
struct Given<Variant> {
  using Out = AnyValue;
  static void Give(const Variant& value, Out& out) { WriteAny(value, out); }
};
template <class T>
struct Given<Ref<T>> {
  using Out = void*;
  static void Give(const Ref<T>& value, Out& out) { out = WriteObject(value); }
};
template <class T>
struct Given<T*> {
  using Out = void*;
  static void Give(T* value, Out& out) { out = WriteObject(Ref<Object>(value)); }
};

template <class T>
using Plain = std::remove_cvref_t<T>;
template <class T, bool kByReference>
using Passed = typename Received<Plain<T>, kByReference>::Passed;

// The slot of one member.
template <auto kMember, class Shape, bool... kByReference>
struct Slot;

template <auto kMember, class Class, class Result, class... Params, bool... kByReference>
struct Slot<kMember, Result (Class::*)(Params...), kByReference...> {
  using Out = typename Given<Plain<Result>>::Out;
  static Code __stdcall Call(DualHead* self, Passed<Params, kByReference>... arguments, Out* out) {
    if (out == nullptr) return RefuseCall();
    *out = Out{};
    const Running running(*self);
    return Guarded(
        [&] {
          Given<Plain<Result>>::Give((static_cast<Class&>(*running).*kMember)(
                                         Received<Plain<Params>, kByReference>(arguments).get()...),
                                     *out);
          return kOk;
        },
        [&] { return ReportFault(*running); });
  }
};

template <auto kMember, class Class, class... Params, bool... kByReference>
struct Slot<kMember, void (Class::*)(Params...), kByReference...> {
  static Code __stdcall Call(DualHead* self, Passed<Params, kByReference>... arguments) {
    const Running running(*self);
    return Guarded(
        [&] {
          (static_cast<Class&>(*running).*
           kMember)(Received<Plain<Params>, kByReference>(arguments).get()...);
          return kOk;
        },
        [&] { return ReportFault(*running); });
  }
};

// The member pointer's type without const.
template <class Shape>
struct PlainShape {
  using Type = Shape;
};
template <class Class, class Result, class... Params>
struct PlainShape<Result (Class::*)(Params...) const> {
  using Type = Result (Class::*)(Params...);
};

}  // namespace abi

template <auto kMember, bool... kByReference>
const void* VtableEntry() {
  using Shape = typename abi::PlainShape<decltype(kMember)>::Type;
  return reinterpret_cast<const void*>(&abi::Slot<kMember, Shape, kByReference...>::Call);
}

}  // namespace vndoc6::automation
