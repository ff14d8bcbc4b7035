#include <ctime>

#include "automation/local_date.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::automation {

std::chrono::year_month_day LocalToday() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  // Not std::localtime, which has one place for the answers of all threads.
  if (::localtime_r(&now, &local) == nullptr) throw Error(kInvalidCall);
  return std::chrono::year(local.tm_year + 1900) / (local.tm_mon + 1) / local.tm_mday;
}

}  // namespace vndoc6::automation
