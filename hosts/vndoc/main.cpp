#include <iostream>

#include "command.h"
#include "terminal.h"

int main(int argc, char** argv) {
  const std::vector<std::string> words = vndoc::CommandLine(argc, argv);
  std::vector<const char*> arguments;
  arguments.reserve(words.size());
  for (const std::string& word : words) arguments.push_back(word.c_str());
  vndoc::PrepareStreams();
  vndoc::Context context{std::cin, std::cout, std::cerr, vndoc::ErrorsGoToTerminal(), {}, {}};
  return vndoc::Run(static_cast<int>(arguments.size()), arguments.data(), context);
}
