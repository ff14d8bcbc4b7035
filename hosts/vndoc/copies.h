// Copies of steps and links to read from. Reading builds what a document keeps as text; of a copy
// that goes again, so that a large document can be read step by step in little more than its own
// memory.
#pragma once

#include "command.h"
#include "content/walk.h"
#include "objects.h"
#include "process/link.h"
#include "process/steps.h"

namespace vndoc {

using vndoc6::vnLink;
using vndoc6::vnStep;

Ref<vnStep> CopyToRead(vnStep& step);
Ref<vnLink> CopyToRead(vnLink& link);

// Visits copies of a document's steps and links in their place.
class FrugalVisitor : public vndoc6::ContentVisitor {
 public:
  Ref<Object> ObjectToVisit(Object& member) override;
};

}  // namespace vndoc
