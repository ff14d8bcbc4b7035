// Writes the published contract, the interface definition, from the member tables.
#pragma once

#include <string>

namespace vndoc6 {

// The whole text of VNDoc6.idl.
std::string WriteIdl();

}  // namespace vndoc6
