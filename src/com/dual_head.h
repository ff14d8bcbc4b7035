// What a host's interface pointer to an object of the model points to.
#pragma once

#include "automation/object.h"

namespace vndoc6::com {

class Face;

struct DualHead {
  const void* const* vtable;  // must be first: this is what makes it an interface pointer
  automation::Object* object;
  Face* face;
};

}  // namespace vndoc6::com
