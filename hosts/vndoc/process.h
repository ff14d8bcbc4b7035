// Other programs, run without a shell in between: nothing in an argument means more than itself.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vndoc {

struct Ended {
  int status;          // 0 for success, as a rule
  std::string output;  // what it wrote to its standard output
  std::string errors;  // what it wrote to its standard error
};

// Runs a program of the search path and waits for its end. Nothing when there is no such program.
// Throws Failure when it can't be run.
std::optional<Ended> RunProgram(const std::string& name, const std::vector<std::string>& arguments,
                                std::string_view input);

}  // namespace vndoc
