// An amount as a decimal: exact, with up to four places behind a point, in every locale.
#pragma once

#include <string>
#include <string_view>

#include "vndoc6/automation/variant.h"

namespace vndoc6::automation {

// Without zeros at the end: "9.5", "-0.0001", "3".
void AppendDecimal(Currency value, std::string& out);

// False when `decimal` is no such number: empty, without a digit on one side of its point, out of
// range.
bool ReadDecimal(std::string_view decimal, Currency& value);

}  // namespace vndoc6::automation
