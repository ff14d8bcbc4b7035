#include "bands.h"

#include <algorithm>
#include <map>

namespace vndoc6::drawing {
namespace {

struct Group {
  size_t number;
  size_t first, last;  // layers
};

class BandChooser {
 public:
  BandChooser(Layering& layering, const std::vector<size_t>& groups)
      : layering_(layering), groups_(groups) {}

  void Choose() {
    std::map<size_t, size_t> band_of_group;
    for (const Group& group : FindGroups()) band_of_group[group.number] = BandFor(group);
    for (size_t box = 0; box < groups_.size(); ++box) {
      if (groups_[box] != 0) layering_.cells[box].band = band_of_group[groups_[box]];
    }
    std::vector<size_t> free;
    for (size_t cell = 0; cell < layering_.cells.size(); ++cell) {
      if (!IsGrouped(cell)) free.push_back(cell);
    }
    std::stable_sort(free.begin(), free.end(), [this](size_t a, size_t b) {
      return layering_.cells[a].layer < layering_.cells[b].layer;
    });
    placed_.assign(layering_.cells.size(), false);
    for (const size_t cell : free) {
      layering_.cells[cell].band = FreeBand(cell);
      placed_[cell] = true;
    }
    layering_.band_count = taken_.size() + 1;
  }

 private:
  bool IsGrouped(size_t cell) const { return cell < groups_.size() && groups_[cell] != 0; }

  // From the top down.
  std::vector<Group> FindGroups() const {
    std::map<size_t, Group> found;
    for (size_t box = 0; box < groups_.size(); ++box) {
      if (groups_[box] == 0) continue;
      const size_t layer = layering_.cells[box].layer;
      Group& group =
          found.try_emplace(groups_[box], Group{groups_[box], layer, layer}).first->second;
      group.first = std::min(group.first, layer);
      group.last = std::max(group.last, layer);
    }
    std::vector<Group> groups;
    groups.reserve(found.size());
    for (const auto& [number, group] : found) groups.push_back(group);
    std::stable_sort(groups.begin(), groups.end(),
                     [](const Group& a, const Group& b) { return a.first < b.first; });
    return groups;
  }

  // The leftmost band in which the groups so far end above this one. Band 0 is for no group.
  size_t BandFor(const Group& group) {
    auto band = std::find_if(taken_.begin(), taken_.end(), [&](const std::vector<Group>& groups) {
      return groups.back().last < group.first;
    });
    if (band == taken_.end()) band = taken_.insert(band, std::vector<Group>());
    band->push_back(group);
    return static_cast<size_t>(band - taken_.begin()) + 1;
  }

  bool HasRoom(size_t band, size_t layer) const {
    if (band == 0) return true;
    const std::vector<Group>& groups = taken_[band - 1];
    const auto next =
        std::upper_bound(groups.begin(), groups.end(), layer,
                         [](size_t wanted, const Group& group) { return wanted < group.first; });
    return next == groups.begin() || std::prev(next)->last < layer;
  }

  // In one band with a neighbour if there is room, the one above before the one below. A line that
  // passes stays in the band that it comes from: it may run through a group.
  size_t FreeBand(size_t cell) const {
    const Cell& free = layering_.cells[cell];
    if (free.box == Cell::kPassing) return layering_.cells[free.above.front()].band;
    for (const auto* const neighbours : {&free.above, &free.below}) {
      for (const size_t other : *neighbours) {
        const size_t band = layering_.cells[other].band;
        if ((IsGrouped(other) || placed_[other]) && HasRoom(band, free.layer)) return band;
      }
    }
    return 0;
  }

  Layering& layering_;
  const std::vector<size_t>& groups_;
  std::vector<std::vector<Group>> taken_;  // by band, from the top down
  std::vector<bool> placed_;
};

}  // namespace

void ChooseBands(Layering& layering, const std::vector<size_t>& groups) {
  BandChooser(layering, groups).Choose();
}

}  // namespace vndoc6::drawing
