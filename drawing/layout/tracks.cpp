#include "tracks.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <queue>

namespace vndoc6::drawing {
namespace {

constexpr double kClear = 6;      // lines nearer than this would touch
constexpr double kShortest = 10;  // between two bends
// Between more runs than this, order is kept by direction only.
constexpr size_t kMostCompared = 3'000;

class TrackChooser {
 public:
  TrackChooser(const std::vector<Run>& runs, const std::vector<double>& straight) : runs_(runs) {
    parts_.reserve(runs.size());
    uprights_ = straight;
    for (const Run& run : runs) {
      uprights_.push_back(run.upper);
      uprights_.push_back(run.lower);
    }
    std::sort(uprights_.begin(), uprights_.end());
    out_.of_run.resize(runs.size());
    for (size_t i = 0; i < runs.size(); ++i) {
      parts_.push_back({i, runs[i].upper, runs[i].lower});
      if (Length(parts_.size() - 1) < kShortest) Detour();
    }
  }

  Tracks Choose() {
    if (runs_.size() <= kMostCompared) {
      FindOrder();
    } else {
      FindRoughOrder();
    }
    PlaceAll();
    return std::move(out_);
  }

 private:
  // A run, or one of the two parts of a bent one.
  struct Part {
    size_t run;
    double begin, end;  // as it goes
    std::vector<size_t> below = {};
    size_t above_count = 0;
    bool second = false;
    size_t least = 0;  // the first track that is below all that has to be above
    double Low() const { return std::min(begin, end); }
    double High() const { return std::max(begin, end); }
    bool GoesRight() const { return end > begin; }
  };

  void PutAbove(size_t upper, size_t lower) {
    parts_[upper].below.push_back(lower);
    ++parts_[lower].above_count;
  }

  // A run too short for two bends goes by a place farther away.
  void Detour() {
    Part& first = parts_.back();
    Part second = first;
    Track& track = out_.of_run[first.run];
    track.bent = true;
    track.middle = FreePlace(first.Low(), first.High());
    first.end = second.begin = track.middle;
    second.second = true;
    parts_.push_back(second);
    PutAbove(parts_.size() - 2, parts_.size() - 1);
  }

