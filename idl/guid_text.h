// Identifiers as texts.
#pragma once

#include <cstdio>
#include <string>

#include "vndoc6/automation/class_info.h"

namespace vndoc6 {

// "53262afc-1d30-4eba-a692-4e4d85c17911"
inline std::string GuidText(const automation::Guid& guid) {
  char buffer[40];
  const uint8_t* d = guid.data4;
  std::snprintf(buffer, sizeof buffer, "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x",
                static_cast<unsigned>(guid.data1), guid.data2, guid.data3, d[0], d[1], d[2], d[3],
                d[4], d[5], d[6], d[7]);
  return buffer;
}

}  // namespace vndoc6
