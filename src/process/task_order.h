// TaskOrderIndex: the orders of the tasks that a step made itself.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vndoc6/automation/text.h"

namespace vndoc6 {

// Task keys, letter case included, with their orders.
class TaskOrderIndex {
 public:
  size_t size() const { return orders_.size(); }
  // A key that is there already gets the new order.
  void Add(const Text& key, int32_t order) { orders_.insert_or_assign(key, order); }
  // False, and nothing happened, for an unknown key.
  bool Remove(const Text& key) { return orders_.erase(key) > 0; }
  void Clear() { orders_.clear(); }

  // The keys with an order above that one, with their orders.
  std::vector<std::pair<Text, int32_t>> Above(int32_t order) const;
  // Moves every order above the removed one down by one.
  void CloseGap(int32_t removed_order);

 private:
  std::unordered_map<Text, int32_t> orders_;
};

}  // namespace vndoc6