  void FindOrder() {
    std::vector<size_t> order(parts_.size());
    for (size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::sort(order.begin(), order.end(), [this](size_t a, size_t b) {
      return parts_[a].Low() != parts_[b].Low() ? parts_[a].Low() < parts_[b].Low() : a < b;
    });
    std::vector<size_t> active;
    for (const size_t part : order) {
      std::erase_if(
          active, [&](size_t other) { return parts_[other].High() + kClear < parts_[part].Low(); });
      for (const size_t other : active) Compare(other, part);
      active.push_back(part);
    }
  }

  void Compare(size_t a, size_t b) {
    const Part& first = parts_[a];
    const Part& second = parts_[b];
    if (first.run == second.run) return;
    // One ends where the other comes down: it has to be gone by then.
    const bool first_above = std::abs(first.begin - second.end) < kClear;
    const bool second_above = std::abs(second.begin - first.end) < kClear;
    if (first_above) PutAbove(a, b);
    if (second_above) PutAbove(b, a);
    if (first_above || second_above || first.GoesRight() != second.GoesRight()) return;
    // Of two that go one way, the one ahead is above: they don't cross.
    if (first.begin == second.begin) return;
    const bool first_ahead = (first.begin > second.begin) == first.GoesRight();
    PutAbove(first_ahead ? a : b, first_ahead ? b : a);
  }

  // In one sequence: those to the right from the right, then those to the left from the left.
  void FindRoughOrder() {
    std::vector<size_t> order(parts_.size());
    for (size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::stable_sort(order.begin(), order.end(), [this](size_t a, size_t b) {
      const bool right = parts_[a].GoesRight();
      if (right != parts_[b].GoesRight()) return right;
      return right ? parts_[a].begin > parts_[b].begin : parts_[a].begin < parts_[b].begin;
    });
    rough_order_ = std::move(order);
  }

  void PlaceAll() {
    if (!rough_order_.empty()) {
      for (const size_t part : rough_order_) Place(part);
      return;
    }
    std::priority_queue<size_t, std::vector<size_t>, std::greater<>> ready;
    placed_.assign(parts_.size(), false);
    for (size_t i = 0; i < parts_.size(); ++i) {
      if (parts_[i].above_count == 0) ready.push(i);
    }
    for (size_t left = parts_.size(); left > 0;) {
      if (ready.empty()) {
        ready.push(Bend());
        ++left;
      }
      const size_t part = ready.top();
      ready.pop();
      Place(part);
      --left;
      for (const size_t lower : parts_[part].below) {
        parts_[lower].least = std::max(parts_[lower].least, track_ + 1);
        if (--parts_[lower].above_count == 0) ready.push(lower);
      }
    }
  }

  // On the first track that is free there.
  void Place(size_t number) {
    const Part& part = parts_[number];
    track_ = part.least;
    while (!IsFree(track_, part)) ++track_;
    if (track_ >= used_.size()) used_.resize(track_ + 1);
    used_[track_].emplace(part.Low(), part.High());
    if (!placed_.empty()) placed_[number] = true;
    Track& track = out_.of_run[part.run];
    (part.second ? track.second : track.track) = track_;
    out_.count = std::max(out_.count, track_ + 1);
  }

  bool IsFree(size_t track, const Part& part) const {
    if (track >= used_.size()) return true;
    const auto next = used_[track].upper_bound(part.High() + kClear);
    return next == used_[track].begin() || std::prev(next)->second < part.Low() - kClear;
  }

  // Those that are left wait for each other. The longest of them gets a bend: its first part is
  // above what it has to be above, its second below what it has to be below.
  size_t Bend() {
    size_t longest = parts_.size();
    for (size_t i = 0; i < parts_.size(); ++i) {
      if (placed_[i] || out_.of_run[parts_[i].run].bent) continue;
      if (longest == parts_.size() || Length(i) > Length(longest)) longest = i;
    }
    if (longest == parts_.size()) return BreakTie();
    Part second = parts_[longest];
    Track& track = out_.of_run[second.run];
    track.bent = true;
    track.middle = FreePlace(second.Low(), second.High());
    parts_[longest].end = second.begin = track.middle;
    second.second = true;
    second.below.clear();
    // What waits for the whole run waits for its first part; the second one waits in its place.
    const size_t number = parts_.size();
    for (Part& part : parts_) {
      for (size_t& lower : part.below) {
        if (lower == longest) lower = number;
      }
    }
    ++second.above_count;
    parts_.push_back(second);
    placed_.push_back(false);
    parts_[longest].above_count = 0;
    parts_[longest].below.push_back(number);
    return longest;
  }

  double Length(size_t part) const { return parts_[part].High() - parts_[part].Low(); }

  // Only parts of bent ones wait for each other: any of them goes first.
  size_t BreakTie() {
    for (size_t i = 0; i < parts_.size(); ++i) {
      if (placed_[i]) continue;
      parts_[i].above_count = 0;
      return i;
    }
    return 0;
  }

  // Where no other line comes or goes, between the ends or else beside them.
  double FreePlace(double low, double high) const {
    const auto is_free = [&](double x) {
      if (std::abs(x - low) < kShortest || std::abs(x - high) < kShortest) return false;
      const auto next = std::lower_bound(uprights_.begin(), uprights_.end(), x - kClear);
      return next == uprights_.end() || *next > x + kClear;
    };
    const double centre = (low + high) / 2;
    for (double away = 0; away < 4'000; away += 2) {
      if (is_free(centre + away)) return centre + away;
      if (is_free(centre - away)) return centre - away;
    }
    return centre;
  }

  const std::vector<Run>& runs_;
  std::vector<Part> parts_;
  std::vector<double> uprights_;
  std::vector<size_t> rough_order_;
  std::vector<bool> placed_;
  std::vector<std::map<double, double>> used_;  // of each track: from, to
  size_t track_ = 0;                            // of the part placed last
  Tracks out_;
};

}  // namespace

Tracks ChooseTracks(const std::vector<Run>& runs, const std::vector<double>& straight) {
  return TrackChooser(runs, straight).Choose();
}

}  // namespace vndoc6::drawing
