#include "vndoc6/process/step_member.h"

#include "vndoc6/process/steps.h"

namespace vndoc6 {

automation::Ref<vnStep> StepMember::Step() const { return step_.get(); }

void StepMember::SetStep(vnStep* poStep) {
  step_ = poStep;
  ParentChanged();
}

vnStep* StepMember::step() const { return step_.get(); }

automation::Object* StepMember::FindParent() const { return OwnerOrDocument(step_.get()); }

}  // namespace vndoc6
