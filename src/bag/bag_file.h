// The text of a bag in a file of its own.
#pragma once

#include <optional>
#include <string_view>

#include "vndoc6/automation/text.h"
#include "vndoc6/bag/kept_text.h"

namespace vndoc6::bag {

// What stands behind a UTF-8 byte order mark, which editors put at the beginning of a file.
std::string_view WithoutMark(std::string_view bytes);

// The text that a file holds, without such a mark; nothing when it can't be read.
std::optional<KeptText> ReadTextFile(TextView name);

}  // namespace vndoc6::bag
