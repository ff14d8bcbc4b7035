#include "place_steps.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "box_index.h"
#include "text_room.h"

namespace vndoc6::drawing {
namespace {

constexpr size_t kNowhere = static_cast<size_t>(-1);
constexpr double kMargin = 24;
constexpr double kApart = 40;  // a step and one that is linked to it

// Half of it is a whole number, too.
double Even(double pixels) { return 2 * std::ceil(pixels / 2); }

// Room for the lines at the sides of such a box.
void FitToLines(Figure& figure, int ends, int loops, bool to_right) {
  constexpr double kBetween = 9;
  constexpr double kMost = 400;  // beyond, lines share their places
  double& side = to_right ? figure.box.height : figure.box.width;
  double& other = to_right ? figure.box.width : figure.box.height;
  side = std::max(side, std::min(Even(kBetween * (ends + 1)), kMost));
  if (loops > 0) other = std::max(other, std::min((kBetween + 1) * (2 * loops + 3), kMost));
}

Point Rounded(Point point) { return {std::round(point.x), std::round(point.y)}; }

// Free places among what is placed.
class FreePlaces {
 public:
  void Add(const Box& box) {
    taken_.Add(box);
    bottom_ = std::max(bottom_, box.Bottom());
    left_ = std::min(left_, box.left);
    top_ = std::min(top_, box.top);
  }
  double Bottom() const { return bottom_; }

  // The nearest place to the one wanted.
  Point Find(Point wanted, double width, double height) {
    for (const auto& [across, down] : Offsets()) {
      const Box box{std::round(wanted.x + across), std::round(wanted.y + down), width, height};
      if (box.left < left_ || box.top < top_) continue;
      if (taken_.IsFree(Grown(box, kMargin))) return {box.left, box.top};
    }
    return {kMargin, bottom_ + 2 * kMargin};
  }

 private:
  // The nearest first.
  static const std::vector<std::pair<double, double>>& Offsets() {
    static const std::vector<std::pair<double, double>> offsets = [] {
      constexpr int kMost = 60;
      constexpr double kStep = 20;
      std::vector<std::pair<double, double>> all;
      for (int y = -kMost; y <= kMost; ++y) {
        for (int x = -kMost; x <= kMost; ++x) all.emplace_back(x * kStep, y * kStep);
      }
      std::stable_sort(all.begin(), all.end(), [](const auto& a, const auto& b) {
        return std::hypot(a.first, a.second) < std::hypot(b.first, b.second);
      });
      return all;
    }();
    return offsets;
  }

  BoxIndex taken_;
  double bottom_ = 0;
  double left_ = kMargin, top_ = kMargin;
};

class StepPlacer {
 public:
  StepPlacer(std::vector<Figure>& figures, const std::vector<StepToPlace>& steps,
             const std::vector<LinkToPlace>& links,
             const std::unordered_map<Text, GroupToPlace>& groups, const LayoutStyle& style)
      : figures_(figures), steps_(steps), links_(links), groups_(groups), style_(style) {
    out_.lines.resize(links.size());
    links_of_.resize(steps.size());
    for (size_t i = 0; i < links.size(); ++i) {
      links_of_[links[i].from].push_back(i);
      if (links[i].from != links[i].to) links_of_[links[i].to].push_back(i);
    }
    place_.assign(steps.size(), kNowhere);
    FitSizes();
  }

  PlacedSteps Place() {
    std::vector<size_t> unplaced;
    for (size_t i = 0; i < steps_.size(); ++i) {
      if (steps_[i].unplaced) unplaced.push_back(i);
    }
    if (unplaced.empty()) return std::move(out_);
    if (unplaced.size() == steps_.size()) {
      Take(unplaced, LayOutMembers(unplaced), {kMargin, kMargin});
      return std::move(out_);
    }
    AddPlaced();
    std::vector<size_t> rest;
    for (const std::vector<size_t>& members : HangingTogether(unplaced)) {
      if (!PlaceNear(members)) rest.insert(rest.end(), members.begin(), members.end());
    }
    std::sort(rest.begin(), rest.end());
    if (!rest.empty()) {
      Take(rest, LayOutMembers(rest), {kMargin, free_.Bottom() + 2 * kMargin});
    }
    return std::move(out_);
  }

 private:
  void FitSizes() {
    std::vector<int> above(steps_.size()), below(steps_.size()), loops(steps_.size());
    for (const LinkToPlace& link : links_) {
      if (!link.points.empty()) continue;
      if (link.from == link.to) {
        ++loops[link.from];
      } else {
        ++below[link.from];
        ++above[link.to];
      }
    }
    for (size_t i = 0; i < steps_.size(); ++i) {
      if (!steps_[i].unplaced || !steps_[i].usual_size) continue;
      FitToLabel(figures_[i]);
      FitToLines(figures_[i], std::max(above[i], below[i]), loops[i], style_.to_right);
    }
  }

