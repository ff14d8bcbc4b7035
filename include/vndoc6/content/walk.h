// Walk: tells a visitor of every value that a host can read of an object and of all that lies below
// it, in published order. Exports and reports are visitors.
#pragma once

#include <string_view>

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/content/content.h"

namespace vndoc6 {

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

  // The object that is visited for a collection's member: as a rule the member itself. A visitor of
  // large documents may give a copy, which goes with all that reading it builds.
  virtual automation::Ref<automation::Object> ObjectToVisit(automation::Object& member) {
    return &member;
  }
};

// Reports no changes, whatever is built by reading. Visitors must not change what they visit.
void Walk(automation::Object& object, ContentVisitor& visitor);

}  // namespace vndoc6
