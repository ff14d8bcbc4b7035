// The names of types as scripts, the reference and the command line say them.
#pragma once

#include <string>

#include "vndoc6/automation/class_info.h"

namespace vndoc6 {

// "Long", "String", "vnStep", "EnumVantrelShapes", ...; empty for a member that gives nothing.
std::string ScriptTypeName(const automation::TypeInfo& type);

}  // namespace vndoc6
