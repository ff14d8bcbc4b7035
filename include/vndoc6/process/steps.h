// vnSteps: the document's steps, and their numbering.
#pragma once

#include <memory>
#include <vector>

#include "vndoc6/collections/collection.h"
#include "vndoc6/process/step.h"

namespace vndoc6 {

class StepNumbers;

class vnSteps : public Collection<vnStep> {
 public:
  vnSteps();
  ~vnSteps() override;

  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // Adds a step: one without a key gets a fresh one, one without a document this collection's, one
  // without a number the next. A step that has a number keeps it, taken or not. Nothing happens
  // when its key is in the collection already. Raises StepAdded.
  void Add(vnStep* poStep);
  // Takes a step out, and out of the numbering: those above it move down. Its links stay. Raises
  // StepRemoved. Nothing happens when there is no such step.
  void Remove(const automation::Variant& pvRef);
  // Empties the collection. Raises nothing.
  void RemoveAll();

  // The highest step number; 0 when there is none.
  int32_t LastIndex() const;
  // The first step, in the order of the collection, with that number; Nothing when there is none.
  automation::Ref<vnStep> ItemByStepIndex(int32_t plStepIndex) const;
  // The step with exactly that key, letter case included; Nothing when there is none.
  automation::Ref<vnStep> ItemByStepKey(const Text& psKey) const;

 private:
  friend struct Inside;
  void Write(bag::BagWriter& writer);
  void Read(const bag::KeptText& text);
  // A step that calls this collection its owner bears another number, or another key, now.
  void NumberChanged(vnStep& step, int32_t previous);
  void KeyChanged();
  // Adds `by` to the numbers from `low` to `high`, for `mover` to take its place; steps with its
  // number stay. Those that a handler takes away meanwhile stay as it left them. False when it
  // took `mover` itself out of the collection.
  bool ShiftNumbers(int32_t low, int32_t high, int32_t by, const vnStep& mover);

  const StepNumbers& Numbers() const;
  template <class Update>
  void UpdateNumbers(Update update);
  std::vector<automation::Ref<vnStep>> StepsNumbered(int32_t low, int32_t high) const;
  bool Holds(const vnStep& step) const;

  // Made from the steps when somebody first asks for a number: a load asks for none.
  mutable std::unique_ptr<StepNumbers> numbers_;
  // A step changes without telling this collection (another is its owner), or was given another
  // key by a Load: look at every step, as long as the collection lives.
  bool untracked_ = false;
  // How often steps were taken out: whether a handler did so.
  uint32_t removals_ = 0;
};

}  // namespace vndoc6
