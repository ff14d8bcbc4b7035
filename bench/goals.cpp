#include "bench/goals.h"

#include <algorithm>
#include <cstdio>
#include <limits>
#include <optional>

#include "bench/registration.h"

namespace vndoc6::bench {
namespace {

enum class Bound { kAtLeast, kAtMost, kNone };

// A ratio of two medians. "@" in a name stands for the size of document.
struct Goal {
  const char* what;
  const char* numerator;
  const char* denominator;
  Bound bound = Bound::kNone;
  double goal = 0;
  double scale = 1;  // brings two sizes to the same unit
  // What was reached where the goal was missed: a guard holds the library to that.
  double baseline = goal;
};

constexpr double kPerStep = double{kSmall} / double{kLarge};
constexpr Bound kAtLeast = Bound::kAtLeast;
constexpr Bound kAtMost = Bound::kAtMost;

// For what waits for the disk: another program's writes can take any time.
constexpr double kUnguarded = std::numeric_limits<double>::infinity();

constexpr Goal kGoals[] = {
    {"load: pugixml's parse / ours", "load-pugixml/@", "load/@", kAtLeast, 3.5},
    {"  values as attributes", "load-attributes/@", "load/@"},
    {"read everything: pugixml's structs / ours", "read-pugixml/@", "read/@", kAtLeast, 1.5, 1,
     1.2},
    {"  values as attributes", "read-attributes/@", "read/@"},
    {"read everything: RapidJSON's walk / ours", "read-rapidjson/@", "read/@", kAtLeast, 1, 1,
     0.45},
    {"read everything: protobuf's parse / ours", "read-protobuf/@", "read/@"},
    {"read everything: SQLite's rows / ours", "read-sqlite/@", "read/@"},
    {"save, nothing built: pugixml / ours", "save-pugixml/@", "save-kept/@", kAtLeast, 3},
    {"  values as attributes", "save-attributes/@", "save-kept/@"},
    {"save, all built and changed: pugixml / ours", "save-changed-pugixml/@", "save-changed/@",
     kAtLeast, 1.2},
    {"  values as attributes", "save-changed-attributes/@", "save-changed/@"},
    {"save, all built and changed: protobuf / ours", "save-protobuf/@", "save-changed/@"},
    {"durable save, new file: ours / write and flush", "save-new-file/@", "write-and-flush/@",
     kAtMost, 1.3, 1, kUnguarded},
    {"durable save, over a file: ours / write and flush", "save-over-file/@", "write-and-flush/@"},
    {"file: size / own characters", "file-size/@#bytes", "own-characters/@#bytes", kAtMost, 1.5},
    {"file: size / XML's", "file-size/@#bytes", "file-size-pugixml/@#bytes"},
    {"  values as attributes", "file-size/@#bytes", "file-size-attributes/@#bytes"},
    {"file: size / protobuf's", "file-size/@#bytes", "file-size-protobuf/@#bytes"},
    {"memory, nothing built / file", "load/@#bytes", "file-size/@#bytes", kAtMost, 1.3},
    {"memory, all built / pugixml's DOM", "read/@#bytes", "load-pugixml/@#bytes", kAtMost, 1.5},
    {"  values as attributes", "read/@#bytes", "load-attributes/@#bytes"},
    {"create: pugixml's DOM / ours", "create-pugixml/@", "create/@", kAtLeast, 1},
    {"  values as attributes", "create-attributes/@", "create/@"},
    {"load: ours / reading the file", "load/@", "read-file/@"},
    {"save, nothing built: ours / memcpy", "save-kept/@", "memcpy/@"},
    {"load, per step: 100,000 / 1,000", "load/100000", "load/1000", kAtMost, 1.2, kPerStep},
    {"read, per step: 100,000 / 1,000", "read/100000", "read/1000", kAtMost, 1.2, kPerStep},
    {"save, nothing built, per step: 100,000 / 1,000", "save-kept/100000", "save-kept/1000",
     kAtMost, 1.2, kPerStep},
    {"save, all built, per step: 100,000 / 1,000", "save-changed/100000", "save-changed/1000",
     kAtMost, 1.2, kPerStep},
    {"create, per step: 100,000 / 1,000", "create/100000", "create/1000", kAtMost, 1.2, kPerStep},
    {"Item by key: 100,000 / 1,000", "ItemByKey/100000", "ItemByKey/1000", kAtMost, 2},
    {"Item by position: 100,000 / 1,000", "ItemByPosition/100000", "ItemByPosition/1000", kAtMost,
     2},
    {"ItemByStepKey: 100,000 / 1,000", "ItemByStepKey/100000", "ItemByStepKey/1000", kAtMost, 2},
    {"ItemByStepIndex: 100,000 / 1,000", "ItemByStepIndex/100000", "ItemByStepIndex/1000", kAtMost,
     2},
    {"10,000 changes: heard / unheard", "Changes/heard", "Changes/unheard", kAtMost, 2},
    {"late-bound get of a Long / virtual call", "LateBoundGet/number", "VirtualGet/number", kAtMost,
     5, 1, 8},
    {"late-bound get of a text / virtual call", "LateBoundGet/text", "VirtualGet/text", kAtMost, 5},
    {"late-bound put of a Long / virtual call", "LateBoundPut/number", "VirtualPut/number", kAtMost,
     5, 1, 12},
    {"late-bound put of a text / virtual call", "LateBoundPut/text", "VirtualPut/text", kAtMost, 5},
};

std::string WithSize(std::string name, size_t steps) {
  const size_t at = name.find('@');
  return at == name.npos ? name : name.replace(at, 1, std::to_string(steps));
}

std::optional<double> MedianOf(const Results& results, const std::string& name) {
  const auto found = results.find(name);
  if (found == results.end() || found->second.empty()) return std::nullopt;
  std::vector<double> values = found->second;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

bool Holds(Bound bound, double ratio, double limit) {
  switch (bound) {
    case Bound::kAtLeast:
      return ratio >= limit;
    case Bound::kAtMost:
      return ratio <= limit;
    case Bound::kNone:
      break;
  }
  return true;
}

// Allocations are counted, so they have no margin: a number needs none, a text that of its value.
int PrintAllocations(const Results& results) {
  int missed = 0;
  for (const auto& [kind, goal] : {std::pair("number", 0.0), std::pair("text", 1.0)}) {
    const auto count = MedianOf(results, std::string("LateBoundGet/") + kind + "#allocations");
    if (!count) continue;
    const bool reached = *count < goal + 0.5;
    if (!reached) ++missed;
    std::printf("%-52s %8.2f   at most %4g   %s\n",
                (std::string("late-bound get of a ") + kind + ": allocations").c_str(), *count,
                goal, reached ? "reached" : "MISSED");
  }
  return missed;
}

}  // namespace

int PrintGoals(const Results& results, bool small, double margin) {
  const size_t steps = small ? kSmall : kUsual;
  int missed = 0;
  std::printf("%-52s %8s   %-12s\n", "Ratio of medians", "", "goal");
  for (const Goal& goal : kGoals) {
    const auto above = MedianOf(results, WithSize(goal.numerator, steps));
    const auto below = MedianOf(results, WithSize(goal.denominator, steps));
    if (!above || !below) continue;
    const double ratio = *above / *below * goal.scale;
    std::printf("%-52s %8.2f", goal.what, ratio);
    if (goal.bound == Bound::kNone) {
      std::printf("\n");
      continue;
    }
    const double limit =
        goal.bound == Bound::kAtLeast ? goal.baseline / margin : goal.baseline * margin;
    if (!Holds(goal.bound, ratio, limit)) ++missed;
    std::printf("   %s %4g   %s\n", goal.bound == Bound::kAtLeast ? "at least" : "at most ",
                goal.goal, Holds(goal.bound, ratio, goal.goal) ? "reached" : "MISSED");
  }
  return missed + PrintAllocations(results);
}

}  // namespace vndoc6::bench
