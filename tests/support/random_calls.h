// Late-bound calls of any member, with any arguments, in any order, on objects of every published
// class, from inside event handlers too. What is called is read from bytes, so that a fuzzer can
// steer it.
#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "vndoc6/automation/event_info.h"
#include "vndoc6/automation/object.h"

namespace vndoc6::testing {

class RandomCalls : private automation::EventSink {
 public:
  // File names are those of a few files in the folder, whatever the bytes are. Its name ends with
  // a slash.
  RandomCalls(std::span<const uint8_t> bytes, Text folder);
  ~RandomCalls() override;
  RandomCalls(const RandomCalls&) = delete;
  RandomCalls& operator=(const RandomCalls&) = delete;

  // Until the bytes are used up. Errors that a host would see are part of it; anything else that
  // is thrown comes through.
  void Run();
  // The members called so far: "vnStep.NewTask".
  const std::set<std::string>& called() const { return called_; }

 private:
  uint8_t Next();
  size_t Below(size_t end) { return end > 1 ? Next() % end : 0; }
  automation::Object& AnyObject() { return *objects_[Below(objects_.size())]; }
  void Keep(const automation::Variant& result);

  void Step();
  void Create();
  void Release();
  void Listen();
  void Call();
  automation::Variant Argument(const automation::ParameterInfo& parameter);
  automation::Variant ObjectArgument(const automation::TypeInfo& type);
  automation::Variant AnyValue();
  int32_t AnyLong();
  Text AnyText();

  void OnEvent(const automation::EventInfo& event,
               std::span<const automation::Variant> arguments) override;

  std::span<const uint8_t> bytes_;
  Text folder_;
  std::vector<automation::Ref<automation::Object>> objects_;
  std::vector<automation::Ref<automation::Object>> sources_;  // of the events listened to
  std::vector<Text> texts_;
  std::set<std::string> called_;
  int depth_ = 0;
};

}  // namespace vndoc6::testing
