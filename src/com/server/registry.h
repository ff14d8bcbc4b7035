// The registry entries by which COM finds the DLL's classes, interfaces and type library.
#pragma once

#include "com/com.h"

namespace vndoc6::com {

enum class Scope { kMachine, kUser };

// Writes the entries for the DLL where it lies. On a failure those written already are removed.
HRESULT RegisterModule(Scope scope);
// Removes them, nothing else and nothing less, but leaves the programmatic identifiers while the
// DLL of the other bitness is registered, too. Entries that are not there are no failure.
HRESULT UnregisterModule(Scope scope);

}  // namespace vndoc6::com
