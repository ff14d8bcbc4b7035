// What a host's interface pointer to a face points to.
#pragma once

#include "automation/slots_windows.h"

namespace vndoc6::com {

class Face;

struct FaceHead : automation::DualHead {
  Face* face;
};

}  // namespace vndoc6::com
