// What a loaded step is not until somebody reads it: everything but its key and its number.
// For the sources of vnStep only.
#pragma once

#include <string_view>
#include <tuple>

#include "core/scope.h"
#include "process/task_order.h"
#include "schema/rows.h"
#include "vndoc6/bag/lazy.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/core/detail_id.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/step.h"
#include "vndoc6/process/task.h"
#include "vndoc6/titles/title_ref.h"

namespace vndoc6 {

// Reported as step changes. The numbers are those of vndTop and vndWidth: hosts tell them from
// figure changes by knowing that a step has neither.
inline constexpr int32_t kDescriptionDetail = 2;
inline constexpr int32_t kContainerKeyDetail = 3;

struct vnStep::Content : Values, bag::Carrier {
  bag::Lazy<vnTitleRefs> performed_by;
  bag::Lazy<vnFiles> files;
  bag::Lazy<vnJumps> jumps;
  bag::Lazy<automation::Object> fields;
  bag::Lazy<vnFigure> figure;
  bag::Lazy<vnConditions> conditions;
  bag::Lazy<Properties> properties;
  bag::Lazy<vnTasks> tasks;
  bag::Lazy<Properties> attachments;
  bag::Lazy<Properties> dependancies;
  automation::Owned<vnLinks> links;
  automation::Owned<vnContainer> container;
  TaskOrderIndex task_order;
};

// What is known of the step's members.
struct vnStep::Schema {
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{

        property<&vnStep::Container, &vnStep::SetContainer>("Container", "poContainer")
            .not_content("leads back to the owner"),
        property<&vnStep::Document, &vnStep::SetDocument>("Document", "poDocument")
            .not_content("leads back to the root"),
        property<&vnStep::Figure>("Figure").field(&Content::figure, "Fig"),
        property<&vnStep::Key>("Key").identity(&vnStep::key_, "K"),
        property<&vnStep::Label, &vnStep::SetLabel>("Label", "psLabel")
            .field(&Values::label, "L")
            .reports(vndLabel, kWhenChanged),
        property<&vnStep::Description, &vnStep::SetDescription>("Description", "psDescription")
            .field(&Values::description, "D")
            .reports(kDescriptionDetail, kWhenChanged),

        // Reported on every put, equal or not: hosts redraw the group on it.
        property<&vnStep::ContainerKey, &vnStep::SetContainerKey>("ContainerKey", "psContainerKey")
            .field(&Values::container_key, "CK")
            .reports(kContainerKeyDetail),
        property<&vnStep::StepIndex, &vnStep::SetStepIndex>("StepIndex", "plStepIndex")
            .field(&vnStep::step_index_, "SI")
            .departs(kReadAtOnce),
        property<&vnStep::Conditions, &vnStep::SetConditions>("Conditions", "poConditions")
            .field(&Content::conditions, "C"),
        property<&vnStep::GetProperties, &vnStep::SetProperties>("Properties", "poProperties")
            .field(&Content::properties, "P"),
        property<&vnStep::Tasks, &vnStep::SetTasks>("Tasks", "poTasks").field(&Content::tasks, "T"),
        property<&vnStep::Files>("Files").field(&Content::files, "FL"),
        property<&vnStep::Jumps>("Jumps").field(&Content::jumps, "J"),
        property<&vnStep::Links>("Links").not_content(
            "a working list of what stands in the document's links"),
        property<&vnStep::PerformedBy>("PerformedBy").field(&Content::performed_by, "PB"),
        property<&vnStep::Fields>("Fields").field(&Content::fields, "Fd"),
        property<&vnStep::Instructions, &vnStep::SetInstructions>("Instructions", "psInstructions")
            .field(&Values::instructions, "INS"),
        property<&vnStep::AssignType, &vnStep::SetAssignType>("AssignType", "plAssignType")
            .field(&Values::assign_type, "AT"),
        property<&vnStep::AssignTo, &vnStep::SetAssignTo>("AssignTo", "plAssignTo")
            .field(&Values::assign_to, "ATo"),
        property<&vnStep::Table, &vnStep::SetTable>("Table", "plTable")
            .field(&Values::table, "TBL"),
        property<&vnStep::Form, &vnStep::SetForm>("Form", "psForm").field(&Values::form, "F"),
        property<&vnStep::DueDateType, &vnStep::SetDueDateType>("DueDateType", "plDueDateType")
            .field(&Values::due_date_type, "DDT"),
        property<&vnStep::Duration, &vnStep::SetDuration>("Duration", "psDuration")
            .field(&Values::duration, "DUR"),
        property<&vnStep::AutoComplete, &vnStep::SetAutoComplete>("AutoComplete", "pbAutoComplete")
            .field(&Values::auto_complete, "AC"),
        property<&vnStep::Attachments, &vnStep::SetAttachments>("Attachments", "poAttachments")
            .field(&Content::attachments, "Attach"),
        property<&vnStep::ConditionExpression, &vnStep::SetConditionExpression>(
            "ConditionExpression", "psConditionExpression")
            .field(&Values::condition_expression, "CE"),
        property<&vnStep::Dependancies>("Dependancies")
            .field(&Content::dependancies, "DP")
            .departs(kOnlyWhenThere),
        method<&vnStep::Save>("Save"),
        method<&vnStep::Load>("Load", "psLoad", optional("psKey", u"")),
        method<&vnStep::NewCondition>("NewCondition", "psDisplayName", "psCondition"),
        method<&vnStep::RemoveCondition>("RemoveCondition", "psKey"),
        method<&vnStep::NewTask>("NewTask"),
        method<&vnStep::RemoveTask>("RemoveTask", "psKey"),
        method<&vnStep::AddLink>("AddLink", "poLink"),
        property<&vnStep::ContinueStyle, &vnStep::SetContinueStyle>("ContinueStyle",
                                                                    "plContinueStyle")
            .field(&Values::continue_style, "CS"),

    };
  }();
  // In every file: never change it.
  static constexpr std::string_view kFileOrder[] = {
      "PB", "D",   "L",  "SI", "K",  "CK", "INS", "AT", "ATo",    "TBL", "F",  "DDT", "DUR",
      "AC", "Fig", "FL", "J",  "Fd", "C",  "P",   "T",  "Attach", "CE",  "DP", "CS"};
};

}  // namespace vndoc6
