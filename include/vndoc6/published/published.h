// Everything that hosts can see: what the interface definition, the type library, the COM server's
// registration and the reference documentation are made from.
#pragma once

#include <span>

#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/event_info.h"

namespace vndoc6 {

// A creatable class. Its programmatic identifier is "VNDoc6." followed by its name.
struct PublishedClass {
  const automation::ClassInfo& (*info)();
  const automation::EventInterfaceInfo& (*events)();  // null for a class without events
};

// In the order of the type library; new classes go to the end.
std::span<const PublishedClass> PublishedClasses();
std::span<const automation::EnumInfo* const> PublishedEnums();

// A new object of the class with that name ("vnDocument"), in any letter case; null when there is
// no such class.
automation::Ref<automation::Object> CreatePublished(TextView class_name);

}  // namespace vndoc6
