// Copies of steps and links to read from. Reading builds what a document keeps as text; of a copy
// that goes again, so that a large document can be read step by step in little more than its own
// memory.
#pragma once

#include "model.h"

namespace vndoc6::drawing {

Ref<vnStep> CopyToRead(vnStep& step);
Ref<vnLink> CopyToRead(vnLink& link);

}  // namespace vndoc6::drawing
