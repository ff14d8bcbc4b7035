#include <csignal>
#include <iostream>

#include "command.h"
#include "terminal.h"

int main(int argc, char** argv) {
#ifdef SIGPIPE
  // A reader that went away is an error of writing like any other.
  std::signal(SIGPIPE, SIG_IGN);
#endif
#ifdef SIGXFSZ
  // So is a file that grows beyond its limit.
  std::signal(SIGXFSZ, SIG_IGN);
#endif
  std::ios::sync_with_stdio(false);
  vndoc::Context context{std::cin, std::cout, std::cerr, vndoc::ErrorsGoToTerminal(), {}, {}};
  return vndoc::Run(argc, argv, context);
}
