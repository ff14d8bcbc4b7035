// The program itself, with a terminal, with pipes and under limits.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <sstream>

#include "command.h"
#include "platform/file_calls.h"
#include "process.h"
#include "tests/endurance/soak.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"

namespace vndoc {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using vndoc6::automation::FromUtf8;

using Arguments = std::vector<std::string>;

// Replaces the process that calls it.
[[noreturn]] void Become(Arguments arguments) {
  arguments.insert(arguments.begin(), VNDOC_PROGRAM);
  std::vector<char*> argv;
  argv.reserve(arguments.size() + 1);
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  execv(VNDOC_PROGRAM, argv.data());
  _exit(127);
}

// The program on a terminal of its own.
class OnTerminal {
 public:
  explicit OnTerminal(const Arguments& arguments) : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
    grantpt(master_);
    unlockpt(master_);
    const std::string name = ptsname(master_);
    process_ = fork();
    if (process_ != 0) return;
    setsid();
    const int terminal = open(name.c_str(), O_RDWR);
    ioctl(terminal, TIOCSCTTY, 0);
    for (const int standard : {0, 1, 2}) dup2(terminal, standard);
    Become(arguments);
  }
  ~OnTerminal() {
    if (process_ > 0) kill(process_, SIGKILL);
    close(master_);
  }
  OnTerminal(const OnTerminal&) = delete;
  OnTerminal& operator=(const OnTerminal&) = delete;

