// SHA-256 as FIPS 180-4 defines it: a page's policy names its own style and script by it.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace vndoc6::drawing {

std::array<uint8_t, 32> Sha256(std::string_view bytes);

}  // namespace vndoc6::drawing
