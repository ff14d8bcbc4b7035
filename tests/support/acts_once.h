// A host's handler that does something the first time it hears of one kind of event.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "vndoc6/automation/event_info.h"

namespace vndoc6::testing {

class ActsOnce : public automation::EventSink {
 public:
  ActsOnce(automation::EventSource& source, std::string event, std::function<void()> act)
      : source_(source), event_(std::move(event)), act_(std::move(act)) {
    source_.Connect(this);
  }
  ~ActsOnce() override { source_.Disconnect(this); }
  ActsOnce(const ActsOnce&) = delete;
  ActsOnce& operator=(const ActsOnce&) = delete;

  void OnEvent(const automation::EventInfo& event,
               std::span<const automation::Variant> /*arguments*/) override {
    if (!act_ || event_ != event.name) return;
    std::exchange(act_, nullptr)();
  }
  bool acted() const { return !act_; }

 private:
  automation::EventSource& source_;
  std::string event_;
  std::function<void()> act_;
};

}  // namespace vndoc6::testing
