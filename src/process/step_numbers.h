// StepNumbers: which step numbers are in use, so that nobody has to visit every step to find the
// highest one or the step that bears one.
#pragma once

#include <cstdint>
#include <unordered_map>

namespace vndoc6 {

class vnStep;

class StepNumbers {
 public:
  void Add(int32_t number, vnStep& step);
  void Remove(int32_t number, vnStep& step);

  // The highest number in use; 0 when there is none above it.
  int32_t Highest() const { return highest_; }
  // How many steps bear the number.
  uint32_t Count(int32_t number) const;
  // The step that bears the number, when exactly one does.
  vnStep* Only(int32_t number) const;

 private:
  struct Bearers {
    uint32_t count = 0;
    // The exclusive or of all bearers' addresses: the bearer itself when there is one.
    uintptr_t combined = 0;
  };
  void LowerHighest();

  std::unordered_map<int32_t, Bearers> bearers_;
  int32_t highest_ = 0;
};

}  // namespace vndoc6
