// What the drawing reads of the model: its public classes.
#pragma once

#include "automation/services.h"
#include "bag/properties.h"
#include "chart/chart.h"
#include "chart/figure.h"
#include "chart/line.h"
#include "details/details.h"
#include "details/revision.h"
#include "document/document.h"
#include "process/condition.h"
#include "process/container.h"
#include "process/file.h"
#include "process/jump.h"
#include "process/link.h"
#include "process/steps.h"
#include "process/task.h"
#include "titles/title_ref.h"

namespace vndoc6::drawing {

using automation::Make;
using automation::Ref;
using automation::Variant;

}  // namespace vndoc6::drawing
