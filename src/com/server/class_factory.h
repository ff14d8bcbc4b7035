// The class factory that creates objects of one published class.
#pragma once

#include "com/com_object.h"
#include "vndoc6/automation/class_info.h"

namespace vndoc6::com {

class ClassFactory final : public ComObject<IClassFactory> {
 public:
  explicit ClassFactory(const automation::ClassInfo& info) : info_(info) {}

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) override;
  STDMETHODIMP LockServer(BOOL lock) override;

 private:
  const automation::ClassInfo& info_;
};

}  // namespace vndoc6::com
