// What the library needs of the platform or the host around it, each with a portable default.
// The COM server puts the platform's own in their place; a native host may put its own. All threads
// share them: what a host gives may be called on each.
#pragma once

#include <functional>
#include <vector>

#include "vndoc6/automation/font.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/automation/picture.h"
#include "vndoc6/automation/text.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6::automation {

// Creates an object from nothing; null when it can't.
using ObjectFactory = std::function<Ref<Object>()>;

// Makes objects with this programmatic identifier creatable: title handlers, converters and the
// like. An empty factory takes the entry back. Letter case does not matter.
void RegisterFactory(TextView programmatic_id, ObjectFactory factory);
// An object with that identifier: from the registered factory, else from the platform.
// Raises error 429 with the identifier in the description when there is no such class.
Ref<Object> CreateObject(TextView programmatic_id);
// The same, but null when there is no such class.
Ref<Object> TryCreateObject(TextView programmatic_id);

struct Services {
  std::function<Ref<Font>()> make_font;                                  // a Tahoma, size 9, plain
  std::function<Ref<Picture>(std::vector<uint8_t> bytes)> make_picture;  // no bytes: an empty one
  std::function<Ref<Object>(TextView programmatic_id)> create_object;    // null when there is none
  std::function<Date()> today;                                           // local date, no time
};
// The services in use, as they are now; const, so that nobody changes a copy by mistake.
const Services services();
// Puts others in their place, for all threads.
void UseServices(Services services);

}  // namespace vndoc6::automation
