// Single calls, in this process: look-ups, changes with a listener, late-bound calls.
#include <benchmark/benchmark.h>

#include <map>

#include "bench/allocations.h"
#include "vndoc6/automation/class_info.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"

namespace vndoc6::bench {
namespace {

using automation::CallKind;
using automation::Ref;
using automation::Variant;

// A document of that many empty steps; made once.
vnDocument& DocumentOf(int64_t steps) {
  static std::map<int64_t, Ref<vnDocument>> documents;
  Ref<vnDocument>& document = documents[steps];
  if (!document) {
    document = automation::Make<vnDocument>();
    for (int64_t i = 0; i < steps; ++i) document->NewStep();
  }
  return *document;
}

// --- Look-ups: the same thousand steps, spread over the whole document ---

constexpr int32_t kLookups = 1000;

template <class MakeArgument, class LookUp>
void LookUpSteps(benchmark::State& state, MakeArgument&& make_argument, LookUp&& look_up) {
  const Ref<vnSteps> steps = DocumentOf(state.range(0)).Steps();
  const int32_t stride = steps->Count() / kLookups;
  std::vector<decltype(make_argument(*steps, 1))> arguments;
  for (int32_t i = 0; i < kLookups; ++i) {
    arguments.push_back(make_argument(*steps, 1 + i * stride));
  }
  for (auto _ : state) {
    for (const auto& argument : arguments) benchmark::DoNotOptimize(look_up(*steps, argument));
  }
}

Variant KeyAt(vnSteps& steps, int32_t at) { return Variant(steps.Item(at)->Key()); }
const auto look_up_item = [](vnSteps& steps, const Variant& which) { return steps.Item(which); };

void ItemByKey(benchmark::State& state) { LookUpSteps(state, &KeyAt, look_up_item); }
void ItemByPosition(benchmark::State& state) {
  LookUpSteps(
      state, [](vnSteps&, int32_t at) { return Variant(at); }, look_up_item);
}
void ItemByStepKey(benchmark::State& state) {
  LookUpSteps(
      state, [](vnSteps& steps, int32_t at) { return steps.Item(at)->Key(); },
      [](vnSteps& steps, const Text& key) { return steps.ItemByStepKey(key); });
}
void ItemByStepIndex(benchmark::State& state) {
  LookUpSteps(
      state, [](vnSteps&, int32_t at) { return at; },
      [](vnSteps& steps, int32_t index) { return steps.ItemByStepIndex(index); });
}
BENCHMARK(ItemByKey)->Arg(1000)->Arg(100000);
BENCHMARK(ItemByPosition)->Arg(1000)->Arg(100000);
BENCHMARK(ItemByStepKey)->Arg(1000)->Arg(100000);
BENCHMARK(ItemByStepIndex)->Arg(1000)->Arg(100000);

// --- Changes ---

struct Counter : DocumentListener {
  void StepChange(vnStep&, int32_t) override { ++changes; }
  size_t changes = 0;
};

void Changes(benchmark::State& state, bool with_listener) {
  vnDocument& document = DocumentOf(10000);
  const Ref<vnSteps> steps = document.Steps();
  Counter counter;
  if (with_listener) document.AddListener(&counter);
  for (auto _ : state) {
    static size_t round = 0;
    const Text label = ++round % 2 == 0 ? u"one" : u"the other";
    for (int32_t i = 1; i <= steps->Count(); ++i) steps->Item(i)->SetLabel(label);
  }
  document.RemoveListener(&counter);
  if (with_listener != (counter.changes != 0)) state.SkipWithError("not told of the changes");
}
BENCHMARK_CAPTURE(Changes, unheard, false);
BENCHMARK_CAPTURE(Changes, heard, true);

// --- Late-bound calls ---

// What a late-bound call is measured against: a virtual call that hands over the same value, in the
// Variant in which every late-bound caller has it.
struct Value {
  virtual ~Value() = default;
  virtual Variant Get() const { return value; }
  virtual void Put(const Variant& new_value) { value = new_value; }
  Variant value;
};

void VirtualGet(benchmark::State& state, const Variant& result) {
  Value object;
  object.value = result;
  Value* hidden = &object;
  for (auto _ : state) {
    benchmark::DoNotOptimize(hidden);
    benchmark::DoNotOptimize(hidden->Get());
  }
}
void VirtualPut(benchmark::State& state, const Variant& value) {
  Value object;
  Value* hidden = &object;
  for (auto _ : state) {
    benchmark::DoNotOptimize(hidden);
    hidden->Put(value);
    benchmark::ClobberMemory();
  }
}
// More than fits into a Text without memory of its own.
const Variant some_text(u"A name too long for its place");
BENCHMARK_CAPTURE(VirtualGet, number, Variant(8));
BENCHMARK_CAPTURE(VirtualGet, text, some_text);
BENCHMARK_CAPTURE(VirtualPut, number, Variant(8));
BENCHMARK_CAPTURE(VirtualPut, text, some_text);

void LateBoundGet(benchmark::State& state, const char16_t* name) {
  const auto task = automation::Make<vnTask>();
  task->SetName(*some_text.If<Text>());
  automation::Object& object = *task;
  const int32_t id = object.FindMember(name);
  const size_t allocations_before = AllocationCount();
  for (auto _ : state) {
    benchmark::DoNotOptimize(object.InvokeMember(id, CallKind::kGet, {}));
  }
  state.counters["allocations"] =
      benchmark::Counter(static_cast<double>(AllocationCount() - allocations_before),
                         benchmark::Counter::kAvgIterations);
}
BENCHMARK_CAPTURE(LateBoundGet, number, u"TaskOrder");
BENCHMARK_CAPTURE(LateBoundGet, text, u"Name");

void LateBoundPut(benchmark::State& state, const char16_t* name, const Variant& value) {
  const auto task = automation::Make<vnTask>();
  automation::Object& object = *task;
  const int32_t id = object.FindMember(name);
  for (auto _ : state) {
    object.InvokeMember(id, CallKind::kPut, {{&value, 1}, {}});
    benchmark::ClobberMemory();
  }
}
BENCHMARK_CAPTURE(LateBoundPut, number, u"TaskOrder", Variant(8));
BENCHMARK_CAPTURE(LateBoundPut, text, u"Name", some_text);

}  // namespace
}  // namespace vndoc6::bench
