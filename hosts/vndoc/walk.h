// What of an object is written down when all of a document is: the answer for every class comes
// from its member table, so that a new class or member needs nothing here.
#pragma once

#include <functional>
#include <vector>

#include "automation/class_info.h"
#include "automation/object.h"

namespace vndoc {

using vndoc6::automation::ClassInfo;
using vndoc6::automation::MemberInfo;
using vndoc6::automation::Object;
using vndoc6::automation::Ref;
using vndoc6::automation::Variant;

// A property to walk: one that is the object's own, not a way to something that is written down
// elsewhere.
struct WalkedMember {
  const MemberInfo* get;
  const MemberInfo* put;    // null for one that can only be read
  const MemberInfo* count;  // of an indexed property: how many values there are; null for others
};

struct WalkPlan {
  bool is_collection;  // its members are all there is to it
  std::vector<WalkedMember> members;
};

// In slot order.
const WalkPlan& PlanOf(const ClassInfo& info);

Variant GetMember(Object& object, const MemberInfo& member);
// Calls for each member of a collection, in order.
void ForEachIn(Object& collection, const std::function<void(Object&)>& use);

}  // namespace vndoc
