// Kills processes while they save. What the system was told stays; the power is the subject of
// power_loss_test.cpp.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <iterator>
#include <thread>

#include "document/temp_save.h"
#include "platform/file_system.h"
#include "tests/endurance/numbered_document.h"
#include "tests/endurance/soak.h"
#include "tests/hostile_text.h"
#include "tests/support/hooked_file_calls.h"
#include "tests/support/temporary_folder.h"

namespace vndoc6::testing {
namespace {

using automation::Make;
using automation::Ref;

// What a saving child tells its parent.
struct Progress {
  std::atomic<int32_t> begun;  // the number of the last save that began
  std::atomic<int32_t> done;
};

// Memory that a child shares with its parent.
class SharedProgress {
 public:
  SharedProgress()
      : memory_(::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE,
                       MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
    if (memory_ == MAP_FAILED) throw std::bad_alloc();
    new (memory_) Progress{};
  }
  ~SharedProgress() { ::munmap(memory_, sizeof(Progress)); }
  SharedProgress(const SharedProgress&) = delete;
  SharedProgress& operator=(const SharedProgress&) = delete;
  Progress* operator->() const { return static_cast<Progress*>(memory_); }

 private:
  void* memory_;
};

[[noreturn]] void KillThisProcess() {
  ::kill(::getpid(), SIGKILL);
  std::abort();
}

// Runs `work` in a child; it must not return unless it is done. The child's process number.
template <class Work>
pid_t StartChild(Work work) {
  const pid_t child = ::fork();
  if (child == 0) {
    work();
    // Without destructors: they, and a search for leaks, are the parent's.
    ::_exit(0);
  }
  return child;
}

// Whether the child was killed; it must not end otherwise but well.
bool WasKilled(pid_t child) {
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL) return true;
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  return false;
}

class Crash : public ::testing::Test {
 protected:
  // A flush costs milliseconds and decides nothing here: what was written is the system's already.
  Crash() {
    platform::file_calls().fsync = [](int) { return 0; };
  }
  ~Crash() override { platform::file_calls() = real_; }

  // What must hold after a save of `after` over `before` was cut off. The number in the file.
  int32_t Check(const Text& name, int32_t before, int32_t after) const {
    const std::optional<int32_t> number = NumberInFile(name);
    EXPECT_TRUE(number == before || number == after) << number.value_or(-1);
    switch (Make<vnDocument>()->TempSaveTest(name)) {
      case 2:
        EXPECT_EQ(number, before) << "a recovery would undo a save";
        [[fallthrough]];
      case 1:
        EXPECT_EQ(NumberInFile(TempSaveName(name)), before);
        break;
      default:
        EXPECT_FALSE(platform::FileExists(TempSaveName(name)));
    }
    return number.value_or(before);
  }

  // What a host does that found a temporary save.
  static void Recover(const Text& name, int32_t expected) {
    const auto document = Make<vnDocument>();
    ASSERT_TRUE(document->LoadTempSave(name, u""));
    EXPECT_EQ(NumberOf(*document), expected);
    EXPECT_EQ(document->TempSaveTest(name), 0);
    EXPECT_EQ(NumberInFile(name), expected);
  }

  // The pieces of files that a killed process leaves behind, under names that no document has.
  size_t RemoveLeftovers() const {
    size_t removed = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      if (entry.path().extension() == ".tmp") {
        std::filesystem::remove(entry.path());
        ++removed;
      }
    }
    return removed;
  }

  // Lets a child do `work`, killed before, after or within its n-th file call, for every n, and
  // calls `verify` after each. How often it was killed.
  template <class Work, class Verify>
  int32_t KillAtEveryCall(Work work, Verify verify) const;

  TemporaryFolder folder_;

 private:
  const platform::FileCalls real_ = platform::file_calls();
};

enum class Moment { kBefore, kWithin, kAfter };

// Kills this process at the given call.
void ArmKill(int32_t call, Moment moment) {
  if (moment == Moment::kWithin) {
    // Half of what is to be written arrives.
    const auto write = platform::file_calls().write;
    platform::file_calls().write = [write, call, written = 0](int file, const void* bytes,
                                                              size_t size) mutable {
      if (++written != call) return write(file, bytes, size);
      write(file, bytes, size / 2);
      KillThisProcess();
    };
    return;
  }
  // Lives until the process ends.
  new HookedFileCalls(
      [call, moment, made = 0](const char*) mutable {
        if (++made == call && moment == Moment::kBefore) KillThisProcess();
        return true;
      },
      [call, moment, made = 0](const char*) mutable {
        if (++made == call && moment == Moment::kAfter) KillThisProcess();
      });
}

template <class Work, class Verify>
int32_t Crash::KillAtEveryCall(Work work, Verify verify) const {
  int32_t kills = 0;
  for (const Moment moment : {Moment::kBefore, Moment::kWithin, Moment::kAfter}) {
    bool killed = true;
    for (int32_t call = 1; killed; ++call) {
      SCOPED_TRACE(call);
      killed = WasKilled(StartChild([&] {
        ArmKill(call, moment);
        work();
      }));
      kills += killed;
      // Of the document, and of what is put aside before that takes its place.
      EXPECT_LE(RemoveLeftovers(), 2u);
      verify(killed);
      if (::testing::Test::HasFailure()) return kills;
    }
  }
  return kills;
}

