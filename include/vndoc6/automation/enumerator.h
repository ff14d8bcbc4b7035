// What For Each walks: a snapshot of a collection, safe against changes while it is walked.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6::automation {

class Enumerator : public Object {
 public:
  explicit Enumerator(std::vector<Ref<Object>> members) : members_(std::move(members)) {}

  // The next member; false at the end.
  bool Next(Ref<Object>& member) {
    if (position_ >= members_.size()) return false;
    member = members_[position_++];
    return true;
  }
  // False when fewer than `count` members were left.
  bool Skip(size_t count) {
    const bool enough = count <= members_.size() - position_;
    position_ = enough ? position_ + count : members_.size();
    return enough;
  }
  void Reset() { position_ = 0; }
  // Another walk over the same snapshot, standing at the same place.
  Ref<Enumerator> Clone() const {
    auto clone = Make<Enumerator>(members_);
    clone->position_ = position_;
    return clone;
  }

 private:
  std::vector<Ref<Object>> members_;
  size_t position_ = 0;
};

}  // namespace vndoc6::automation
