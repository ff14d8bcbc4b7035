// EventInfo: what is published of an event interface, as data, and the late-bound side of events.
#pragma once

#include <cstdint>
#include <span>
#include <type_traits>
#include <vector>

#include "automation/class_info.h"
#include "automation/describe.h"

namespace vndoc6::automation {

struct EventParameter {
  const char* name = nullptr;
  TypeInfo type;
  bool by_reference = true;
};

// Dispatch identifiers and names leave the process: never change one.
struct EventInfo {
  const char* name = nullptr;
  int32_t id = 0;
  std::vector<EventParameter> parameters;
};

struct EventInterfaceInfo {
  const char* name;
  const char* help;
  Guid id;
  std::vector<EventInfo> events;  // in the order of the interface

  const EventInfo& Find(int32_t event_id) const;
};

// Receives events as data; what a COM sink or a script is behind.
class EventSink {
 public:
  virtual ~EventSink() = default;
  // What a sink does to the arguments is not read back.
  virtual void OnEvent(const EventInfo& event, std::span<const Variant> arguments) = 0;
};

// An object that raises events. A sink must be disconnected before it is destroyed; connecting and
// disconnecting are safe from inside an event.
class EventSource {
 public:
  virtual const EventInterfaceInfo& Events() const = 0;
  virtual void Connect(EventSink* sink) = 0;
  virtual void Disconnect(EventSink* sink) = 0;

 protected:
  ~EventSource() = default;
};

// An event's argument that is passed by value; all others are passed by reference.
struct by_value {
  const char* name;
};

namespace detail {

inline EventParameter NamedEventParameter(const char* name) { return {name, {}, true}; }
inline EventParameter NamedEventParameter(by_value parameter) {
  return {parameter.name, {}, false};
}

// An object argument is a reference in C++, or a pointer where it may be Nothing, and an object to
// automation.
template <class T>
constexpr TypeInfo EventTypeOf() {
  if constexpr (std::is_reference_v<T> && std::is_base_of_v<Object, std::remove_reference_t<T>>) {
    return ObjectType<std::remove_reference_t<T>>();
  } else {
    return TypeOf<T>();
  }
}

template <class Listener, class... Params, class... Names>
EventInfo EventRow(void (Listener::*)(Params...), int32_t id, const char* name, Names... names) {
  static_assert(sizeof...(Names) == sizeof...(Params), "every argument needs its published name");
  EventInfo info{name, id, {NamedEventParameter(names)...}};
  const std::vector<TypeInfo> types{EventTypeOf<Params>()...};
  for (size_t i = 0; i < types.size(); ++i) info.parameters[i].type = types[i];
  return info;
}

template <class T>
Variant EventArgument(T& value) {
  if constexpr (std::is_pointer_v<T>) {
    return Variant(Ref<Object>(value));
  } else if constexpr (std::is_base_of_v<Object, T>) {
    return Variant(Ref<Object>(&value));
  } else {
    return ToVariant(value);
  }
}

}  // namespace detail

// One row of an event interface: a member function of the native listener.
template <auto kEvent, class... Names>
EventInfo event(int32_t id, const char* name, Names... names) {
  return detail::EventRow(kEvent, id, name, names...);
}

// Hands an event on to a sink as data.
template <class... Args>
void ForwardEvent(EventSink& sink, const EventInfo& info, Args&... args) {
  const std::vector<Variant> packed{detail::EventArgument(args)...};
  sink.OnEvent(info, packed);
}

}  // namespace vndoc6::automation
