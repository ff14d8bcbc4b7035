// The date where this computer is. Found out by src/platform, for systems differ in it.
#pragma once

#include <chrono>

namespace vndoc6::automation {

// Raises error 5 when the clock can't be told.
std::chrono::year_month_day LocalToday();

}  // namespace vndoc6::automation
