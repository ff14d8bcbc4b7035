// How an event source connects sinks: each gets a native listener that forwards to it.
#pragma once

#include <algorithm>
#include <memory>
#include <vector>

#include "automation/event_info.h"
#include "automation/listeners.h"

namespace vndoc6::automation {

template <class Forwarder>
using SinkForwarders = std::vector<std::unique_ptr<Forwarder>>;

template <class Forwarder, class Listener>
void ConnectSink(EventSink& sink, SinkForwarders<Forwarder>& forwarders,
                 ListenerList<Listener>& listeners) {
  // Both lists or none, should memory run out.
  forwarders.reserve(forwarders.size() + 1);
  auto forwarder = std::make_unique<Forwarder>(sink);
  listeners.Add(forwarder.get());
  forwarders.push_back(std::move(forwarder));
}

// Nothing happens for a sink that is not connected.
template <class Forwarder, class Listener>
void DisconnectSink(const EventSink* sink, SinkForwarders<Forwarder>& forwarders,
                    ListenerList<Listener>& listeners) {
  const auto found = std::find_if(forwarders.begin(), forwarders.end(),
                                  [&](const auto& forwarder) { return forwarder->sink() == sink; });
  if (found == forwarders.end()) return;
  listeners.Remove(found->get());
  forwarders.erase(found);
}

}  // namespace vndoc6::automation
