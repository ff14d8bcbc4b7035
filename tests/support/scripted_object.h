// Objects that a host supplies, made of functions: title handlers, converters, databases.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/automation/text.h"

namespace vndoc6::testing {

// Runs whether the member is read, set or called.
struct ScriptedMember {
  Text name;
  std::function<automation::Variant(std::span<const automation::Variant> arguments)> run;
};

class ScriptedObject : public automation::Object {
 public:
  ScriptedObject(std::string type_name, std::vector<ScriptedMember> members)
      : type_name_(std::move(type_name)), members_(std::move(members)) {}

  std::string_view TypeName() const override { return type_name_; }

  int32_t FindMember(std::u16string_view name) override {
    for (size_t i = 0; i < members_.size(); ++i) {
      if (automation::EqualsFolded(members_[i].name, name)) return static_cast<int32_t>(i + 1);
    }
    return automation::kNoMember;
  }

  automation::Variant InvokeMember(int32_t id, automation::CallKind /*kind*/,
                                   const automation::Arguments& arguments) override {
    // A copy: what runs may let go of the object.
    const ScriptedMember member = members_.at(static_cast<size_t>(id - 1));
    return member.run(arguments.positional);
  }

 private:
  std::string type_name_;
  std::vector<ScriptedMember> members_;
};

inline automation::Ref<automation::Object> MakeScriptedObject(std::string type_name,
                                                              std::vector<ScriptedMember> members) {
  return automation::Make<ScriptedObject>(std::move(type_name), std::move(members));
}

// Makes objects creatable under a programmatic identifier as long as it lives.
class RegisteredFactory {
 public:
  RegisteredFactory(TextView programmatic_id, automation::ObjectFactory factory)
      : programmatic_id_(programmatic_id) {
    automation::RegisterFactory(programmatic_id_, std::move(factory));
  }
  ~RegisteredFactory() { automation::RegisterFactory(programmatic_id_, nullptr); }
  RegisteredFactory(const RegisteredFactory&) = delete;
  RegisteredFactory& operator=(const RegisteredFactory&) = delete;

 private:
  Text programmatic_id_;
};

}  // namespace vndoc6::testing
