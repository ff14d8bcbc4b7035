// What the runtime that the compiler links into the DLL leaves behind in a host that unloads it.
#pragma once

namespace vndoc6::com {

// Gives back what the runtime holds. Nothing of the DLL may raise an exception afterwards: call it
// last, and only when the process goes on without the DLL.
void ReleaseCompilerRuntime();

}  // namespace vndoc6::com
