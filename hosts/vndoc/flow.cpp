#include "flow.h"

#include <algorithm>
#include <limits>

#include "objects.h"
#include "vndoc6/content/walk.h"

namespace vndoc {
namespace {

// Steps without a number come last.
int32_t Rank(vnStep& step) {
  return step.StepIndex() > 0 ? step.StepIndex() : std::numeric_limits<int32_t>::max();
}

}  // namespace

Flow::Flow(vnDocument& document) {
  ForEachIn(*document.Steps(), [this](Object& object) {
    steps.push_back({static_cast<vnStep*>(&object), {}});
  });
  std::stable_sort(steps.begin(), steps.end(), [](const FlowStep& left, const FlowStep& right) {
    return Rank(*left.step) < Rank(*right.step);
  });
  for (size_t i = 0; i < steps.size(); ++i) by_key.emplace(steps[i].step->Key(), i);
  ForEachIn(*document.Links(), [this](Object& object) {
    auto& link = static_cast<vnLink&>(object);
    const vndoc6::PassingRead reading(link);
    const auto origin = by_key.find(link.OriginStepKey());
    const auto target = by_key.find(link.DestinationStepKey());
    if (origin == by_key.end() || target == by_key.end()) {
      dangling.push_back(&link);
      return;
    }
    steps[origin->second].links.push_back({&link, target->second});
    if (origin->second != target->second) ++steps[target->second].arriving;
  });
}

std::vector<size_t> Flow::Beginnings() const {
  std::vector<size_t> beginnings;
  for (size_t i = 0; i < steps.size(); ++i) {
    if (i == 0 || steps[i].arriving == 0) beginnings.push_back(i);
  }
  return beginnings;
}

std::vector<size_t> Flow::Unreachable() const {
  std::vector<bool> reached(steps.size());
  std::vector<size_t> waiting = Beginnings();
  while (!waiting.empty()) {
    const size_t position = waiting.back();
    waiting.pop_back();
    if (reached[position]) continue;
    reached[position] = true;
    for (const FlowLink& link : steps[position].links) waiting.push_back(link.target);
  }
  std::vector<size_t> unreachable;
  for (size_t i = 0; i < steps.size(); ++i) {
    if (!reached[i]) unreachable.push_back(i);
  }
  return unreachable;
}

}  // namespace vndoc
