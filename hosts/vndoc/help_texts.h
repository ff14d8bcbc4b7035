// The help strings of published members. The build makes their source file from the comments in the
// library's headers.
#pragma once

#include <string_view>

namespace vndoc {

// One sentence on a member, by class and name ("vnTask.Key"); empty for one that there is not.
std::string_view HelpOf(std::string_view member);

}  // namespace vndoc
