// The procedure as a graph: its steps in the order of their numbers, and where the links lead.
#pragma once

#include <unordered_map>
#include <vector>

#include "command.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"

namespace vndoc {

using vndoc6::vnLink;
using vndoc6::vnStep;

struct FlowLink {
  Ref<vnLink> link;
  size_t target;  // position in Flow::steps
};

struct FlowStep {
  Ref<vnStep> step;
  std::vector<FlowLink> links;  // that lead to another step
  int arriving = 0;             // links of other steps that lead here
};

struct Flow {
  std::vector<FlowStep> steps;
  std::vector<Ref<vnLink>> dangling;  // links without a step at one of their ends
  std::unordered_map<Text, size_t> by_key;

  explicit Flow(vnDocument& document);
  // Where the procedure begins: the first step, and those that no other leads to.
  std::vector<size_t> Beginnings() const;
  // The steps that can't be reached from any beginning.
  std::vector<size_t> Unreachable() const;
};

}  // namespace vndoc
