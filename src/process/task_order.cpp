#include "process/task_order.h"

namespace vndoc6 {

std::vector<std::pair<Text, int32_t>> TaskOrderIndex::CloseGap(int32_t removed_order) {
  std::vector<std::pair<Text, int32_t>> moved;
  for (auto& [key, order] : orders_) {
    if (order > removed_order) moved.emplace_back(key, --order);
  }
  return moved;
}

}  // namespace vndoc6
