// Objects as the commands walk them: by their member tables.
#pragma once

#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/enumerator.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/automation/object.h"

namespace vndoc {

using vndoc6::automation::ClassInfo;
using vndoc6::automation::MemberInfo;
using vndoc6::automation::Object;
using vndoc6::automation::Ref;
using vndoc6::automation::Variant;

// Calls for each member of a collection, in order.
template <class Use>
void ForEachIn(Object& collection, Use&& use) {
  const auto members = vndoc6::automation::Enumerate(collection);
  for (Ref<Object> member; members->Next(member);) use(*member);
}

}  // namespace vndoc
