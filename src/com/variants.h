// VARIANTs as the library's values and back. Objects cross by objects.h.
#pragma once

#include "com/com.h"
#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6::com {

// What the VARIANT of a plain value or text tells its type by; VT_EMPTY for any other.
VARTYPE PlainType(automation::TypeKind kind);

// The value of a caller's VARIANT, which keeps it. By-reference ones are read through. Integers of
// other widths become the narrowest kind that holds them all, a decimal becomes a Double; arrays,
// records and the like are opaque.
automation::Variant ReadVariant(const VARIANT& value);

// Puts the value into `out`, whose previous content is not released. Raises std::bad_alloc, and
// error 13 for an opaque value.
void WriteVariant(const automation::Variant& value, VARIANT& out);

// A VARIANT that refers to what `value` holds, for as long as that is there.
VARIANT ReferenceTo(VARIANT& value);

}  // namespace vndoc6::com