  // Waits for a text to appear.
  void Expect(const std::string& text) {
    while (shown_.find(text) == shown_.npos && ReadMore()) {
    }
    EXPECT_THAT(shown_, HasSubstr(text));
  }
  void Type(const std::string& text) {
    EXPECT_EQ(write(master_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
  }
  // All that appeared, after the end.
  const std::string& Finish() {
    while (ReadMore()) {
    }
    waitpid(process_, &status_, 0);
    process_ = 0;
    return shown_;
  }
  int status() const { return status_; }
  // Whether the terminal shows what is typed.
  bool Echoes() const {
    termios settings{};
    tcgetattr(master_, &settings);
    return (settings.c_lflag & ECHO) != 0;
  }

 private:
  bool ReadMore() {
    constexpr int kPatience = 20000;  // milliseconds
    pollfd ready{master_, POLLIN, 0};
    char bytes[4096];
    if (poll(&ready, 1, kPatience) <= 0) return false;
    const ssize_t size = read(master_, bytes, sizeof bytes);
    if (size > 0) shown_.append(bytes, static_cast<size_t>(size));
    return size > 0;
  }

  int master_;
  pid_t process_ = 0;
  int status_ = 0;
  std::string shown_;
};

struct Outcome {
  int status;
  std::string err;
  long kilobytes;  // the most memory that it had
};

// No file can grow beyond that.
void LimitFiles() {
  const rlimit bytes{1000, 1000};
  setrlimit(RLIMIT_FSIZE, &bytes);
}

class ProgramTest : public ::testing::Test {
 protected:
  // Runs the program after `prepare` has run in its process.
  Outcome Run(
      const Arguments& arguments, const std::function<void()>& prepare = [] {}) {
    const std::string err = File("err");
    const pid_t process = fork();
    if (process == 0) {
      dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
      dup2(open(File("out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDOUT_FILENO);
      dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
      prepare();
      Become(arguments);
    }
    int status = 0;
    rusage used{};
    wait4(process, &status, 0, &used);
    Outcome outcome{WIFEXITED(status) ? WEXITSTATUS(status) : -1, Bytes("err"), used.ru_maxrss};
    std::filesystem::remove(err);
    std::filesystem::remove(File("out"));
    return outcome;
  }

  std::string File(const char* name) const { return (folder_.path() / name).string(); }
  std::string Bytes(const char* name) const {
    std::ifstream stream(File(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  std::string Document(size_t steps, const char* name = "plan.vn6") {
    const auto document = vndoc6::automation::Make<vnDocument>();
    for (size_t i = 0; i < steps; ++i) {
      const auto step = document->NewStep();
      step->SetLabel(u"A step like any other");
      step->SetDescription(u"What has to be done here, in some more words than the label has");
      step->NewTask()->SetName(u"Look it up");
      step->Figure()->SetFillColour(0xFFFFFF);
    }
    EXPECT_TRUE(document->SaveAs(FromUtf8(File(name))));
    return File(name);
  }
  std::vector<std::string> Files() const {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(folder_.path())) {
      names.push_back(file.path().filename().string());
    }
    return names;
  }

  vndoc6::testing::TemporaryFolder folder_;
};

class PasswordTest : public ProgramTest {
 protected:
  PasswordTest() {
    const auto document = vndoc6::automation::Make<vnDocument>();
    document->NewStep()->SetLabel(u"Hidden step");
    document->SetReadPassword(u"r0sebud");
    document->SetWritePassword(u"t0psecret");
    document->SaveAs(FromUtf8(file_));
  }
  std::string file_ = File("plan.vn6");
};

TEST_F(PasswordTest, IsAskedForAndNeverShown) {
  OnTerminal terminal({"show", file_});
  terminal.Expect("Password for " + file_ + ": ");
  EXPECT_FALSE(terminal.Echoes());
  terminal.Type("r0sebud\n");
  terminal.Expect("1. Hidden step");
  EXPECT_TRUE(terminal.Echoes());
  EXPECT_THAT(terminal.Finish(), Not(HasSubstr("r0s")));
  EXPECT_EQ(WEXITSTATUS(terminal.status()), kDone);
}

TEST_F(PasswordTest, ForWritingIsAskedForAsWellAndOnceOnly) {
  OnTerminal terminal({"edit", file_, "set", "Steps/1/Label", "New name"});
  terminal.Expect("Password for ");
  terminal.Type("r0sebud\n");
  terminal.Expect("Write password for ");
  terminal.Type("t0psecret\n");
  EXPECT_THAT(terminal.Finish(), Not(HasSubstr("t0ps")));
  EXPECT_EQ(WEXITSTATUS(terminal.status()), kDone);
  const std::vector<std::vector<std::string>> readers = {{"check", file_},
                                                         {"recover", file_, "-o", File("new.vn6")}};
  for (const auto& reader : readers) {
    OnTerminal once(reader);
    once.Expect("Password for " + file_ + ": ");
    once.Type("r0sebud\n");
    once.Finish();
    EXPECT_EQ(WEXITSTATUS(once.status()), kDone) << reader[0];
  }
}

TEST_F(PasswordTest, EditKeepsWhatAnotherOneSavedWhileItAsked) {
  const Arguments edit = {"--password", "r0sebud", "edit", file_, "call", "NewStep"};
  OnTerminal terminal(edit);
  terminal.Expect("Write password for ");
  Arguments other = edit;
  other.insert(other.begin(), {"--write-password", "t0psecret"});
  EXPECT_EQ(Run(other).status, kDone);
  terminal.Type("t0psecret\n");
  terminal.Finish();
  const auto document = vndoc6::automation::Make<vnDocument>();
  ASSERT_TRUE(document->Load(FromUtf8(file_), u"r0sebud"));
  EXPECT_EQ(document->Steps()->Count(), 3);
}

TEST_F(PasswordTest, ThatIsWrongEndsInOneLine) {
  OnTerminal terminal({"show", file_});
  terminal.Expect("Password for ");
  terminal.Type("x\n");
  EXPECT_THAT(terminal.Finish(), HasSubstr(": wrong password\r\n"));
  EXPECT_EQ(WEXITSTATUS(terminal.status()), kFailed);
  EXPECT_THAT(Run({"show", file_}).err, HasSubstr("needs its password\n")) << "nobody to ask";
}

TEST_F(PasswordTest, PromptThatIsInterruptedLeavesTheTerminalAsItWas) {
  OnTerminal terminal({"show", file_});
  terminal.Expect("Password for ");
  terminal.Type("\x03");
  terminal.Finish();
  EXPECT_TRUE(WIFSIGNALED(terminal.status()));
  EXPECT_EQ(WTERMSIG(terminal.status()), SIGINT);
  EXPECT_TRUE(terminal.Echoes());
}

TEST_F(ProgramTest, ProgressIsABarForPeopleOnly) {
  const std::string file = Document(20);
  OnTerminal terminal({"--progress", "edit", file, "set", "Details/Title", "Plan"});
  const std::string shown = terminal.Finish();
  EXPECT_THAT(shown, HasSubstr("Loading " + file + " [##"));
  EXPECT_THAT(shown, HasSubstr("Saving " + file + " [##############################] 100%"));
  EXPECT_THAT(shown, ::testing::EndsWith("\r\x1b[K")) << "the bar makes room";
  EXPECT_EQ(Run({"--progress", "edit", file, "set", "Details/Title", "Plan"}).err, "");
  OnTerminal quiet({"edit", file, "set", "Details/Title", "Plan"});
  EXPECT_EQ(quiet.Finish(), "");
}

TEST_F(ProgramTest, TemporarySaveThatCannotBeTakenIsKept) {
  const std::string file = Document(200);
  Document(300, "plan.~vnc");
  const std::string before = Bytes("plan.vn6");
  const std::string temp_save = Bytes("plan.~vnc");
  const Outcome outcome = Run({"recover", "--temp-save", file}, LimitFiles);
  EXPECT_EQ(outcome.status, kFailed);
  EXPECT_EQ(outcome.err, "vndoc: " + file + ": can't be written; it is as it was\n");
  EXPECT_EQ(Bytes("plan.vn6"), before);
  EXPECT_EQ(Bytes("plan.~vnc"), temp_save);
  EXPECT_THAT(Files(), ::testing::UnorderedElementsAre("plan.vn6", "plan.~vnc"));
}

// Killed at any change of a folder: what the temporary save held is there, and can be taken again.
TEST_F(ProgramTest, RecoveryThatIsKilledCanBeRepeated) {
  const std::string file = Document(3, "good.vn6");
  const std::string good = Bytes("good.vn6");
  for (const char* const damaged : {"FV=2:DV=s1.2:DT=?", ""}) {
    bool killed = true;
    for (int change = 1; killed; ++change) {
      for (const std::string& name : Files()) {
        if (name != "good.vn6") std::filesystem::remove(folder_.path() / name);
      }
      if (*damaged != 0) folder_.Write("plan.vn6", damaged);
      folder_.Write("plan.~vnc", good);
      const pid_t process = fork();
      if (process == 0) {
        int made = 0;
        vndoc6::platform::FileCalls& calls = vndoc6::platform::file_calls();
        const auto count = [&] {
          if (++made == change) kill(getpid(), SIGKILL);
        };
        const vndoc6::platform::FileCalls real = calls;
        calls.rename = [&](const char* from, const char* to) {
          count();
          const int result = real.rename(from, to);
          count();
          return result;
        };
        calls.unlink = [&](const char* name) {
          count();
          return real.unlink(name);
        };
        std::stringstream streams[3];
        Context context{streams[0], streams[1], streams[2], false, {}, {}};
        const std::string plan = File("plan.vn6");
        const char* const arguments[] = {"vndoc", "recover", "--temp-save", plan.c_str()};
        _exit(vndoc::Run(4, arguments, context));
      }
      int status = 0;
      waitpid(process, &status, 0);
      killed = WIFSIGNALED(status);
      EXPECT_TRUE(killed || WEXITSTATUS(status) == kDone);
      if (Bytes("plan.~vnc") == good) {
        EXPECT_EQ(Run({"recover", "--temp-save", File("plan.vn6")}).status, kDone);
      }
      const auto document = vndoc6::automation::Make<vnDocument>();
      ASSERT_TRUE(document->Load(FromUtf8(File("plan.vn6")), u""));
      EXPECT_EQ(document->Steps()->Count(), 3);
      const bool is_aside =
          Bytes("plan.vn6.aside-1") == damaged || Bytes("plan.vn6.aside-2") == damaged;
      EXPECT_TRUE(*damaged == 0 || is_aside);
      ASSERT_FALSE(HasFailure()) << change;
    }
  }
}

TEST_F(ProgramTest, NoEditIsLostHoweverManyChangeADocumentAtOnce) {
  for (const int processes : {2, 8}) {
    const std::string file = Document(1);
    const int rounds = vndoc6::testing::Times(16) / processes;
    std::vector<pid_t> writers;
    for (int i = 0; i < processes; ++i) {
      writers.push_back(fork());
      if (writers.back() != 0) continue;
      dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
      for (int round = 0; round < rounds; ++round) {
        const pid_t edit = fork();
        if (edit == 0) Become({"edit", file, "call", "NewStep"});
        int status = 0;
        waitpid(edit, &status, 0);
        if (status != 0) _exit(1);
      }
      _exit(0);
    }
    for (const pid_t writer : writers) {
      int status = 0;
      waitpid(writer, &status, 0);
      EXPECT_EQ(status, 0);
    }
    const auto document = vndoc6::automation::Make<vnDocument>();
    ASSERT_TRUE(document->Load(FromUtf8(file), u""));
    EXPECT_EQ(document->Steps()->Count(), 1 + processes * rounds);
    EXPECT_THAT(Files(), ::testing::ElementsAre("plan.vn6"));
  }
}

// What a file-size limit or a full disk does to each command that writes.
TEST_F(ProgramTest, FileThatCannotGrowIsLeftAsItWas) {
  const std::string file = Document(200);
  const std::string before = Bytes("plan.vn6");
  const std::string json = File("plan.json");
  std::ofstream(json) << R"({"Steps": [)" << std::string(before.size(), ' ')
                      << R"({"Label": "A"}, {"Label": "B"}, {"Label": "C"}]})";
  std::ofstream(File("target")) << "as it was";
  for (const Arguments& arguments :
       std::vector<Arguments>{{"edit", file, "set", "Details/Title", "x"},
                              {"render", file, "-o", File("target"), "--force"},
                              {"report", file, "-o", File("target"), "--force"},
                              {"recover", file, "-o", File("target")},
                              {"from-json", json, File("target")}}) {
    const Outcome outcome = Run(arguments, LimitFiles);
    EXPECT_EQ(outcome.status, kFailed) << arguments[0];
    EXPECT_THAT(outcome.err, StartsWith("vndoc: "));
    EXPECT_THAT(outcome.err, HasSubstr("can't be written"));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    EXPECT_EQ(Bytes("plan.vn6"), before) << arguments[0];
    EXPECT_EQ(Bytes("target"), "as it was") << arguments[0];
    EXPECT_THAT(Files(), ::testing::UnorderedElementsAre("plan.vn6", "plan.json", "target"));
  }
}

TEST_F(ProgramTest, OutputThatNobodyTakesIsAnErrorOfOneLine) {
  const std::string file = Document(200);
  const auto to_full_disk = [] { dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO); };
  const auto to_closed_pipe = [] {
    int ends[2];
    if (pipe(ends) != 0) return;
    close(ends[0]);
    dup2(ends[1], STDOUT_FILENO);
  };
  for (const auto& prepare :
       std::vector<std::function<void()>>{to_full_disk, to_closed_pipe, LimitFiles}) {
    for (const Arguments& arguments : std::vector<Arguments>{{"show", file},
                                                             {"show", "--json", file},
                                                             {"render", file, "-o", "-"},
                                                             {"members"},
                                                             {"man"},
                                                             {"--help"}}) {
      const Outcome outcome = Run(arguments, prepare);
      EXPECT_EQ(outcome.status, kFailed) << arguments[0];
      EXPECT_EQ(outcome.err, "vndoc: the output can't be written\n") << arguments[0];
    }
  }
}

// Sanitizers take memory of their own.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VNDOC_SANITIZED
#endif
#endif
#ifndef VNDOC_SANITIZED
// Compared with a command that reads next to nothing of the document.
TEST_F(ProgramTest, LargeDocumentTakesLittleMoreThanItsSize) {
  const std::string file = Document(3000);
  const auto kilobytes = static_cast<long>(std::filesystem::file_size(file) / 1024);
  const long loaded = Run({"edit", file, "get", "Steps/Count"}).kilobytes;
  for (const Arguments& arguments :
       std::vector<Arguments>{{"show", file}, {"show", "--json", file}, {"check", file}}) {
    EXPECT_LT(Run(arguments).kilobytes - loaded, 3 * kilobytes) << arguments[0];
  }
}
#endif

// --- Completion ---

class CompletionTest : public ProgramTest {
 protected:
  CompletionTest() {
    std::ofstream(File("plan.vn6")) << "x";
    std::ofstream(File("plan two.vn6")) << "x";
  }
  // What a shell's script says; nothing without that shell.
  std::optional<std::string> Say(const std::string& shell, const std::string& script) {
    const std::string program = std::filesystem::path(VNDOC_PROGRAM).parent_path().string();
    const std::string before =
        "cd '" + folder_.path().string() + "' && PATH='" + program + "':$PATH\n";
    const auto ended = RunProgram(shell, {"-c", before + script}, "");
    if (!ended) return std::nullopt;
    EXPECT_EQ(ended->status, 0);
    return ended->output;
  }
};

TEST_F(CompletionTest, OfBashKnowsCommandsOptionsAndFiles) {
  // complete WORD...: what there is for the last of them.
  const auto said = Say("bash", R"(
source <(vndoc completion bash) || exit 1
complete_words() {
  COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=()
  _vndoc
  printf '<%s>' "${COMPREPLY[@]}"
  echo
}
complete_words vndoc re
complete_words vndoc check --f
complete_words vndoc --pa
complete_words vndoc show plan
complete_words vndoc completion b
)");
  if (!said) GTEST_SKIP() << "no bash";
  EXPECT_EQ(*said,
            "<render><report><recover>\n<--fix><--force>\n<--password>\n<plan "
            "two.vn6><plan.vn6>\n<bash>\n");
}

TEST_F(CompletionTest, OfZshKnowsCommandsOptionsAndFiles) {
  // A line is typed on a terminal, ended by the tab key.
  const auto said = Say("zsh", R"(
vndoc completion zsh > _vndoc && zsh -n _vndoc || exit 1
zmodload zsh/zpty
export TERM=dumb
zpty -b shell zsh -f -i
zpty -w shell "fpath=(\$PWD \$fpath); autoload -U compinit; compinit -u -D; PS1=READ'Y>'"
complete_line() {
  local shown
  zpty -r -m shell shown '*READY>*'
  zpty -w -n shell "true $1"$'\t'
  zpty -w -n shell $'#END\n'
  zpty -r -m shell shown '*#END*'
  print -r -- "$shown" | tail -n 1 | tr -d '\a'
}
complete_line '; vndoc rende'
complete_line '; vndoc check --fi'
complete_line '; vndoc show plan\ t'
complete_line '; vndoc completion zs'
zpty -d shell
)");
  if (!said) GTEST_SKIP() << "no zsh";
  EXPECT_THAT(*said, HasSubstr("vndoc render "));
  EXPECT_THAT(*said, HasSubstr("vndoc check --fix "));
  EXPECT_THAT(*said, HasSubstr("vndoc show plan\\ two.vn6 "));
  EXPECT_THAT(*said, HasSubstr("vndoc completion zsh "));
}

}  // namespace
}  // namespace vndoc
