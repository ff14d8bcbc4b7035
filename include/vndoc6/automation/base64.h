// Base64 as in RFC 4648, with padding and without line ends.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vndoc6::automation {

void AppendBase64(std::span<const uint8_t> bytes, std::string& out);
// Nothing when `text` is not base64 throughout.
std::optional<std::vector<uint8_t>> FromBase64(std::string_view text);

}  // namespace vndoc6::automation
