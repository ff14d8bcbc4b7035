// How an event interface says what is published of its events: one row each, in the order of the
// interface. The row names the native listener's function, so that raising an event packs its
// arguments by it.
#pragma once

#include <algorithm>
#include <type_traits>
#include <vector>

#include "schema/signature.h"
#include "vndoc6/automation/event_info.h"

namespace vndoc6::schema {

// An event's argument that is passed by value; all others are passed by reference.
struct by_value {
  const char* name;
};

namespace detail {

inline automation::EventParameter NamedEventParameter(const char* name) { return {name, {}, true}; }
inline automation::EventParameter NamedEventParameter(by_value parameter) {
  return {parameter.name, {}, false};
}

// An object argument is a reference in C++, or a pointer where it may be Nothing, and an object to
// automation.
template <class T>
constexpr automation::TypeInfo EventTypeOf() {
  using Plain = std::remove_reference_t<T>;
  if constexpr (std::is_reference_v<T> && std::is_base_of_v<automation::Object, Plain>) {
    return automation::detail::ObjectType<Plain>();
  } else {
    return automation::detail::TypeOf<T>();
  }
}

template <class Listener, class... Params>
std::vector<automation::TypeInfo> EventTypes(void (Listener::*)(Params...)) {
  return {EventTypeOf<Params>()...};
}

// Its address tells one event from another.
template <auto kEvent>
inline constexpr char kEventMark = 0;

template <class T>
automation::Variant EventArgument(T& value) {
  if constexpr (std::is_pointer_v<T>) {
    return automation::Variant(automation::Ref<automation::Object>(value));
  } else if constexpr (std::is_base_of_v<automation::Object, std::remove_const_t<T>>) {
    return automation::Variant(automation::Ref<automation::Object>(&value));
  } else {
    return automation::detail::ToVariant(value);
  }
}

}  // namespace detail

// One row of an event interface: a member function of the native listener.
template <auto kEvent, class... Names>
automation::EventInfo event(int32_t id, const char* name, Names... names) {
  automation::EventInfo info{
      name, id, {detail::NamedEventParameter(names)...}, &detail::kEventMark<kEvent>};
  const std::vector<automation::TypeInfo> types = detail::EventTypes(kEvent);
  if (types.size() != info.parameters.size()) throw automation::Error(automation::kInvalidCall);
  for (size_t i = 0; i < types.size(); ++i) info.parameters[i].type = types[i];
  return info;
}

// The row of a native listener's function; it must have one.
template <auto kEvent>
const automation::EventInfo& EventOf(const automation::EventInterfaceInfo& events) {
  static const automation::EventInfo& info = *std::find_if(
      events.events.begin(), events.events.end(),
      [](const automation::EventInfo& row) { return row.event == &detail::kEventMark<kEvent>; });
  return info;
}

}  // namespace vndoc6::schema
