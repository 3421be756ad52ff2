#include <algorithm>
#include <ctime>

#include "system/local_time.h"

namespace tolvane::system {

LocalTime localTime() {
  std::timespec moment{};
  std::timespec_get(&moment, TIME_UTC);
  std::tm local{};
  localtime_r(&moment.tv_sec, &local);
  return {local.tm_year + 1900,
          local.tm_mon + 1,
          local.tm_mday,
          local.tm_hour,
          local.tm_min,
          std::min(local.tm_sec, 59),
          static_cast<int>(moment.tv_nsec / 1'000'000)};
}

}  // namespace tolvane::system
