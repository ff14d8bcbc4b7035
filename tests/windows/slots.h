// The slots of a dual interface, as the type library describes them.
#pragma once

#include "com/com.h"

namespace vndoc6::com {

// The interface with the slots, behind the one for late-bound calls.
inline ComPtr<ITypeInfo> SlotsOf(ITypeInfo& dispatch) {
  HREFTYPE reference = 0;
  ComPtr<ITypeInfo> slots;
  if (SUCCEEDED(dispatch.GetRefTypeOfImplType(static_cast<UINT>(-1), &reference))) {
    dispatch.GetRefTypeInfo(reference, slots.Receive());
  }
  return slots;
}

}  // namespace vndoc6::com
