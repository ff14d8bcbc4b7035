#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <iterator>

#include "terminal.h"

namespace vndoc {
namespace {

// What interrupts a question. The terminal is to show again what is typed before they take effect.
constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};

volatile std::sig_atomic_t caught = 0;

extern "C" void Catch(int signal) { caught = signal; }

// Holds those signals back; what came is raised at the end.
class SignalsHeldBack {
 public:
  SignalsHeldBack() {
    struct sigaction action {};
    action.sa_handler = Catch;  // without SA_RESTART: a read ends
    caught = 0;
    for (size_t i = 0; i < std::size(kSignals); ++i) sigaction(kSignals[i], &action, &before_[i]);
  }
  ~SignalsHeldBack() {
    for (size_t i = 0; i < std::size(kSignals); ++i) sigaction(kSignals[i], &before_[i], nullptr);
    if (caught != 0) raise(caught);
  }
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

 private:
  struct sigaction before_[std::size(kSignals)];
};

// The controlling terminal with its echo off; what it was before comes back at the end.
class SilentTerminal {
 public:
  SilentTerminal() : file_(open("/dev/tty", O_RDWR | O_CLOEXEC)) {
    if (file_ < 0 || tcgetattr(file_, &before_) != 0) return;
    termios silent = before_;
    silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    silent.c_lflag |= ECHONL;
    silent_ = tcsetattr(file_, TCSAFLUSH, &silent) == 0;
  }
  ~SilentTerminal() {
    if (silent_) tcsetattr(file_, TCSAFLUSH, &before_);
    if (file_ >= 0) close(file_);
  }
  SilentTerminal(const SilentTerminal&) = delete;
  SilentTerminal& operator=(const SilentTerminal&) = delete;

  bool silent() const { return silent_; }
  bool Write(const std::string& text) const {
    return write(file_, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  }
  std::optional<std::string> ReadLine() const {
    std::string line;
    char c = 0;
    while (caught == 0 && read(file_, &c, 1) == 1) {
      if (c == '\n') return line;
      line += c;
    }
    return std::nullopt;
  }

 private:
  int file_;
  termios before_{};
  bool silent_ = false;
};

}  // namespace

std::vector<std::string> CommandLine(int argc, char** argv) { return {argv, argv + argc}; }

void PrepareStreams() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  std::ios::sync_with_stdio(false);
}

bool ErrorsGoToTerminal() { return isatty(STDERR_FILENO) == 1; }

std::optional<std::string> AskPassword(const std::string& question) {
  const SignalsHeldBack held_back;
  const SilentTerminal terminal;
  if (!terminal.silent() || !terminal.Write(question)) return std::nullopt;
  return terminal.ReadLine();
}

}  // namespace vndoc
