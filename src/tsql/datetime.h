#pragma once

#include <compare>
#include <cstdint>

namespace tolvane::tsql {

// A moment as SQL Server's datetime holds it: whole days since 1900-01-01 and ticks of 1/300 second since midnight.
struct DateTime {
  static constexpr std::int32_t ticksPerSecond = 300;
  static constexpr std::int32_t ticksPerDay = 24 * 60 * 60 * ticksPerSecond;

  std::int32_t days = 0;
  std::int32_t ticks = 0;  // 0 .. ticksPerDay - 1

  auto operator<=>(const DateTime&) const = default;
};

}  // namespace tolvane::tsql
