// vnStep's number, and how it moves the others.
#include "vndoc6/process/step.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "automation/inside.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/core/detail_id.h"
#include "vndoc6/process/steps.h"

namespace vndoc6 {

using automation::Ref;

namespace {

constexpr int32_t kHighest = std::numeric_limits<int32_t>::max();

}  // namespace

void vnStep::StoreStepIndex(int32_t step_index) {
  const int32_t previous = std::exchange(step_index_, step_index);
  if (vnSteps* owner = owner_.get()) Inside::NumberChanged(*owner, *this, previous);
}

void vnStep::StoreOwnStepIndex(int32_t step_index) {
  if (step_index == step_index_) return;
  StoreStepIndex(step_index);
  ReportChange(vndStepIndex);
}

void vnStep::SetStepIndex(int32_t plStepIndex) {
  const Ref<vnStep> self(this);
  if (step_index_ == 0) {
    StoreOwnStepIndex(plStepIndex);
  } else if (plStepIndex < 0) {
    TakeOutOfNumbering();
  } else if (plStepIndex > 0) {
    MoveTo(plStepIndex);
  }
}

void vnStep::TakeOutOfNumbering() {
  const Ref<vnSteps> owner(owner_.get());
  const int32_t current = step_index_;
  if (owner && current >= 1 && owner->LastIndex() > current) {
    Inside::ShiftNumbers(*owner, current + 1, kHighest, -1, *this);
  }
  StoreOwnStepIndex(-1);
}

void vnStep::MoveTo(int32_t step_index) {
  const Ref<vnSteps> owner(owner_.get());
  if (!owner) {
    StoreOwnStepIndex(step_index);
    return;
  }
  const int32_t current = step_index_;
  const int32_t last = owner->LastIndex();
  if (current < 1 && last == kHighest) throw automation::Error(automation::kOverflow);
  const int32_t target = std::min(step_index, current < 1 ? last + 1 : last);
  const int32_t other_end = current < 1 ? target : current;
  // A step that comes back from -1 moves the holder of its number down, not up, and so shares the
  // number below: hosts count on it.
  const int32_t move = target <= current ? 1 : -1;
  const auto [low, high] = std::minmax(target, other_end);
  if (Inside::ShiftNumbers(*owner, low, high, move, *this)) StoreOwnStepIndex(target);
}

}  // namespace vndoc6
