#include <windows.h>

#include "automation/local_date.h"

namespace vndoc6::automation {

std::chrono::year_month_day LocalToday() {
  SYSTEMTIME now{};
  ::GetLocalTime(&now);
  return std::chrono::year(now.wYear) / now.wMonth / now.wDay;
}

}  // namespace vndoc6::automation