TEST_F(Crash, KilledAtAnyCallOfASaveTheFileIsWhole) {
  const Text name = folder_.Name("process.vn6");
  int32_t kills = 0;
  int32_t recoveries = 0;
  for (int32_t round = 0; round < Times(5); ++round) {
    const Ref<vnDocument> document = NumberedDocument(1);
    ASSERT_TRUE(document->SaveAs(name));
    SetNumber(*document, 2);
    kills += KillAtEveryCall([&] { document->Save(); },
                             [&](bool killed) {
                               const int32_t number = Check(name, 1, 2);
                               EXPECT_TRUE(killed || number == 2);
                               if (Make<vnDocument>()->TempSaveTest(name) != 0) {
                                 Recover(name, 1);
                                 ++recoveries;
                               } else if (number == 2) {
                                 NumberedDocument(1)->SaveAs(name);
                               }
                             });
  }
  EXPECT_GT(kills, Times(300));
  EXPECT_GT(recoveries, kills / 4);
}

TEST_F(Crash, KilledAtAnyCallOfAFirstSaveThereIsAWholeFileOrNone) {
  const Text name = folder_.Name("process.vn6");
  const Ref<vnDocument> document = NumberedDocument(1);
  const int32_t kills =
      KillAtEveryCall([&] { document->SaveAs(name); },
                      [&](bool killed) {
                        const bool exists = platform::FileExists(name);
                        EXPECT_TRUE(killed || exists);
                        EXPECT_EQ(NumberInFile(name), exists ? std::optional(1) : std::nullopt);
                        EXPECT_EQ(Make<vnDocument>()->TempSaveTest(name), 0);
                        platform::DeleteFileNamed(name);
                      });
  EXPECT_GT(kills, 15);
}

// The recovery itself may be cut off, and be tried again.
TEST_F(Crash, KilledAtAnyCallOfARecoveryOneOfTheStatesIsThere) {
  const Text name = folder_.Name("process.vn6");
  const Text temp_save = TempSaveName(name);
  const auto prepare = [&] {
    ASSERT_TRUE(NumberedDocument(2)->SaveAs(name));
    ASSERT_TRUE(NumberedDocument(1)->SaveAs(temp_save));
  };
  prepare();
  const int32_t kills =
      KillAtEveryCall([&] { Make<vnDocument>()->LoadTempSave(name, u""); },
                      [&](bool killed) {
                        const std::optional<int32_t> number = NumberInFile(name);
                        EXPECT_TRUE(number == 1 || (killed && number == 2));
                        const Ref<vnDocument> next = Make<vnDocument>();
                        if (next->TempSaveTest(name) != 0) {
                          EXPECT_TRUE(next->LoadTempSave(name, u""));
                          EXPECT_TRUE(NumberOf(*next) == 1 || NumberOf(*next) == 2);
                        }
                        prepare();
                      });
  EXPECT_GT(kills, 40);
}

// A file that can't be read whole, or is gone, beside the last good state.
TEST_F(Crash, KilledAtAnyCallOverADamagedFileWhatWasThereIsSomewhere) {
  const Text name = folder_.Name("process.vn6");
  ASSERT_TRUE(NumberedDocument(1)->SaveAs(name));
  const std::string good = *platform::ReadWholeFile(name);
  std::string damaged = good;
  damaged.replace(damaged.find(":DT=0:"), 6, ":DT=?:");
  const auto is_somewhere = [&](const std::string& bytes) {
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      if (platform::ReadWholeFile(entry.path().u16string()) == bytes) return true;
    }
    return false;
  };
  const auto save = [&] {
    const auto document = Make<vnDocument>();
    document->Load(name, u"");
    document->Save();
  };
  const auto recover = [&] { Make<vnDocument>()->LoadTempSave(name, u""); };
  const auto save_anew = [&] { NumberedDocument(2)->SaveAs(name); };
  struct Case {
    bool is_there;
    std::function<void()> work;
  };
  for (const Case& test : {Case{true, save}, Case{true, recover}, Case{false, save_anew}}) {
    const auto prepare = [&] {
      for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
        std::filesystem::remove(entry.path());
      }
      if (test.is_there) folder_.Write("process.vn6", damaged);
      folder_.Write("process.~vnc", good);
    };
    prepare();
    const int32_t kills = KillAtEveryCall(test.work, [&](bool) {
      EXPECT_TRUE(!test.is_there || is_somewhere(damaged));
      EXPECT_TRUE(is_somewhere(good) || NumberInFile(name) == 1);
      prepare();
    });
    EXPECT_GT(kills, 30);
  }
}

TEST_F(Crash, KilledAtRandomMomentsTheFileIsWhole) {
  const Text name = folder_.Name("process.vn6");
  Random random(Seed());
  const SharedProgress progress;
  int32_t number = 1;
  int32_t offered = 0;
  ASSERT_TRUE(NumberedDocument(number)->SaveAs(name));
  const Ref<vnDocument> document = Make<vnDocument>();
  ASSERT_TRUE(document->Load(name, u""));
  for (int32_t kill = 0; kill < Times(600); ++kill) {
    progress->begun = progress->done = number;
    const pid_t child = StartChild([&] {
      for (int32_t next = number + 1;; ++next) {
        SetNumber(*document, next);
        progress->begun = next;
        if (!document->Save()) ::_exit(1);
        progress->done = next;
      }
    });
    while (progress->begun == number) std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::microseconds(Below(random, 3000)));
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    ASSERT_TRUE(WasKilled(child));
    EXPECT_LE(RemoveLeftovers(), 1u);
    number = Check(name, progress->done, progress->begun);
    if (Make<vnDocument>()->TempSaveTest(name) == 2) {
      Recover(name, number);
      ++offered;
    } else {
      // One that is older than the file stays until the next save, which may not get that far.
      platform::DeleteFileNamed(TempSaveName(name));
    }
    ASSERT_FALSE(HasFailure()) << "after " << kill << " kills";
  }
  RecordProperty("recoveries", offered);
}

}  // namespace
}  // namespace vndoc6::testing
