#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <memory>

#include "command.h"
#include "process.h"

extern char** environ;

namespace vndoc {
namespace {

[[noreturn]] void Fail(const std::string& what, int error) {
  throw Failure(what + ": " + std::strerror(error));
}

// A file without a name: whatever happens, nothing is left of it. Other than with two pipes, none
// of the two programs ever waits for the other to read.
class NamelessFile {
 public:
  NamelessFile() : file_(std::tmpfile()) {
    if (!file_) Fail("no temporary file", errno);
    fcntl(descriptor(), F_SETFD, FD_CLOEXEC);
  }

  int descriptor() const { return fileno(file_.get()); }

  void Write(std::string_view bytes) {
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size();
    if (!written || std::fflush(file_.get()) != 0) Fail("a temporary file can't be written", errno);
    std::rewind(file_.get());
  }

  std::string Read() {
    std::string bytes;
    std::rewind(file_.get());
    char part[65536];
    while (const size_t size = std::fread(part, 1, sizeof part, file_.get())) {
      bytes.append(part, size);
    }
    if (std::ferror(file_.get()) != 0) Fail("a temporary file can't be read", errno);
    return bytes;
  }

 private:
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::unique_ptr<std::FILE, Close> file_;
};

// How the program is to find its world.
class SpawnSettings {
 public:
  SpawnSettings(int input, int output, int errors) {
    posix_spawn_file_actions_init(&files_);
    posix_spawn_file_actions_adddup2(&files_, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files_, output, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&files_, errors, STDERR_FILENO);
    posix_spawnattr_init(&attributes_);
    // Signals that this program ignores mean to others what they usually do.
    sigset_t usual;
    sigemptyset(&usual);
    sigaddset(&usual, SIGPIPE);
    sigaddset(&usual, SIGXFSZ);
    posix_spawnattr_setsigdefault(&attributes_, &usual);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnSettings() {
    posix_spawn_file_actions_destroy(&files_);
    posix_spawnattr_destroy(&attributes_);
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;

  const posix_spawn_file_actions_t* files() const { return &files_; }
  const posix_spawnattr_t* attributes() const { return &attributes_; }

 private:
  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
};

int WaitFor(pid_t process) {
  int status = 0;
  while (waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) Fail("a program that was run got lost", errno);
  }
  constexpr int kKilled = 128;  // and the signal, as shells have it
  return WIFEXITED(status) ? WEXITSTATUS(status) : kKilled + WTERMSIG(status);
}

}  // namespace

std::optional<Ended> RunProgram(const std::string& name, const std::vector<std::string>& arguments,
                                std::string_view input) {
  NamelessFile in;
  NamelessFile out;
  NamelessFile errors;
  in.Write(input);
  std::vector<std::string> words = {name};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  const SpawnSettings settings(in.descriptor(), out.descriptor(), errors.descriptor());
  pid_t process = 0;
  const int error = posix_spawnp(&process, name.c_str(), settings.files(), settings.attributes(),
                                 argv.data(), environ);
  if (error == ENOENT) return std::nullopt;
  if (error != 0) Fail(name, error);
  const int status = WaitFor(process);
  return Ended{status, out.Read(), errors.Read()};
}

}  // namespace vndoc
