#include "tests/support/plain_document.h"

#include <algorithm>

#include "automation/inside.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"

namespace vndoc6::testing {

// --- PlainNumbering ---

int32_t PlainNumbering::Highest() const {
  int32_t highest = 0;
  for (const int32_t number : numbers) highest = std::max(highest, number);
  return highest;
}

void PlainNumbering::Remove(size_t at) {
  Put(at, -1);
  numbers.erase(numbers.begin() + static_cast<std::ptrdiff_t>(at));
}

void PlainNumbering::TakeOut(size_t at) {
  const int32_t current = numbers[at];
  for (int32_t& other : numbers) {
    if (current >= 1 && other > current) --other;
  }
  numbers[at] = -1;
}

void PlainNumbering::Put(size_t at, int32_t number) {
  const int32_t current = numbers[at];
  if (number == 0) return;
  if (current == 0) {
    numbers[at] = number;
    return;
  }
  if (number < 0) return TakeOut(at);
  number = std::min(number, current < 1 ? Highest() + 1 : Highest());
  const int32_t low = std::min(number, current < 1 ? number : current);
  const int32_t high = std::max(number, current < 1 ? number : current);
  for (int32_t& other : numbers) {
    if (other >= low && other <= high && other != current) other += number <= current ? 1 : -1;
  }
  numbers[at] = number;
}

// --- PlainOrder ---

void PlainOrder::New(const Text& key) {
  const int32_t order = static_cast<int32_t>(counted_.size()) + 1;
  tasks.push_back({key, order});
  counted_[key] = order;
}

void PlainOrder::Remove(const Text& key) {
  const auto task = Find(key);
  if (task == tasks.end()) return;
  const int32_t removed = task->order;
  counted_.erase(key);
  tasks.erase(task);
  for (auto& [moved_key, order] : counted_) {
    if (order <= removed) continue;
    --order;
    const auto moved = Find(moved_key);
    if (moved != tasks.end()) moved->order = order;
  }
}

void PlainOrder::CountAll() {
  counted_.clear();
  for (const Task& task : tasks) counted_[task.key] = task.order;
}

std::vector<PlainOrder::Task>::iterator PlainOrder::Find(const Text& key) {
  return std::find_if(tasks.begin(), tasks.end(),
                      [&](const Task& task) { return automation::EqualsFolded(task.key, key); });
}

// --- PlainDocument ---

void PlainDocument::AddStep(PlainStep step, int32_t number) {
  steps.push_back(std::move(step));
  numbering.Add(number);
}

void PlainDocument::RemoveStep(size_t at) {
  steps.erase(steps.begin() + static_cast<std::ptrdiff_t>(at));
  numbering.Remove(at);
}

void PlainDocument::Prune(PlainStep& step) const {
  std::erase_if(step.dependancies, [&](const Text& key) {
    return std::none_of(steps.begin(), steps.end(),
                        [&](const PlainStep& other) { return other.key == key; });
  });
}

void PlainDocument::Prune() {
  for (PlainStep& step : steps) Prune(step);
}

PlainDocument PlainDocument::Loaded() const {
  PlainDocument loaded = *this;
  // Steps join one by one: those that came to bear no number get the next one of those before.
  loaded.numbering.numbers.clear();
  for (const int32_t number : numbering.numbers) loaded.numbering.Add(number);
  for (PlainStep& step : loaded.steps) {
    step.order.CountNone();
    step.foreign = false;
  }
  return loaded;
}

namespace {

// The first of a row of things that is not as it should be.
class Check {
 public:
  template <class T>
  void Same(const char* what, const T& is, const T& should_be) {
    if (difference_.empty() && !(is == should_be)) difference_ = at_ + what;
  }
  void At(const char* what, size_t index) { at_ = what + std::to_string(index) + " "; }
  bool failed() const { return !difference_.empty(); }
  const std::string& difference() const { return difference_; }

 private:
  std::string at_;
  std::string difference_;
};

void CheckStep(Check& check, vnStep& step, const PlainStep& plain) {
  check.Same("key", step.Key(), plain.key);
  check.Same("label", step.Label(), plain.label);
  check.Same("description", step.Description(), plain.description);
  check.Same("left", step.Figure()->Left(), plain.left);
  const auto& tasks = Inside::store(*step.Tasks());
  check.Same("tasks", tasks.size(), plain.order.tasks.size());
  for (size_t i = 0; i < tasks.size() && !check.failed(); ++i) {
    check.Same("task key", tasks[i].Key(), plain.order.tasks[i].key);
    check.Same("task order", tasks[i].TaskOrder(), plain.order.tasks[i].order);
  }
  std::vector<Text> conditions;
  for (size_t i = 0; i < Inside::store(*step.Conditions()).size(); ++i) {
    conditions.push_back(Inside::store(*step.Conditions())[i].DisplayName());
  }
  check.Same("conditions", conditions, plain.conditions);
  std::vector<Text> dependancies;
  for (int32_t i = 1; i <= step.Dependancies()->Count(); ++i) {
    dependancies.push_back(step.Dependancies()->Key(i));
  }
  check.Same("dependencies", dependancies, plain.dependancies);
}

}  // namespace

std::string PlainDocument::DifferenceFrom(vnDocument& document) const {
  Check check;
  const auto& real_steps = Inside::store(*document.Steps());
  check.Same("steps", real_steps.size(), steps.size());
  check.Same("last index", document.Steps()->LastIndex(), numbering.Highest());
  for (size_t i = 0; i < steps.size() && !check.failed(); ++i) {
    check.At("step ", i);
    check.Same("number", real_steps[i].StepIndex(), numbering.numbers[i]);
    CheckStep(check, real_steps[i], steps[i]);
    check.Same("by key", document.Steps()->ItemByStepKey(steps[i].key).get(), &real_steps[i]);
  }
  const auto& real_links = Inside::store(*document.Links());
  check.Same("links", real_links.size(), links.size());
  for (size_t i = 0; i < links.size() && !check.failed(); ++i) {
    check.At("link ", i);
    check.Same("key", real_links[i].Key(), links[i].key);
    check.Same("origin", real_links[i].OriginStepKey(), links[i].origin);
    check.Same("destination", real_links[i].DestinationStepKey(), links[i].destination);
  }
  const auto& real_containers = Inside::store(*document.ContainerCollection());
  check.Same("containers", real_containers.size(), containers.size());
  for (size_t i = 0; i < containers.size() && !check.failed(); ++i) {
    check.At("container ", i);
    check.Same("key", real_containers[i].Key(), containers[i].key);
    check.Same("label", real_containers[i].Label(), containers[i].label);
  }
  const automation::Ref<Properties> real_bag = document.GetProperties();
  std::vector<std::pair<Text, Text>> entries;
  for (int32_t i = 1; i <= real_bag->Count(); ++i) {
    const Text key = real_bag->Key(i);
    entries.emplace_back(key, real_bag->Value(key, {}).ToText());
  }
  check.Same("bag", entries, bag);
  return check.difference();
}

}  // namespace vndoc6::testing
