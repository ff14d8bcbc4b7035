#include "legend.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "label.h"

namespace vndoc6::drawing {

Legend LegendOf(const Drawing& drawing, const Box& extent) {
  constexpr double kMargin = 24;
  constexpr double kWidth = 40, kHeight = 22, kRow = 34, kApart = 20, kSize = 11;
  std::vector<const Figure*> in_order;
  for (const Figure& step : drawing.steps) in_order.push_back(&step);
  std::stable_sort(in_order.begin(), in_order.end(),
                   [](const Figure* a, const Figure* b) { return a->step < b->step; });
  Legend legend;
  std::set<std::string_view> known;
  double left = kMargin;
  for (const Figure* step : in_order) {
    const std::string_view name = step->outline->name;
    if (!known.insert(name).second) continue;
    const double text = TextWidth(Text(name.begin(), name.end()), false) * kSize;
    const double width = kWidth + 8 + text + kApart;
    if (left > kMargin && left + width > extent.width) {
      left = kMargin;
      legend.height += kRow;
    }
    Figure sample;
    sample.outline = step->outline;
    sample.quarters = step->quarters;
    sample.box = {left, legend.height, kWidth, kHeight};
    legend.entries.push_back({std::move(sample)});
    left += width;
  }
  if (!legend.entries.empty()) legend.height += kRow;
  return legend;
}

}  // namespace vndoc6::drawing
