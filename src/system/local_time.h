// The clock on the wall.
#pragma once

namespace tolvane::system {

struct LocalTime {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  /// Never above 59: the data types that take it have no leap seconds.
  int second = 0;
  int millisecond = 0;
};

/// Now, in the time zone that the machine (or the process, where it may choose) is set to.
[[nodiscard]] LocalTime localTime();

}  // namespace tolvane::system
