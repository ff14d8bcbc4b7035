#include "process/step_member.h"

#include "process/steps.h"

namespace vndoc6 {

automation::Ref<vnStep> StepMember::Step() const { return step_.get(); }

void StepMember::SetStep(vnStep* poStep) {
  step_ = poStep;
  ParentChanged();
}

vnStep* StepMember::InternalStep() const { return step_.get(); }

automation::Object* StepMember::FindParent() const { return OwnerOrDocument(step_.get()); }

}  // namespace vndoc6
