// Saves on a disk that fails or loses its power at every call in turn.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>
#include <sstream>

#include "bag/bag_writer.h"
#include "document/temp_save.h"
#include "tests/endurance/numbered_document.h"
#include "tests/endurance/soak.h"
#include "tests/support/memory_disk.h"
#include "tests/support/recording_listener.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::testing {
namespace {

using automation::Make;
using automation::Ref;

const Text kName = u"/disk/process.vn6";
const Text kElsewhere = u"/disk/elsewhere.vn6";

// What one save's calls left behind.
struct Outcome {
  int calls = 0;
  bool failed = false;  // whether the fault came
  std::string failed_call;
};

// Lets the n-th call of `work` fail, and all after it if `lasting`.
template <class Work>
Outcome WithFault(MemoryDisk& disk, int failing, int error, bool lasting, Work work) {
  Outcome outcome;
  disk.fault = [&](const char* call) {
    ++outcome.calls;
    if (outcome.calls != failing && !(lasting && outcome.calls > failing)) return 0;
    if (!outcome.failed) outcome.failed_call = call;
    outcome.failed = true;
    return error;
  };
  work();
  disk.fault = [](const char*) { return 0; };
  return outcome;
}

// What must hold after a save of `after` over `before`, with a fault in it.
void CheckAfterFault(vnDocument& document, bool saved, const std::vector<std::string>& events,
                     int32_t before, int32_t after) {
  EXPECT_EQ(events.back(), saved ? "SaveComplete" : "SaveFailed 2");
  const std::optional<int32_t> number = NumberInFile(kName);
  EXPECT_TRUE(number == after || (!saved && number == before)) << number.value_or(-1);
  // The document is whole, and can be saved elsewhere and under its name again.
  EXPECT_EQ(NumberOf(document), after);
  EXPECT_TRUE(document.SaveAs(kElsewhere));
  EXPECT_EQ(NumberInFile(kElsewhere), after);
  EXPECT_TRUE(document.SaveAs(kName));
  EXPECT_EQ(NumberInFile(kName), after);
  EXPECT_EQ(document.TempSaveTest(kName), 0);
}

TEST(FileFaults, WhicheverCallOfASaveFailsTheFileIsWholeAndTheDocumentCanBeSaved) {
  MemoryDisk disk;
  int faults = 0;
  for (const int error : {ENOSPC, EIO, EACCES, EROFS}) {
    for (const bool lasting : {false, true}) {
      bool failed = true;
      for (int failing = 1; failed; ++failing) {
        disk.Start({});
        const Ref<vnDocument> document = NumberedDocument(1);
        ASSERT_TRUE(document->SaveAs(kName));
        SetNumber(*document, 2);
        RecordingListener listener(*document);
        bool saved = false;
        const Outcome outcome =
            WithFault(disk, failing, error, lasting, [&] { saved = document->Save(); });
        failed = outcome.failed;
        faults += failed;
        SCOPED_TRACE(outcome.failed_call + " " + std::strerror(error));
        EXPECT_TRUE(failed || saved);
        // What merely protects the save may fail; what makes it must not.
        EXPECT_FALSE(saved && lasting && outcome.failed_call == "write");
        CheckAfterFault(*document, saved, listener.Take(), 1, 2);
        ASSERT_FALSE(HasFailure());
      }
    }
  }
  EXPECT_GT(faults, 200);
}

TEST(FileFaults, WhicheverCallOfALoadFailsNothingIsTakenForADocument) {
  MemoryDisk disk;
  ASSERT_TRUE(NumberedDocument(1)->SaveAs(kName));
  bool failed = true;
  for (int failing = 1; failed; ++failing) {
    const auto document = Make<vnDocument>();
    bool loaded = false;
    std::optional<automation::Error> error;
    const Outcome outcome = WithFault(disk, failing, EIO, false, [&] {
      try {
        loaded = document->Load(kName, u"");
      } catch (const automation::Error& raised) {
        error = raised;
      }
    });
    failed = outcome.failed;
    SCOPED_TRACE(outcome.failed_call);
    // Closing what was only read can't fail in a way that matters, nor can asking for its identity.
    const bool may_load =
        !failed || outcome.failed_call == "close" || outcome.failed_call == "stat";
    EXPECT_TRUE(loaded ? may_load : failed);
    EXPECT_EQ(NumberInFile(kName), 1);
    EXPECT_EQ(NumberOf(*document), loaded ? std::optional(1) : std::nullopt);
  }
}

// A damaged file, beside it the last good state, and nothing of both may be gone.
TEST(FileFaults, WhicheverCallFailsNothingIsLost) {
  MemoryDisk disk;
  const auto saved_bytes = [&](int32_t number) {
    disk.Start({});
    EXPECT_TRUE(NumberedDocument(number)->SaveAs(kName));
    return disk.Now().begin()->second;
  };
  const std::string good = saved_bytes(1);
  const std::string sound = saved_bytes(2);
  std::string damaged = sound;
  damaged.replace(damaged.find(":DT=0:"), 6, ":DT=?:");
  const std::string name = automation::ToUtf8(kName);
  const std::string temp_save = automation::ToUtf8(TempSaveName(kName));
  const auto save = [] {
    const auto document = Make<vnDocument>();
    return document->Load(kName, u"") && document->Save();
  };
  const auto recover = [] { return Make<vnDocument>()->LoadTempSave(kName, u""); };
  struct Case {
    std::string file;
    std::function<bool()> work;
  };
  for (const Case& test : {Case{damaged, save}, Case{sound, save}, Case{damaged, recover}}) {
    for (const bool lasting : {false, true}) {
      bool failed = true;
      for (int failing = 1; failed; ++failing) {
        disk.Start({{name, test.file}, {temp_save, good}});
        bool done = false;
        const Outcome outcome = WithFault(disk, failing, ENOSPC, lasting, [&] {
          try {
            done = test.work();
          } catch (const automation::Error&) {
            // It could not even be read, so it counts as one of the older format.
          }
        });
        failed = outcome.failed;
        SCOPED_TRACE(outcome.failed_call + " " + std::to_string(failing));
        MemoryDisk::Files files = disk.Now();
        const auto is_somewhere = [&](const std::string& bytes) {
          return std::any_of(files.begin(), files.end(),
                             [&](const auto& file) { return file.second == bytes; });
        };
        EXPECT_TRUE(is_somewhere(test.file) || NumberInFile(kName) == 2);
        // A save over a sound file may replace its temporary save, once it is certain to succeed.
        const bool is_untouched =
            !done && (outcome.failed_call == "open" || outcome.failed_call == "write");
        if (is_untouched || test.file == damaged) {
          EXPECT_TRUE(is_somewhere(good) || NumberInFile(kName) == 1);
        }
        ASSERT_FALSE(::testing::Test::HasFailure());
      }
    }
  }
}

// What a save of 2 over 1 may leave behind when the power goes before any of its calls.
std::vector<MemoryDisk::Files> PowerLossesDuringASave(MemoryDisk& disk) {
  const Ref<vnDocument> document = NumberedDocument(1);
  EXPECT_TRUE(document->SaveAs(kName));
  SetNumber(*document, 2);
  std::vector<MemoryDisk::Files> after_losses;
  uint32_t seed = Seed();
  disk.fault = [&](const char*) {
    for (int32_t way = 0; way < Times(8); ++way) {
      after_losses.push_back(disk.AfterPowerLoss(seed++));
    }
    return 0;
  };
  EXPECT_TRUE(document->Save());
  disk.fault = [](const char*) { return 0; };
  return after_losses;
}

TEST(PowerLoss, AtAnyMomentOfASaveTheNameHoldsAWholeDocument) {
  MemoryDisk disk;
  const std::vector<MemoryDisk::Files> losses = PowerLossesDuringASave(disk);
  EXPECT_GT(losses.size(), 100u);
  for (const MemoryDisk::Files& files : losses) {
    disk.Start(files);
    const std::optional<int32_t> number = NumberInFile(kName);
    ASSERT_TRUE(number == 1 || number == 2);
    // A temporary save that is offered holds the state before.
    if (Make<vnDocument>()->TempSaveTest(kName) == 2) {
      ASSERT_EQ(NumberInFile(TempSaveName(kName)), 1);
    }
  }
}

// Shows that the disk above loses what it may lose.
TEST(PowerLoss, WithoutFlushesDocumentsWouldBeLost) {
  MemoryDisk disk;
  platform::file_calls().fsync = [](int) { return 0; };
  const std::vector<MemoryDisk::Files> losses = PowerLossesDuringASave(disk);
  size_t lost = 0;
  for (const MemoryDisk::Files& files : losses) {
    disk.Start(files);
    lost += !NumberInFile(kName);
  }
  EXPECT_GT(lost, losses.size() / 10);
}

// A save that was reported as complete is on the disk, whatever happens then.
TEST(PowerLoss, AfterACompleteSaveTheNewContentIsThere) {
  MemoryDisk disk;
  const Ref<vnDocument> document = NumberedDocument(1);
  ASSERT_TRUE(document->SaveAs(kName));
  SetNumber(*document, 2);
  ASSERT_TRUE(document->Save());
  std::vector<MemoryDisk::Files> after_losses;
  for (int32_t way = 0; way < Times(50); ++way) {
    after_losses.push_back(disk.AfterPowerLoss(Seed() + static_cast<uint32_t>(way)));
  }
  for (const MemoryDisk::Files& files : after_losses) {
    disk.Start(files);
    ASSERT_EQ(NumberInFile(kName), 2);
  }
}

}  // namespace
}  // namespace vndoc6::testing
