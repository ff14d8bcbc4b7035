// ListenerList: who is told of events. Joining and leaving are safe at any time, from inside an
// event too: a listener that leaves is not called any more, one that joins is called from the next
// event on.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace vndoc6::automation {

template <class Listener>
class ListenerList {
 public:
  // The listener must leave before it is destroyed. Joining twice means being told twice.
  void Add(Listener* listener) { listeners_.push_back(listener); }
  void Remove(Listener* listener) {
    const auto found = std::find(listeners_.begin(), listeners_.end(), listener);
    if (found == listeners_.end()) return;
    if (notifying_ > 0) {
      *found = nullptr;
    } else {
      listeners_.erase(found);
    }
  }
  bool empty() const { return listeners_.empty(); }

  // Calls `notify(listener)` for each listener there was when the event began. What a listener
  // throws ends the event and reaches whoever caused it.
  template <class Notify>
  void ForEach(Notify&& notify) {
    const Notifying guard(*this);
    const size_t count = listeners_.size();
    for (size_t i = 0; i < count; ++i) {
      if (Listener* listener = listeners_[i]) notify(*listener);
    }
  }

 private:
  class Notifying {
   public:
    explicit Notifying(ListenerList& list) : list_(list) { ++list_.notifying_; }
    ~Notifying() {
      if (--list_.notifying_ == 0) std::erase(list_.listeners_, nullptr);
    }
    Notifying(const Notifying&) = delete;
    Notifying& operator=(const Notifying&) = delete;

   private:
    ListenerList& list_;
  };

  std::vector<Listener*> listeners_;
  int notifying_ = 0;
};

}  // namespace vndoc6::automation
