#include "terminal.h"

#include <conio.h>
#include <fcntl.h>
#include <io.h>
#include <windows.h>

// Needs the header above.
#include <shellapi.h>

#include "vndoc6/automation/text.h"

namespace vndoc {

std::vector<std::string> CommandLine(int, char**) {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> line;
  for (int i = 0; i < count; ++i) {
    const std::wstring_view word(words[i]);
    line.push_back(vndoc6::automation::ToUtf8(vndoc6::Text(word.begin(), word.end())));
  }
  LocalFree(words);
  return line;
}

void PrepareStreams() {
  for (const int standard : {0, 1, 2}) _setmode(standard, _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
}

bool ErrorsGoToTerminal() { return _isatty(2) != 0; }

std::optional<std::string> AskPassword(const std::string& question) {
  if (_isatty(0) == 0) return std::nullopt;
  _cputs(question.c_str());
  vndoc6::Text password;
  for (wint_t key = _getwch(); key != L'\r'; key = _getwch()) {
    if (key == 3 || key == 26) return std::nullopt;  // Ctrl+C, Ctrl+Z
    if (key != L'\b') {
      password += static_cast<char16_t>(key);
    } else if (!password.empty()) {
      password.pop_back();
    }
  }
  _cputs("\r\n");
  return vndoc6::automation::ToUtf8(password);
}

}  // namespace vndoc
