#include "procedure.h"
#include "vndoc6/content/walk.h"

#include <algorithm>
#include <limits>

namespace vndoc6::drawing {

Ref<vnContainers> ContainersOf(vnDocument& document) {
  return static_cast<vnContainers*>(document.Containers().ToObject().get());
}

Procedure::Procedure(vnDocument& document) {
  ForEach(document.Steps(), [this](vnStep& step) {
    steps.emplace_back(&step);
    place_of.emplace(step.Key(), steps.size());
    container_of.push_back(step.ContainerKey());
    order.push_back(steps.size());
  });
  const auto number = [this](size_t place) {
    const int32_t index = steps[place - 1]->StepIndex();
    return index > 0 ? index : std::numeric_limits<int32_t>::max();
  };
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t a, size_t b) { return number(a) < number(b); });
  outgoing.resize(steps.size() + 1);
  ForEach(document.Links(), [this](vnLink& link) {
    const PassingRead reading(link);
    const auto from = place_of.find(link.OriginStepKey());
    const auto to = place_of.find(link.DestinationStepKey());
    if (from == place_of.end() || to == place_of.end()) {
      loose.emplace_back(&link);
    } else {
      outgoing[from->second].push_back({&link, to->second});
    }
  });
}

}  // namespace vndoc6::drawing
