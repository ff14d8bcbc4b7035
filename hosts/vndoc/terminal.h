// The terminal that the program may have been started from.
#pragma once

#include <optional>
#include <string>

namespace vndoc {

// Whether standard error goes to a terminal.
bool ErrorsGoToTerminal();
// Asks for a password on the terminal itself, whatever standard input and output are. What is
// typed is not shown. Nothing when there is no terminal, or when its user gives none.
std::optional<std::string> AskPassword(const std::string& question);

}  // namespace vndoc
