// The most frequent late-bound calls: gets and puts of plain values and texts, with an argument
// that has the property's own type already. They go to the slot of the dual interface as an
// early-bound call would, without a Variant of the library's between the caller's VARIANT and the
// member.
#pragma once

#include <optional>

#include "automation/slots_windows.h"
#include "com/com.h"

namespace vndoc6::com {

// The call's answer; nothing when the call is not of that kind and has not been made.
std::optional<HRESULT> CallDirectly(automation::DualHead& self, DISPID id, WORD flags,
                                    const DISPPARAMS& params, VARIANT* result,
                                    EXCEPINFO* exception) noexcept;

}  // namespace vndoc6::com
