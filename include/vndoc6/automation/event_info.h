// EventInfo: what is published of an event interface, as data, and the late-bound side of events.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "vndoc6/automation/class_info.h"

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
  const void* event = nullptr;  // which of the native listener's functions it is
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

}  // namespace vndoc6::automation
