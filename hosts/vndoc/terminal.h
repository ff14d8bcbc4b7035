// Where the program was started from: its command line, its streams and its terminal.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vndoc {

// The words of the command line, in UTF-8.
std::vector<std::string> CommandLine(int argc, char** argv);
// Makes the standard streams take and give bytes as they are, and writing where nobody reads or no
// room is left an error like any other.
void PrepareStreams();
// Whether standard error goes to a terminal.
bool ErrorsGoToTerminal();
// Asks for a password on the terminal itself, whatever standard input and output are. What is
// typed is not shown. Nothing when there is no terminal, or when its user gives none.
std::optional<std::string> AskPassword(const std::string& question);

}  // namespace vndoc
