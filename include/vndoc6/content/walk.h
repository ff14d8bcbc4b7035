// Walk: tells a visitor of every value that a host can read of an object and of all that lies below
// it, in published order. Exports and reports are visitors.
#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/content/content.h"

namespace vndoc6 {

// Reading that leaves no trace. As long as it stands, the object is to be read and not changed, and
// the document reports nothing. Then what was built of the object meanwhile is kept as text again,
// so that a large document can be read through in little more than its own memory. What somebody
// still holds a part of stays built; below that, what is held is no part of the object any more.
// Steps and links keep text; any other object stays as reading makes it.
class PassingRead {
 public:
  explicit PassingRead(automation::Object& object);
  ~PassingRead();
  PassingRead(const PassingRead&) = delete;
  PassingRead& operator=(const PassingRead&) = delete;

 private:
  automation::Ref<automation::Object> object_;
  std::function<void()> go_back_;
  std::optional<QuietReading> quiet_;
};

class ContentVisitor {
 public:
  virtual ~ContentVisitor() = default;

  // A property that has no parts: content.is_part is false. Pictures are such values, and so are
  // Nothing and the errors that a host would see.
  virtual void OnValue(const Content& /*content*/) {}

  // An object comes, then what it holds, then its end. `name` is the property that gives it, or
  // the key of a collection's member, empty where it has none; empty for the first object.
  virtual void OnObjectBegin(TextView /*name*/, automation::Object& /*object*/) {}
  virtual void OnObjectEnd(automation::Object& /*object*/) {}

  // Between an object's own properties and its end, where it is a collection: its members.
  virtual void OnMembersBegin(automation::Object& /*collection*/, size_t /*count*/) {}
  virtual void OnMembersEnd(automation::Object& /*collection*/) {}
};

// Reports no changes, whatever is built by reading; the members of collections are left as they
// were, see PassingRead. Visitors must not change what they visit.
void Walk(automation::Object& object, ContentVisitor& visitor);

}  // namespace vndoc6