  void AddPlaced() {
    mixed_ = true;
    for (size_t i = 0; i < steps_.size(); ++i) {
      if (!steps_[i].unplaced) free_.Add(figures_[i].box);
    }
    for (const LinkToPlace& link : links_) {
      for (size_t i = 1; i < link.points.size(); ++i) {
        free_.Add(Around(link.points[i - 1], link.points[i]));
      }
    }
    for (const auto& [key, group] : groups_) {
      if (group.placed) AddFrame(group.box);
    }
  }

  // What is not in it stays outside; what is in it finds room inside.
  void AddFrame(const Box& box) {
    const Box sides[] = {{box.left, box.top, box.width, 0},
                         {box.left, box.Bottom(), box.width, 0},
                         {box.left, box.top, 0, box.height},
                         {box.Right(), box.top, 0, box.height}};
    for (const Box& side : sides) free_.Add(side);
  }

  bool IsWhole(const Text& group) const { return !group.empty() && whole_.count(group) > 0; }

  // Parts that links or a container without placed steps join.
  std::vector<std::vector<size_t>> HangingTogether(const std::vector<size_t>& unplaced) {
    for (const size_t step : unplaced) whole_.insert({steps_[step].group, step});
    for (const StepToPlace& step : steps_) {
      if (!step.unplaced) whole_.erase(step.group);
    }
    for (const auto& [key, group] : groups_) {
      if (group.placed) whole_.erase(key);
    }
    std::vector<size_t> leader(steps_.size());
    std::iota(leader.begin(), leader.end(), size_t{0});
    const auto find = [&](size_t step) {
      while (leader[step] != step) step = leader[step] = leader[leader[step]];
      return step;
    };
    for (const LinkToPlace& link : links_) {
      if (!steps_[link.from].unplaced || !steps_[link.to].unplaced) continue;
      leader[find(link.to)] = find(link.from);
    }
    for (const size_t step : unplaced) {
      if (IsWhole(steps_[step].group)) leader[find(step)] = find(whole_.at(steps_[step].group));
    }
    std::vector<std::vector<size_t>> parts;
    std::unordered_map<size_t, size_t> number;
    for (const size_t step : unplaced) {
      const auto [entry, added] = number.try_emplace(find(step), parts.size());
      if (added) parts.emplace_back();
      parts[entry->second].push_back(step);
    }
    return parts;
  }

  // False when nothing that is placed has to do with these steps.
  bool PlaceNear(const std::vector<size_t>& members) {
    const ChartLayout layout = LayOutMembers(members);
    Point sum;
    double count = 0;
    const auto want = [&](size_t place, double x, double top) {
      const Box& box = layout.boxes[place];
      sum = {sum.x + x - box.CentreX(), sum.y + top - box.top};
      count += 1;
    };
    for (size_t place = 0; place < members.size(); ++place) {
      for (const size_t number : links_of_[members[place]]) {
        const LinkToPlace& link = links_[number];
        const Box& box = layout.boxes[place];
        if (!steps_[link.from].unplaced) WantAfter(figures_[link.from].box, box, place, want);
        if (!steps_[link.to].unplaced) WantBefore(figures_[link.to].box, box, place, want);
      }
    }
    if (count == 0) WantInGroup(members, want);
    if (count == 0) return false;
    const Point place = free_.Find({sum.x / count, sum.y / count}, layout.width, layout.height);
    free_.Add({place.x, place.y, layout.width, layout.height});
    Take(members, layout, place);
    return true;
  }

  template <class Want>
  void WantAfter(const Box& placed, const Box& box, size_t place, const Want& want) const {
    if (style_.to_right) {
      want(place, placed.Right() + kApart + box.width / 2, placed.CentreY() - box.height / 2);
    } else {
      want(place, placed.CentreX(), placed.Bottom() + kApart);
    }
  }
  template <class Want>
  void WantBefore(const Box& placed, const Box& box, size_t place, const Want& want) const {
    if (style_.to_right) {
      want(place, placed.left - kApart - box.width / 2, placed.CentreY() - box.height / 2);
    } else {
      want(place, placed.CentreX(), placed.top - kApart - box.height);
    }
  }

