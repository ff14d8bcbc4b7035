#include "content/salvage_marks.h"

#include <algorithm>
#include <array>

#include "bag/escape.h"
#include "content/salvage_sound.h"
#include "document/saved_form.h"

namespace vndoc6::salvage {
namespace {

using bag::Escape;
using bag::EscapeClass;

constexpr std::string_view kOpening = bag::kEscapeLiterals[0];
constexpr std::string_view kClosing = bag::kEscapeLiterals[1];

// So many texts may be open: the parts, and a text in the deepest of them.
constexpr uint32_t kStates = kDeepestPart + 2;

// What a change costs. A mark is missing more often than one is there that damage has made, and
// where one is missing more may be.
constexpr uint32_t kPutIn = 4;
constexpr uint32_t kPutInMore = 2;
constexpr uint32_t kLeaveOut = 6;
constexpr uint32_t kReadOtherwise = 7;
constexpr uint32_t kNever = UINT32_MAX / 2;

// The marks as they are spelled.
class Finder {
 public:
  explicit Finder(std::string_view file) : file_(file) {}

  std::vector<Mark> Find(std::vector<SoundEntry> sound) {
    size_t begin = 0;
    for (SoundEntry& entry : sound) {
      FindIn(begin, entry.begin);
      for (Mark& mark : entry.marks) {
        mark.sound = true;
        marks_.push_back(mark);
      }
      begin = entry.end;
      entry.marks = {};
    }
    FindIn(begin, file_.size());
    return std::move(marks_);
  }

 private:
  void FindIn(size_t begin, size_t end) {
    for (size_t at = begin; (at = file_.find_first_of("^\"", at)) < end;) {
      at += file_[at] == '"' ? Quote(at) : Caret(at);
    }
  }

  // Each gives the size of what begins at `at`.
  size_t Quote(size_t at) {
    if (file_.substr(0, at + 1).ends_with(kOpening)) {
      Add(at + 1 - kOpening.size(), kOpening.size(), 0, true);
    } else if (file_.substr(at).starts_with(kClosing)) {
      Add(at, kClosing.size(), 0, false);
    }
    return 1;
  }

  size_t Caret(size_t at) {
    const Escape escape = bag::ReadEscape(file_.substr(at));
    const bool opens = escape.what == EscapeClass::kOpening;
    const bool is_mark = escape.size != 0 && (opens || escape.what == EscapeClass::kClosing);
    if (is_mark && escape.level <= kDeepestPart) {
      Add(at, escape.size, static_cast<uint8_t>(escape.level), opens);
    }
    return std::max<size_t>(escape.size, 1);
  }

  void Add(size_t at, size_t size, uint8_t level, bool opens) {
    marks_.push_back({at, static_cast<uint8_t>(size), level, opens});
  }

  std::string_view file_;
  std::vector<Mark> marks_;
};

// What is made of a mark.
enum class Use : uint8_t { kAsSpelled, kAsClosing, kLeftOut, kOpensHere, kClosesHere };

// Finds the cheapest uses of all marks, by the number of texts that are open before each.
class Fitter {
 public:
  Fitter(std::string_view file, std::vector<Mark> marks)
      : file_(file), marks_(std::move(marks)), steps_(marks_.size()) {
    costs_.fill(kNever);
    costs_[0] = 0;
  }

  std::vector<Mark> Fit() {
    for (size_t i = 0; i < marks_.size(); ++i) Look(i);
    TraceBack();
    uint8_t open = 0;
    for (size_t i = 0; i < marks_.size(); ++i) open = Place(i, open);
    GoTo(0, open, file_.size());
    FindPartners();
    return std::move(fitted_);
  }

 private:
  struct Step {
    uint8_t from;
    Use use;
  };

  // Of getting from so many open texts to so many.
  static uint32_t Distance(uint32_t from, uint32_t to) {
    const uint32_t count = from > to ? from - to : to - from;
    return count == 0 ? 0 : kPutIn + (count - 1) * kPutInMore;
  }

