// The code that a slot of a dual interface points to. There are such interfaces on Windows only:
// this is where the model's code differs between platforms, and the only place.
#pragma once

#ifdef _WIN32

#include "automation/slots_windows.h"

#else

namespace vndoc6::automation {

// Calls `kMember` as the published interface does; kByReference tells for each parameter whether
// it is a Variant passed by reference.
template <auto kMember, bool... kByReference>
const void* VtableEntry() {
  return nullptr;
}

}  // namespace vndoc6::automation

#endif
