#include <windows.h>

#include <algorithm>

#include "system/local_time.h"

namespace tolvane::system {

LocalTime localTime() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, std::min<int>(now.wSecond, 59), now.wMilliseconds};
}

}  // namespace tolvane::system
