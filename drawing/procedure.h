// A document as an account of it reads: its steps by number, and what leads from one to another.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "model.h"

namespace vndoc6::drawing {

// Calls `visit` with each member of a collection, in order.
template <class Collection, class Visit>
void ForEach(const Ref<Collection>& collection, Visit&& visit) {
  for (int32_t i = 1; i <= collection->Count(); ++i) visit(*collection->Item(Variant(i)));
}

Ref<vnContainers> ContainersOf(vnDocument& document);

// Links are held, not read: a copy is read where it is told of.
struct Procedure {
  explicit Procedure(vnDocument& document);

  struct Outgoing {
    Ref<vnLink> link;
    size_t to;
  };

  std::vector<Ref<vnStep>> steps;  // the step at place n is the n-th less one
  std::vector<size_t> order;       // places of steps, from 1 on, by number; without one come last
  std::unordered_map<Text, size_t> place_of;
  std::vector<Text> container_of;
  std::vector<std::vector<Outgoing>> outgoing;  // by place
  std::vector<Ref<vnLink>> loose;               // that lack a step
};

}  // namespace vndoc6::drawing
