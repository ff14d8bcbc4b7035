// What is published of vnStep.
#include "process/step.h"

#include "automation/describe.h"
#include "bag/properties.h"
#include "chart/figure.h"
#include "document/document.h"
#include "process/condition.h"
#include "process/container.h"
#include "process/file.h"
#include "process/jump.h"
#include "process/link.h"
#include "process/task.h"
#include "titles/title_ref.h"

namespace vndoc6 {

const automation::ClassInfo& vnStep::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnStep>(
      "vnStep", "One step of the procedure.",
      {0x5C2E4B12, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x12}},
      {0x5C2E4B13, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x13}},
      {
          get<&vnStep::Container>("Container"),
          putref<&vnStep::SetContainer>("Container", "poContainer"),
          get<&vnStep::Document>("Document"),
          putref<&vnStep::SetDocument>("Document", "poDocument"),
          get<&vnStep::Figure>("Figure"),
          get<&vnStep::Key>("Key"),
          get<&vnStep::Label>("Label"),
          put<&vnStep::SetLabel>("Label", "psLabel"),
          get<&vnStep::Description>("Description"),
          put<&vnStep::SetDescription>("Description", "psDescription"),
          get<&vnStep::ContainerKey>("ContainerKey"),
          put<&vnStep::SetContainerKey>("ContainerKey", "psContainerKey"),
          get<&vnStep::StepIndex>("StepIndex"),
          put<&vnStep::SetStepIndex>("StepIndex", "plStepIndex"),
          get<&vnStep::Conditions>("Conditions"),
          putref<&vnStep::SetConditions>("Conditions", "poConditions"),
          get<&vnStep::GetProperties>("Properties"),
          putref<&vnStep::SetProperties>("Properties", "poProperties"),
          get<&vnStep::Tasks>("Tasks"),
          putref<&vnStep::SetTasks>("Tasks", "poTasks"),
          get<&vnStep::Files>("Files"),
          get<&vnStep::Jumps>("Jumps"),
          get<&vnStep::Links>("Links"),
          get<&vnStep::PerformedBy>("PerformedBy"),
          get<&vnStep::Fields>("Fields"),
          get<&vnStep::Instructions>("Instructions"),
          put<&vnStep::SetInstructions>("Instructions", "psInstructions"),
          get<&vnStep::AssignType>("AssignType"),
          put<&vnStep::SetAssignType>("AssignType", "plAssignType"),
          get<&vnStep::AssignTo>("AssignTo"),
          put<&vnStep::SetAssignTo>("AssignTo", "plAssignTo"),
          get<&vnStep::Table>("Table"),
          put<&vnStep::SetTable>("Table", "plTable"),
          get<&vnStep::Form>("Form"),
          put<&vnStep::SetForm>("Form", "psForm"),
          get<&vnStep::DueDateType>("DueDateType"),
          put<&vnStep::SetDueDateType>("DueDateType", "plDueDateType"),
          get<&vnStep::Duration>("Duration"),
          put<&vnStep::SetDuration>("Duration", "psDuration"),
          get<&vnStep::AutoComplete>("AutoComplete"),
          put<&vnStep::SetAutoComplete>("AutoComplete", "pbAutoComplete"),
          get<&vnStep::Attachments>("Attachments"),
          putref<&vnStep::SetAttachments>("Attachments", "poAttachments"),
          get<&vnStep::ConditionExpression>("ConditionExpression"),
          put<&vnStep::SetConditionExpression>("ConditionExpression", "psConditionExpression"),
          get<&vnStep::Dependancies>("Dependancies"),
          method<&vnStep::Save>("Save"),
          method<&vnStep::Load>("Load", "psLoad", optional("psKey", u"")),
          method<&vnStep::NewCondition>("NewCondition", "psDisplayName", "psCondition"),
          method<&vnStep::RemoveCondition>("RemoveCondition", "psKey"),
          method<&vnStep::NewTask>("NewTask"),
          method<&vnStep::RemoveTask>("RemoveTask", "psKey"),
          method<&vnStep::AddLink>("AddLink", "poLink"),
          get<&vnStep::ContinueStyle>("ContinueStyle"),
          put<&vnStep::SetContinueStyle>("ContinueStyle", "plContinueStyle"),
      });
  return info;
}

}  // namespace vndoc6
