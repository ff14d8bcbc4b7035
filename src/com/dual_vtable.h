// The virtual method tables of the dual interfaces, made from the member tables.
#pragma once

#include "vndoc6/automation/class_info.h"

namespace vndoc6::com {

// IUnknown, IDispatch and one slot for each row of the member table, in its order. Without a class
// it is IDispatch alone. Lives for ever.
const void* const* DualVtable(const automation::ClassInfo* info);

}  // namespace vndoc6::com
