#include "vndoc6/automation/event_info.h"

#include <algorithm>

#include "vndoc6/automation/error.h"

namespace vndoc6::automation {

const EventInfo& EventInterfaceInfo::Find(int32_t event_id) const {
  const auto found = std::find_if(events.begin(), events.end(),
                                  [&](const EventInfo& event) { return event.id == event_id; });
  if (found == events.end()) throw Error(kInvalidCall);
  return *found;
}

}  // namespace vndoc6::automation
