#include <conio.h>
#include <io.h>

#include "terminal.h"

namespace vndoc {

bool ErrorsGoToTerminal() { return _isatty(2) != 0; }

std::optional<std::string> AskPassword(const std::string& question) {
  if (_isatty(0) == 0) return std::nullopt;
  _cputs(question.c_str());
  std::string password;
  for (int key = _getch(); key != '\r'; key = _getch()) {
    if (key == 3 || key == 26) return std::nullopt;  // Ctrl+C, Ctrl+Z
    if (key != '\b') {
      password += static_cast<char>(key);
    } else if (!password.empty()) {
      password.pop_back();
    }
  }
  _cputs("\r\n");
  return password;
}

}  // namespace vndoc
