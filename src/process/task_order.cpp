#include "process/task_order.h"

namespace vndoc6 {

std::vector<std::pair<Text, int32_t>> TaskOrderIndex::Above(int32_t order) const {
  std::vector<std::pair<Text, int32_t>> above;
  for (const auto& entry : orders_) {
    if (entry.second > order) above.emplace_back(entry);
  }
  return above;
}

void TaskOrderIndex::CloseGap(int32_t removed_order) {
  for (auto& [key, order] : orders_) {
    if (order > removed_order) --order;
  }
}

}  // namespace vndoc6
