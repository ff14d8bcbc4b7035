// What was raised becomes the host's error, and the other way, at one place.
#pragma once

#include "automation/guard.h"
#include "com/com.h"

namespace vndoc6::com {

// A raised error as hosts receive it.
struct Fault {
  HRESULT scode = E_UNEXPECTED;  // 0x800A0000 + the automation error's number
  // What IDispatch::Invoke answers when the call did not reach the member; S_OK when it did.
  HRESULT binding = S_OK;
  int argument = -1;  // the parameter at fault, 0 = first; negative when it is none
  OwnedBstr description;
  OwnedBstr source;
};

// The exception being handled; call inside a catch block.
Fault CaughtFault() noexcept;

// Makes the fault the thread's error object, which the caller of a vtable method asks for, and
// gives its code.
HRESULT SetErrorObject(Fault fault, REFIID iid) noexcept;

// What IDispatch::Invoke answers for a fault of the member.
HRESULT ReportException(Fault fault, EXCEPINFO* exception) noexcept;
// The same for a slot of a dual interface that failed with `scode` and left an error object.
HRESULT ReportErrorObject(HRESULT scode, EXCEPINFO* exception) noexcept;

// Runs `body`, which gives an HRESULT; what it raises gives its code.
template <class Body>
HRESULT Enter(Body&& body) noexcept {
  return automation::Guarded(body, [] { return CaughtFault().scode; });
}

// The other way: raises what a foreign object's failed call says. `exception` is what Invoke filled
// in, null for other calls.
[[noreturn]] void RaiseFailure(HRESULT code, EXCEPINFO* exception = nullptr);
inline void Check(HRESULT code) {
  if (FAILED(code)) RaiseFailure(code);
}

}  // namespace vndoc6::com
