// What documents share, used from several threads and processes at once. The thread sanitizer sees
// what no result shows: `./dev test` runs this file under it, too.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <latch>
#include <set>
#include <sstream>
#include <thread>
#include <vector>

#include "platform/file_system.h"
#include "platform/keys.h"
#include "tests/support/random_document.h"
#include "tests/support/scripted_object.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/content/compare.h"
#include "vndoc6/details/details.h"
#include "vndoc6/process/steps.h"

namespace vndoc6::testing {
namespace {

using automation::Make;
using automation::Object;
using automation::Ref;

constexpr size_t kThreads = 4;

// Runs `work(number)` on all threads, begun together.
template <class Work>
void OnAllThreads(Work work) {
  std::latch ready(kThreads);
  std::vector<std::thread> threads;
  for (size_t number = 0; number < kThreads; ++number) {
    threads.emplace_back([&, number] {
      ready.arrive_and_wait();
      work(number);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

std::vector<Text> NewKeys(size_t count) {
  std::vector<Text> keys(count);
  for (Text& key : keys) key = platform::NewKey();
  return keys;
}

Ref<vnDocument> Load(const Text& name) {
  const auto document = Make<vnDocument>();
  EXPECT_TRUE(document->Load(name, u""));
  return document;
}

// Fills a document through late-bound calls, saves, loads, reads and compares it.
Ref<vnDocument> PutThroughEverything(uint32_t seed, const Text& name) {
  RandomContent content(seed);
  const Ref<vnDocument> document = RandomDocument(content);
  document->Details()->NewRevision(u"today");
  EXPECT_TRUE(document->SaveAs(name));
  const Ref<vnDocument> loaded = Load(name);
  Compare(*document, *loaded);  // reads all of both
  EXPECT_TRUE(loaded->Save());
  EXPECT_TRUE(Compare(*loaded, *Load(name), {.ignore_identity = true}).empty());
  return loaded;
}

TEST(Threads, EachWorksOnDocumentsOfItsOwn) {
  const TemporaryFolder folder;
  const size_t objects = Object::LiveCount();
  {
    std::array<Ref<vnDocument>, kThreads> handed_on;
    OnAllThreads([&](size_t number) {
      const std::string own = std::to_string(number);
      const Text converter = u"Converters." + automation::FromUtf8(own);
      for (uint32_t round = 0; round < 3; ++round) {
        const RegisteredFactory factory(
            converter, [&own] { return MakeScriptedObject("Converter " + own, {}); });
        EXPECT_EQ(automation::CreateObject(converter)->TypeName(), "Converter " + own);
        automation::UseServices(automation::services());
        handed_on[number] = PutThroughEverything(static_cast<uint32_t>(number) * 10 + round,
                                                 folder.Name(own + ".vn6"));
      }
    });
    for (const Ref<vnDocument>& document : handed_on) {
      EXPECT_TRUE(Compare(*document, *Load(document->FileName())).empty());
    }
  }
  EXPECT_EQ(Object::LiveCount(), objects);
}

TEST(Threads, NoTwoMakeTheSameKey) {
  std::array<std::vector<Text>, kThreads> made;
  OnAllThreads([&](size_t number) { made[number] = NewKeys(25000); });
  std::vector<Text> all;
  for (const auto& keys : made) all.insert(all.end(), keys.begin(), keys.end());
  std::sort(all.begin(), all.end());
  EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end());
}

// Saves document after document; the keys that were made besides, as they are told to the parent.
std::string WorkOfAProcess(const TemporaryFolder& folder, const std::string& own) {
  std::string keys;
  for (int round = 0; round < 20; ++round) {
    const auto document = Make<vnDocument>();
    keys += automation::ToUtf8(document->NewStep()->Key()) + "\n";
    if (!document->SaveAs(folder.Name(own + " " + std::to_string(round) + ".vn6"))) return "failed";
  }
  return keys;
}

TEST(Processes, ForkedOnesMakeKeysOfTheirOwnAndSaveBesideEachOther) {
  const TemporaryFolder folder;
  // From here on there are keys in supply, which a child must not hand out again.
  std::string all = automation::ToUtf8(platform::NewKey()) + "\n";
  std::vector<pid_t> children;
  for (int number = 0; number < 4; ++number) {
    const pid_t child = ::fork();
    if (child == 0) {
      // The last one has a child of its own.
      const bool grandchild = number == 3 && ::fork() == 0;
      const std::string own = grandchild ? "grandchild" : std::to_string(number);
      folder.Write(own, WorkOfAProcess(folder, own));
      if (number == 3 && !grandchild) ::wait(nullptr);
      ::_exit(0);
    }
    children.push_back(child);
  }
  all += WorkOfAProcess(folder, "parent");
  for (const pid_t child : children) ASSERT_EQ(::waitpid(child, nullptr, 0), child);
  for (const char* name : {"0", "1", "2", "3", "grandchild"}) {
    all += platform::ReadWholeFile(folder.Name(name)).value_or("failed");
  }
  EXPECT_EQ(all.find("failed"), all.npos);
  std::istringstream lines(all);
  std::set<std::string> keys;
  for (std::string line; std::getline(lines, line);) {
    EXPECT_TRUE(keys.insert(line).second) << line;
  }
  EXPECT_EQ(keys.size(), 6u * 20u + 1u);
}

}  // namespace
}  // namespace vndoc6::testing
