// The names of types.
#pragma once

#include <string>

#include "vndoc6/automation/class_info.h"

namespace vndoc6 {

// As scripts, the reference and the command line say them: "Long", "String", "vnStep",
// "EnumVantrelShapes", ...; empty for a member that gives nothing.
std::string ScriptTypeName(const automation::TypeInfo& type);

// As the interface definition has them, of a parameter passed by value; results and by-reference
// ones add a star.
std::string InterfaceTypeName(const automation::TypeInfo& type);

}  // namespace vndoc6
