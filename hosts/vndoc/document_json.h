// Documents and whatever else has a member table, as JSON.
#pragma once

#include <iosfwd>

#include "json_values.h"
#include "walk.h"

namespace vndoc {

// Writes an object: properties under their names in slot order, collections as arrays, and what
// lies below in its place. The text depends on nothing but the object.
void WriteJson(Object& object, std::ostream& out);

}  // namespace vndoc
