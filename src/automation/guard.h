// How every call of a host enters the library: no exception leaves it. Free of the platform's
// headers, since the slots of the dual interfaces are compiled with the classes.
#pragma once

#include <utility>

namespace vndoc6::automation {

// Runs `body`. When it raises, `report` runs while the exception is being handled, and gives the
// result in its place.
template <class Body, class Report>
auto Guarded(Body&& body, Report&& report) noexcept -> decltype(body()) {
  try {
    return body();
  } catch (...) {
    return report();
  }
}

}  // namespace vndoc6::automation
