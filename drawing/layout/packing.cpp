#include "packing.h"

#include <algorithm>
#include <cmath>

namespace vndoc6::drawing {

void Pack(std::vector<Box>& parts, double gap) {
  constexpr double kShape = 1.5;  // width by height
  double area = 0;
  double widest = 0;
  for (const Box& part : parts) {
    area += (part.width + gap) * (part.height + gap);
    widest = std::max(widest, part.width);
  }
  const double width = std::max(widest, std::sqrt(area * kShape));
  double left = 0, top = 0, height = 0;
  for (Box& part : parts) {
    if (left > 0 && left + part.width > width) {
      left = 0;
      top += height + gap;
      height = 0;
    }
    part.left = left;
    part.top = top;
    left += part.width + gap;
    height = std::max(height, part.height);
  }
}

}  // namespace vndoc6::drawing
