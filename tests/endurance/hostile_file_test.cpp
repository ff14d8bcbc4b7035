// Files made to harm whoever loads them: time and memory stay in proportion to their size, and the
// stack stays where it is.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <functional>
#include <string>

#include "bag/escape.h"
#include "tests/endurance/soak.h"
#include "tests/support/saved_text.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"
#include "vndoc6/templates/template_library.h"

namespace vndoc6::testing {
namespace {

using automation::Make;
using automation::Ref;

// Which of the file's parts holds the hostile content.
const char* const kParts[] = {"D", "S", "LK", "P", "C", "RH", "FL", "J", "CN", "Attach"};

// A document file with `content` in one part, not escaped: files can hold anything.
std::string FileWith(const char* part, const std::string& content) {
  return "GUID=~64\"x\":FV=2:DV=s1.2:DT=0:IR=1:" + std::string(part) + "=~64\"" + content + "\":";
}

std::string Repeated(const std::string& piece, size_t count) {
  std::string text;
  text.reserve(piece.size() * count);
  for (size_t i = 0; i < count; ++i) text += piece;
  return text;
}

// Bags in bags, as a writer would write them into a part of the file.
std::string NestedAsWritten(size_t depth) {
  std::string text;
  for (size_t level = 1; level <= depth; ++level) {
    text += 'T';
    bag::AppendEscape(bag::EscapeClass::kOpening, level, text);
  }
  for (size_t level = depth; level > 0; --level) {
    bag::AppendEscape(bag::EscapeClass::kClosing, level, text);
  }
  return text;
}

// Loads the file as both kinds of file, reads the parts and saves: any outcome but a crash will do.
void LoadAndReadAll(const TemporaryFolder& folder, const std::string& bytes) {
  folder.Write("hostile.vn6", bytes);
  const Text name = folder.Name("hostile.vn6");
  try {
    const auto document = Make<vnDocument>();
    document->Load(name, u"");
    document->Files();
    document->Containers();
    document->RevisionHistory();
    document->Chart();
    document->Attachments();
    for (int32_t i = 1; i <= std::min(document->Steps()->Count(), 10); ++i) {
      const Ref<vnStep> step = document->Steps()->Item(automation::Variant(i));
      step->Tasks();
      step->Figure();
      step->GetProperties();
    }
    const Ref<vnLinks> links = document->Links();
    for (int32_t i = 1; i <= std::min(links->Count(), 500); ++i)
      links->Item(automation::Variant(i))->Line();
    SavedText(*document);
  } catch (const automation::Error&) {
  }
  try {
    Make<vnTemplateLibrary>()->Load(name);
  } catch (const automation::Error&) {
  }
}

// The processor time of this thread: what else the machine does is not in it.
double ProcessorSeconds() {
  struct timespec time {};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double Seconds(const TemporaryFolder& folder, const std::string& bytes) {
  const double start = ProcessorSeconds();
  LoadAndReadAll(folder, bytes);
  return ProcessorSeconds() - start;
}

// Four times the content may take four times as long, never sixteen times. A busy machine slows
// one of the two down, but not in each of several tries.
bool IsLinear(const TemporaryFolder& folder, const std::string& small, const std::string& large) {
  for (int tries = 0; tries < 5; ++tries) {
    if (Seconds(folder, large) < 9 * Seconds(folder, small) + 0.05) return true;
  }
  return false;
}

void ExpectLinear(const std::function<std::string(size_t)>& content, size_t count) {
  const TemporaryFolder folder;
  for (const char* part : kParts) {
    EXPECT_TRUE(
        IsLinear(folder, FileWith(part, content(count)), FileWith(part, content(4 * count))))
        << part;
  }
}

// Runs `work` with no more stack than a small thread has.
void OnASmallStack(std::function<void()> work) {
  constexpr size_t kStack = 256 * 1024;
  const auto run = [](void* function) -> void* {
    (*static_cast<std::function<void()>*>(function))();
    return nullptr;
  };
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStack), 0);
  pthread_t thread;
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
}

TEST(HostileFile, DeepNestingNeedsNoStack) {
  constexpr size_t kDepth = 100'000;
  const std::string contents[] = {
      Repeated("T=~64\"", kDepth) + Repeated("\":", kDepth),
      NestedAsWritten(kDepth),
      Repeated("T^z", kDepth),
      Repeated("^i", kDepth),
  };
  const TemporaryFolder folder;
  OnASmallStack([&] {
    for (const char* part : kParts) {
      for (const std::string& content : contents) LoadAndReadAll(folder, FileWith(part, content));
    }
  });
}

TEST(HostileFile, ManyEntriesWithOneKeyTakeLinearTime) {
  ExpectLinear([](size_t count) { return Repeated("Tk^aK^bk^B^A", count); },
               static_cast<size_t>(Times(5000)));
}

TEST(HostileFile, ManyEntriesWithDifferentKeysTakeLinearTime) {
  ExpectLinear(
      [](size_t count) {
        std::string text;
        for (size_t i = 0; i < count; ++i) {
          const std::string key = std::to_string(i);
          text += "T" + key + "^aSI=" + key + ":K^b" + key + "^B^A";
        }
        return text;
      },
      static_cast<size_t>(Times(5000)));
}

TEST(HostileFile, OneLargeValueTakesLinearTimeAndASmallMultipleOfItsMemory) {
  const size_t size = static_cast<size_t>(Times(4)) << 20;
  ExpectLinear([](size_t count) { return std::string(count, 'x'); }, size / 4);
  const TemporaryFolder folder;
  struct rusage before {};
  struct rusage after {};
  ::getrusage(RUSAGE_SELF, &before);
  LoadAndReadAll(folder, FileWith("S", std::string(size, 'x')));
  ::getrusage(RUSAGE_SELF, &after);
  // In kilobytes. The file, the text saved from it, and those of the test's own.
  EXPECT_LT(static_cast<size_t>(after.ru_maxrss - before.ru_maxrss), 12 * (size >> 10) + 20'000);
}

// A member of a collection and a part of it, hundreds of them, each with these entries.
std::string MembersWith(const std::string& entries) {
  std::string text = entries;
  for (int i = 0; i < 300; ++i) {
    text += "T" + std::to_string(i) + "^a" + entries;
    for (const char* part : {"L", "T", "C", "Fig"}) text += part + ("^b" + entries) + "^B";
    text += "^A";
  }
  return text;
}

TEST(HostileFile, CountsAndLengthsThatLie) {
  const TemporaryFolder folder;
  struct rusage before {};
  struct rusage after {};
  ::getrusage(RUSAGE_SELF, &before);
  const double start = ProcessorSeconds();
  for (const char* number :
       {"1000000", "2147483647", "-2147483648", "99999999999999999999", "-1", "1e308", "s1e30"}) {
    // Every number in a file that counts something, or that something is counted on from.
    std::string entries = "EPX_1000000=1:";
    for (const char* key : {"EPC", "NextID", "SI", "PC", "IR", "FV", "DT", "ID", "TO", "PI"}) {
      entries += std::string(key) + "=" + number + ":";
    }
    for (const char* part : kParts) LoadAndReadAll(folder, FileWith(part, MembersWith(entries)));
    LoadAndReadAll(folder, "FV=2:" + entries);
    for (const char* list : {"ReportTemplates", "JumpTemplates"}) {
      LoadAndReadAll(folder, FileWith(list, MembersWith(entries)));
    }
    for (const std::string escape : {"^zo", "^zc", "^zq", "^zi"}) {
      LoadAndReadAll(folder, FileWith("S", "T" + escape + number + ";x"));
    }
  }
  ::getrusage(RUSAGE_SELF, &after);
  EXPECT_LT(ProcessorSeconds() - start, 60);
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 200'000);  // kilobytes
}

}  // namespace
}  // namespace vndoc6::testing
