// Documents and whatever else has a member table, as JSON. No class has code here: what is written
// is what the library calls the content of an object.
#pragma once

#include <iosfwd>

#include "command.h"
#include "json_values.h"
#include "objects.h"

namespace vndoc {

// Writes an object: properties under their names in published order, collections as arrays, and
// what lies below in its place. The text depends on nothing but the object.
void WriteJson(Object& object, std::ostream& out);

// A new, unsaved document with the content of the JSON: all that WriteJson wrote, or a part of it.
// Throws Failure for a member that its class has not and for a value that the member can't take.
// The JSON is not kept.
Ref<vnDocument> DocumentFromJson(std::istream& json);

}  // namespace vndoc
