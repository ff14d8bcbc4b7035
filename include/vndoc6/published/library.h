// The type library's identity, and the names that follow from a class's name. Published: none of
// this ever changes.
#pragma once

#include <string>

#include "vndoc6/automation/class_info.h"

namespace vndoc6 {

inline constexpr const char* kLibraryName = "VNDoc6";
inline constexpr const char* kLibraryHelp = "VNDoc6 process documents";
inline constexpr automation::Guid kLibraryId = {
    0x53262afc, 0x1d30, 0x4eba, {0xa6, 0x92, 0x4e, 0x4d, 0x85, 0xc1, 0x79, 0x11}};
inline constexpr int kLibraryMajorVersion = 6;
inline constexpr int kLibraryMinorVersion = 0;

// The platform's own marshallers for dual and for late-bound interfaces; they read the type
// library.
inline constexpr automation::Guid kDualMarshaller = {
    0x00020424, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr automation::Guid kDispatchMarshaller = {
    0x00020420, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

// What hosts create an object of the class by: "VNDoc6.vnDocument".
inline std::string ProgrammaticId(const automation::ClassInfo& info) {
  return std::string(kLibraryName) + "." + std::string(info.name());
}
// The class's dual interface: "_vnDocument".
inline std::string DefaultInterfaceName(const automation::ClassInfo& info) {
  return "_" + std::string(info.name());
}

}  // namespace vndoc6
