// StepMember: what the objects below a step have in common.
#pragma once

#include "vndoc6/core/member.h"

namespace vndoc6 {

class vnStep;

class StepMember : public Member {
 public:
  // The step this object belongs to; Nothing for one that belongs to none, or whose step is gone.
  automation::Ref<vnStep> Step() const;
  void SetStep(vnStep* poStep);

 protected:
  friend struct Inside;
  vnStep* step() const;

  automation::Object* FindParent() const override;

 private:
  automation::Weak<vnStep> step_;
};

}  // namespace vndoc6
