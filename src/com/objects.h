// Objects crossing the door: the model's become COM objects, the hosts' become Objects.
#pragma once

#include "com/com.h"
#include "vndoc6/automation/object.h"

namespace vndoc6::com {

// What a host receives for an object: its face, the platform's own font or picture, or the host's
// object it stands for. Raises error 481 for a picture whose bytes are no image.
ComPtr<IDispatch> ExportObject(automation::Object& object);

// Enumerators are given out as IEnumVARIANT, not as dispatch objects.
bool IsEnumerator(const automation::Object& object);
ComPtr<IUnknown> ExportEnumerator(automation::Object& enumerator);

// The Object behind what a host passes: the model's own for a face, a Font or Picture for the
// platform's, an Enumerator for an IEnumVARIANT, a ForeignObject for all others; null for null.
automation::Ref<automation::Object> ImportObject(IUnknown* object);

}  // namespace vndoc6::com
