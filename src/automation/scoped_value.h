// ScopedValue: a variable that has one value as long as this lives, and another from then on.
#pragma once

#include <utility>

namespace vndoc6::automation {

template <class T>
class ScopedValue {
 public:
  ScopedValue(T& variable, T now, T afterwards)
      : variable_(variable), afterwards_(std::move(afterwards)) {
    variable_ = std::move(now);
  }
  ~ScopedValue() { variable_ = std::move(afterwards_); }
  ScopedValue(const ScopedValue&) = delete;
  ScopedValue& operator=(const ScopedValue&) = delete;

 private:
  T& variable_;
  T afterwards_;
};

}  // namespace vndoc6::automation
