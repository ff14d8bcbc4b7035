// What a loaded step is not until somebody reads it: everything but its key and its number.
// For the sources of vnStep only.
#pragma once

#include "bag/lazy.h"
#include "bag/properties.h"
#include "chart/figure.h"
#include "process/condition.h"
#include "process/container.h"
#include "process/file.h"
#include "process/jump.h"
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

}  // namespace vndoc6
