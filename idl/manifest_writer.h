// Writes the manifest by which a program uses the DLL without any registration.
#pragma once

#include <string>

namespace vndoc6 {

// The whole text of VNDoc6.manifest.
std::string WriteManifest();

}  // namespace vndoc6
