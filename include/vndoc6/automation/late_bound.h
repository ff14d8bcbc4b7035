// Calls by member name, on described and foreign objects alike. Names in any letter case.
// Raise 438 for an unknown member, and what ClassInfo::Invoke raises.
#pragma once

#include <initializer_list>
#include <span>

#include "vndoc6/automation/class_info.h"

namespace vndoc6::automation {

Variant Get(Object& object, TextView name, std::initializer_list<Variant> arguments = {});
Variant Call(Object& object, TextView name, std::initializer_list<Variant> arguments = {});
Variant Call(Object& object, TextView name, std::span<const Variant> arguments);
// As Call; the first argument goes by reference.
Variant CallByReference(Object& object, TextView name, std::initializer_list<Variant> arguments);
// The new value is the last argument. An object goes to the putref when there is one.
void Put(Object& object, TextView name, std::initializer_list<Variant> arguments);

// For Each: what the object's NewEnum gives. Error 438 for an object that is no collection.
Ref<Enumerator> Enumerate(Object& object);

}  // namespace vndoc6::automation
