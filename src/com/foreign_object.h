// ForeignObject: a host's COM object as an Object, called late-bound: title handlers, converters,
// database objects, the host's own fields and forms.
#pragma once

#include <string>

#include "com/com.h"
#include "vndoc6/automation/object.h"

namespace vndoc6::com {

class ForeignObject final : public automation::Object {
 public:
  explicit ForeignObject(ComPtr<IUnknown> object);

  const ComPtr<IUnknown>& object() const { return object_; }
  // Null for an object that can't be called late-bound; calls of its members raise error 438.
  const ComPtr<IDispatch>& dispatch() const { return dispatch_; }

  std::string_view TypeName() const override;
  int32_t FindMember(std::u16string_view name) override;
  automation::Variant InvokeMember(int32_t id, automation::CallKind kind,
                                   const automation::Arguments& arguments) override;

 private:
  const ComPtr<IUnknown> object_;
  const ComPtr<IDispatch> dispatch_;
  mutable std::string type_name_;  // once asked for
};

}  // namespace vndoc6::com
