// What a host's interface pointer to an object of the model points to.
#pragma once

#include "vndoc6/automation/object.h"

namespace vndoc6::com {

class Face;

struct DualHead {
  const void* const* vtable;  // must be first: this is what makes it an interface pointer
  automation::Object* object;
  Face* face;
};

// A running call. It holds the object as a host does, and with it the DLL: the call may let go of
// the host's last reference.
class Running {
 public:
  explicit Running(const DualHead& self);
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;
  ~Running();
  automation::Object& operator*() const { return object_; }

 private:
  Face& face_;
  automation::Object& object_;
};

}  // namespace vndoc6::com