  // Below the steps of the same container, or inside one that is empty.
  template <class Want>
  void WantInGroup(const std::vector<size_t>& members, const Want& want) const {
    for (size_t place = 0; place < members.size(); ++place) {
      const Text& group = steps_[members[place]].group;
      if (group.empty()) continue;
      Box around;
      bool any = false;
      for (size_t i = 0; i < steps_.size(); ++i) {
        if (steps_[i].unplaced || steps_[i].group != group) continue;
        around = any ? Union(around, figures_[i].box) : figures_[i].box;
        any = true;
      }
      const auto frame = groups_.find(group);
      if (any) {
        want(place, around.CentreX(), around.Bottom() + kApart);
      } else if (frame != groups_.end() && frame->second.placed) {
        want(place, frame->second.box.CentreX(), frame->second.box.top + kApart);
      }
    }
  }

  ChartLayout LayOutMembers(const std::vector<size_t>& members) {
    std::vector<LayoutBox> boxes;
    std::vector<LayoutEdge> edges;
    edge_links_.clear();
    group_keys_.assign(1, Text());
    std::unordered_map<Text, size_t> numbers;
    std::vector<size_t> groups;
    std::vector<double> titles(1);
    for (size_t i = 0; i < members.size(); ++i) {
      const size_t step = members[i];
      place_[step] = i;
      const Figure& figure = figures_[step];
      boxes.push_back(
          {figure.box.width, figure.box.height, HasCorners(*figure.outline, figure.quarters)});
      const Text& key = steps_[step].group;
      const auto known = groups_.find(key);
      const bool placed = known != groups_.end() && known->second.placed;
      groups.push_back(0);
      if ((key.empty() && !style_.lanes) || placed || (mixed_ && !IsWhole(key))) continue;
      const auto [entry, added] = numbers.try_emplace(key, group_keys_.size());
      groups.back() = entry->second;
      if (!added) continue;
      group_keys_.push_back(key);
      titles.push_back(known == groups_.end() ? 0 : known->second.title_width);
    }
    if (numbers.empty()) groups.clear();
    for (const size_t member : members) {
      for (const size_t i : links_of_[member]) {
        if (links_[i].from == member) edge_links_.push_back(i);
      }
    }
    std::erase_if(edge_links_, [&](size_t i) {
      return place_[links_[i].to] == kNowhere || !links_[i].points.empty();
    });
    std::sort(edge_links_.begin(), edge_links_.end());
    for (const size_t i : edge_links_) {
      const LinkToPlace& link = links_[i];
      edges.push_back({place_[link.from], place_[link.to], link.label_width, link.label_height});
    }
    for (const size_t member : members) place_[member] = kNowhere;
    return LayOut(boxes, edges, groups, titles, style_);
  }

  // Whole pixels: the document can hold them as they are.
  void Take(const std::vector<size_t>& members, const ChartLayout& layout, Point origin) {
    const auto moved = [&](Point point) {
      return Rounded({point.x + origin.x, point.y + origin.y});
    };
    for (size_t i = 0; i < members.size(); ++i) {
      Figure& figure = figures_[members[i]];
      const Point corner = moved({layout.boxes[i].left, layout.boxes[i].top});
      figure.box = {corner.x, corner.y, layout.boxes[i].width, layout.boxes[i].height};
      figure.laid_out = true;
    }
    for (size_t i = 0; i < edge_links_.size(); ++i) {
      std::vector<Point>& points = out_.lines[edge_links_[i]];
      points = layout.lines[i];
      std::transform(points.begin(), points.end(), points.begin(), moved);
    }
    for (size_t group = 1; group < group_keys_.size(); ++group) {
      const Box& frame = layout.frames[group];
      const Point corner = moved({frame.left, frame.top});
      const Point opposite = moved({frame.Right(), frame.Bottom()});
      const Box box{corner.x, corner.y, opposite.x - corner.x, opposite.y - corner.y};
      const auto [entry, added] = out_.frames.try_emplace(group_keys_[group], box);
      if (!added) entry->second = Union(entry->second, box);
    }
  }

  std::vector<Figure>& figures_;
  const std::vector<StepToPlace>& steps_;
  const std::vector<LinkToPlace>& links_;
  const std::unordered_map<Text, GroupToPlace>& groups_;
  const LayoutStyle& style_;
  FreePlaces free_;
  std::unordered_map<Text, size_t> whole_;  // groups of unplaced steps only, and one of them
  bool mixed_ = false;                      // some steps are placed
  std::vector<std::vector<size_t>> links_of_;
  std::vector<size_t> place_;  // among the members that are laid out
  // Of the members laid out last.
  std::vector<size_t> edge_links_;
  std::vector<Text> group_keys_;
  PlacedSteps out_;
};

}  // namespace

PlacedSteps PlaceSteps(std::vector<Figure>& figures, const std::vector<StepToPlace>& steps,
                       const std::vector<LinkToPlace>& links,
                       const std::unordered_map<Text, GroupToPlace>& groups,
                       const LayoutStyle& style) {
  return StepPlacer(figures, steps, links, groups, style).Place();
}

}  // namespace vndoc6::drawing
