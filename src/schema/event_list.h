// EventList: who is told of a source's events, native listeners and late-bound sinks in the order
// in which they joined. Joining and leaving are safe at any time, from inside an event too: who
// leaves is not told any more, who joins is told from the next event on.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "schema/event_rows.h"

namespace vndoc6::schema {

template <class Listener, const automation::EventInterfaceInfo& (*kEvents)()>
class EventList {
 public:
  // Whoever joins must leave before it is destroyed. Joining twice means being told twice.
  void Add(Listener* listener) { members_.push_back({listener, nullptr}); }
  void Remove(Listener* listener) { Leave({listener, nullptr}); }
  void Connect(automation::EventSink* sink) {
    if (sink != nullptr) members_.push_back({nullptr, sink});
  }
  void Disconnect(automation::EventSink* sink) { Leave({nullptr, sink}); }
  bool empty() const { return members_.empty(); }

  // Tells all those there were when the event began. What one of them throws ends the event and
  // reaches whoever caused it.
  template <auto kEvent, class... Args>
  void Raise(Args&... args) {
    const Raising guard(*this);
    const size_t count = members_.size();
    for (size_t i = 0; i < count; ++i) {
      const Member member = members_[i];
      if (member.listener != nullptr) {
        (member.listener->*kEvent)(args...);
      } else if (member.sink != nullptr) {
        const std::vector<automation::Variant> packed{detail::EventArgument(args)...};
        member.sink->OnEvent(EventOf<kEvent>(kEvents()), packed);
      }
    }
  }

 private:
  // One of the two; neither for one that left while an event was raised.
  struct Member {
    Listener* listener = nullptr;
    automation::EventSink* sink = nullptr;
    friend bool operator==(const Member&, const Member&) = default;
  };
  class Raising {
   public:
    explicit Raising(EventList& list) : list_(list) { ++list_.raising_; }
    ~Raising() {
      if (--list_.raising_ == 0) std::erase(list_.members_, Member());
    }
    Raising(const Raising&) = delete;
    Raising& operator=(const Raising&) = delete;

   private:
    EventList& list_;
  };

  void Leave(const Member& member) {
    const auto found = std::find(members_.begin(), members_.end(), member);
    if (found == members_.end()) return;
    if (raising_ > 0) {
      *found = {};
    } else {
      members_.erase(found);
    }
  }

  std::vector<Member> members_;
  int raising_ = 0;
};

}  // namespace vndoc6::schema
