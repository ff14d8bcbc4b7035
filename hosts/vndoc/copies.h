// Visiting copies of steps and links, for what drawing/copies.h says.
#pragma once

#include "command.h"
#include "drawing/copies.h"
#include "objects.h"
#include "vndoc6/content/walk.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"

namespace vndoc {

using vndoc6::vnLink;
using vndoc6::vnStep;

using vndoc6::drawing::CopyToRead;

// Visits copies of a document's steps and links in their place.
class FrugalVisitor : public vndoc6::ContentVisitor {
 public:
  Ref<Object> ObjectToVisit(Object& member) override;
};

}  // namespace vndoc
