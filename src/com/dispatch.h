// IDispatch of the model's objects, from their member tables.
#pragma once

#include "automation/slots_windows.h"
#include "com/com.h"

namespace vndoc6::com {

// The identifiers of a member, the first name, and of its parameters, the others. Letter case does
// not matter; unknown names get DISPID_UNKNOWN.
HRESULT GetIdsOfNames(automation::Object& object, LPOLESTR* names, UINT count,
                      DISPID* ids) noexcept;

// A late-bound call of the interface's object. What did not reach the member answers
// DISP_E_MEMBERNOTFOUND, DISP_E_BADPARAMCOUNT, DISP_E_TYPEMISMATCH, ...; what the member raised
// DISP_E_EXCEPTION.
HRESULT InvokeMember(const automation::DualHead& self, DISPID id, WORD flags,
                     const DISPPARAMS& params, VARIANT* result, EXCEPINFO* exception,
                     UINT* argument_at_fault) noexcept;

}  // namespace vndoc6::com
