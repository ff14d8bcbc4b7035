// What a loaded step is not until somebody reads it: everything but its key and its number.
// For the sources of vnStep only.
#pragma once

#include "chart/figure.h"
#include "collections/file.h"
#include "collections/jump.h"
#include "common/lazy.h"
#include "common/properties.h"
#include "process/condition.h"
#include "process/container.h"
#include "process/link.h"
#include "process/step.h"
#include "process/task.h"
#include "process/task_order.h"
#include "titles/title_ref.h"

namespace vndoc6 {

struct vnStep::Content {
  Text label, description, container_key, instructions, form, duration, condition_expression;
  int32_t assign_type = 0;
  int32_t assign_to = 0;
  int32_t table = 0;
  int32_t due_date_type = 0;
  int32_t continue_style = 0;
  bool auto_complete = false;
  common::Lazy<vnTitleRefs> performed_by;
  common::Lazy<vnFiles> files;
  common::Lazy<vnJumps> jumps;
  common::Lazy<automation::Object> fields;
  common::Lazy<vnFigure> figure;
  common::Lazy<vnConditions> conditions;
  common::Lazy<Properties> properties;
  common::Lazy<vnTasks> tasks;
  common::Lazy<Properties> attachments;
  common::Lazy<Properties> dependancies;
  automation::Owned<vnLinks> links;
  automation::Owned<vnContainer> container;
  TaskOrderIndex task_order;
};

}  // namespace vndoc6
