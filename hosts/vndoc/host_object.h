// An object that the program supplies to the library, made of functions.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "objects.h"
#include "vndoc6/automation/services.h"

namespace vndoc {

class HostObject : public Object {
 public:
  // Runs whether the member is read, set or called.
  struct MemberFunction {
    vndoc6::Text name;
    std::function<Variant(std::span<const Variant> arguments)> run;
  };

  explicit HostObject(std::vector<MemberFunction> members) : members_(std::move(members)) {}

  int32_t FindMember(std::u16string_view name) override {
    for (size_t i = 0; i < members_.size(); ++i) {
      if (members_[i].name == name) return static_cast<int32_t>(i);
    }
    return vndoc6::automation::kNoMember;
  }
  Variant InvokeMember(int32_t id, vndoc6::automation::CallKind,
                       const vndoc6::automation::Arguments& arguments) override {
    return members_.at(static_cast<size_t>(id)).run(arguments.positional);
  }

 private:
  std::vector<MemberFunction> members_;
};

// Lets the library create such an object, as long as it lives.
class Supplied {
 public:
  Supplied(vndoc6::Text programmatic_id, std::vector<HostObject::MemberFunction> members)
      : programmatic_id_(std::move(programmatic_id)) {
    vndoc6::automation::RegisterFactory(programmatic_id_, [members = std::move(members)] {
      return Ref<Object>(vndoc6::automation::Make<HostObject>(members));
    });
  }
  ~Supplied() { vndoc6::automation::RegisterFactory(programmatic_id_, nullptr); }
  Supplied(const Supplied&) = delete;
  Supplied& operator=(const Supplied&) = delete;

 private:
  vndoc6::Text programmatic_id_;
};

}  // namespace vndoc
