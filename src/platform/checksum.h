// A number by which to tell whether bytes are still the same. Not against forgers.
#pragma once

#include <cstdint>
#include <string_view>

namespace vndoc6::platform {

uint64_t Checksum(std::string_view bytes);

}  // namespace vndoc6::platform
