#include "process/step_numbers.h"

#include <algorithm>

namespace vndoc6 {

void StepNumbers::Add(int32_t number, vnStep& step) {
  Bearers& bearers = bearers_[number];
  ++bearers.count;
  bearers.combined ^= reinterpret_cast<uintptr_t>(&step);
  highest_ = std::max(highest_, number);
}

void StepNumbers::Remove(int32_t number, vnStep& step) {
  const auto found = bearers_.find(number);
  if (found == bearers_.end()) return;
  found->second.combined ^= reinterpret_cast<uintptr_t>(&step);
  if (--found->second.count > 0) return;
  bearers_.erase(found);
  if (number == highest_) LowerHighest();
}

uint32_t StepNumbers::Count(int32_t number) const {
  const auto found = bearers_.find(number);
  return found != bearers_.end() ? found->second.count : 0;
}

vnStep* StepNumbers::Only(int32_t number) const {
  const auto found = bearers_.find(number);
  if (found == bearers_.end() || found->second.count != 1) return nullptr;
  return reinterpret_cast<vnStep*>(found->second.combined);
}

void StepNumbers::LowerHighest() {
  // Numbers run without gaps nearly always, so the next one down is in use. Where they don't, a
  // look at all of them is quicker than counting down.
  for (size_t tries = 0; tries < bearers_.size() && highest_ > 0; ++tries) {
    if (bearers_.count(--highest_) > 0) return;
  }
  highest_ = 0;
  for (const auto& [number, bearers] : bearers_) highest_ = std::max(highest_, number);
}

}  // namespace vndoc6
