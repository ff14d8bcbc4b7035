// The type library that the DLL carries, read from there and not from the registry, so that it is
// always the one the DLL was built with.
#pragma once

#include "com/com.h"

namespace vndoc6::com {

// The DLL's full path.
Text ModulePath();

// The library; null when this module carries none.
ComPtr<ITypeLib> TypeLibrary();

// The description of a class or interface of the library, the caller's to release.
HRESULT FindTypeInfo(const GUID& guid, ITypeInfo** type_info) noexcept;

// Lets go of the library before the DLL is unloaded; it is read again when it is asked for.
void ForgetTypeLibrary();

}  // namespace vndoc6::com
