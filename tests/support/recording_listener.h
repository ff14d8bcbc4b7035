// Records the events of a document or a template library as lines: the event's name, the object's
// key where it has one, and the other arguments.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "vndoc6/automation/event_info.h"
#include "vndoc6/automation/late_bound.h"

namespace vndoc6::testing {

class RecordingListener : public automation::EventSink {
 public:
  explicit RecordingListener(automation::EventSource& source) : source_(source) {
    source_.Connect(this);
  }
  ~RecordingListener() override { source_.Disconnect(this); }
  RecordingListener(const RecordingListener&) = delete;
  RecordingListener& operator=(const RecordingListener&) = delete;

  void OnEvent(const automation::EventInfo& event,
               std::span<const automation::Variant> arguments) override {
    std::string line = event.name;
    for (const automation::Variant& argument : arguments) line += " " + Describe(argument);
    lines_.push_back(std::move(line));
  }

  // What was recorded since the last call.
  std::vector<std::string> Take() { return std::exchange(lines_, {}); }

 private:
  static std::string Describe(const automation::Variant& argument) {
    if (!argument.IsObject()) return automation::ToUtf8(argument.ToText());
    if (!argument.ToObject()) return "Nothing";
    automation::Object& object = *argument.ToObject();
    if (object.FindMember(u"Key") == automation::kNoMember) return std::string(object.TypeName());
    return automation::ToUtf8(automation::Get(object, u"Key").ToText());
  }

  automation::EventSource& source_;
  std::vector<std::string> lines_;
};

}  // namespace vndoc6::testing
