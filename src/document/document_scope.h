// The document as its parts see it: for the sources of vnDocument only.
#pragma once

#include "core/scope.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {

class vnDocument::OwnScope final : public Scope {
 public:
  explicit OwnScope(vnDocument& document) : document_(document) {}

  automation::Ref<automation::Object> Root() override { return &document_; }
  vnSteps& Steps() override;
  vnFiles& Files() override;
  vnJumps& Jumps() override;
  vnTitles& Titles() override;
  vnRevisions& RevisionHistory() override;
  Properties* Settings() override;
  automation::Ref<automation::Object> Database() override { return document_.Database(); }
  int32_t IR() override { return document_.IR(); }
  void IncrementIR() override;
  bool IsAssignmentUnlocked() const override { return document_.assignment_unlocked_; }

 private:
  vnDocument& document_;
};

}  // namespace vndoc6