  void Look(size_t index) {
    const Mark& mark = marks_[index];
    std::array<uint32_t, kStates> costs;
    costs.fill(kNever);
    const auto offer = [&](uint32_t from, uint32_t to, uint32_t cost, Use use) {
      if (costs_[from] + cost >= costs[to]) return;
      costs[to] = costs_[from] + cost;
      steps_[index][to] = {static_cast<uint8_t>(from), use};
    };
    for (uint32_t open = 0; open < kStates; ++open) {
      if (mark.opens) {
        offer(open, mark.level + 1, Distance(open, mark.level), Use::kAsSpelled);
      } else {
        offer(open, mark.level, Distance(open, mark.level + 1), Use::kAsSpelled);
      }
      if (mark.sound) continue;
      if (MayClose(mark)) {
        offer(open, mark.level, Distance(open, mark.level + 1), Use::kAsClosing);
      }
      offer(open, open, kLeaveOut, Use::kLeftOut);
      if (open + 1 < kStates) offer(open, open + 1, kReadOtherwise, Use::kOpensHere);
      if (open > 0) offer(open, open - 1, kReadOtherwise, Use::kClosesHere);
    }
    costs_ = costs;
  }

  // A text that ends like the beginning of an opening takes its closing's quote for itself.
  bool MayClose(const Mark& mark) const {
    return mark.opens && file_.substr(mark.end()).starts_with(':');
  }

  void TraceBack() {
    uint32_t open = 0;
    for (uint32_t state = 1; state < kStates; ++state) {
      if (costs_[state] + Distance(state, 0) < costs_[open] + Distance(open, 0)) open = state;
    }
    uses_.resize(marks_.size());
    for (size_t i = marks_.size(); i-- > 0;) {
      uses_[i] = steps_[i][open].use;
      open = steps_[i][open].from;
    }
  }

  // The number of texts that are open behind the mark.
  uint8_t Place(size_t index, uint8_t open) {
    Mark mark = marks_[index];
    switch (uses_[index]) {
      case Use::kLeftOut:
        return open;
      case Use::kOpensHere:
      case Use::kClosesHere:
        mark.opens = uses_[index] == Use::kOpensHere;
        mark.level = static_cast<uint8_t>(mark.opens ? open : open - 1);
        mark.spelled = false;
        break;
      case Use::kAsClosing:
        mark.opens = false;
        ++mark.size;
        break;
      case Use::kAsSpelled:
        break;
    }
    const auto inside = static_cast<uint8_t>(mark.level + 1);
    GoTo(mark.opens ? mark.level : inside, open, mark.at);
    fitted_.push_back(mark);
    return mark.opens ? inside : mark.level;
  }

  // Puts in what is missing until so many texts are open.
  void GoTo(uint8_t wanted, uint8_t open, size_t at) {
    while (open > wanted) fitted_.push_back({at, 0, --open, false, false, false});
    while (open < wanted) fitted_.push_back({at, 0, open++, true, false, false});
  }

  void FindPartners() {
    std::vector<size_t> open;
    for (size_t i = 0; i < fitted_.size(); ++i) {
      if (fitted_[i].opens) {
        open.push_back(i);
        continue;
      }
      fitted_[i].partner = open.back();
      fitted_[open.back()].partner = i;
      open.pop_back();
    }
  }

  std::string_view file_;
  std::vector<Mark> marks_;
  std::array<uint32_t, kStates> costs_;
  std::vector<std::array<Step, kStates>> steps_;
  std::vector<Use> uses_;
  std::vector<Mark> fitted_;
};

}  // namespace

std::vector<Mark> FittedMarks(std::string_view file, std::vector<SoundEntry> sound) {
  return Fitter(file, Finder(file).Find(std::move(sound))).Fit();
}

}  // namespace vndoc6::salvage
