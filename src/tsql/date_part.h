#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "tsql/datetime.h"

namespace tolvane::tsql {

enum class DatePart {
  Year,
  Quarter,
  Month,
  DayOfYear,
  Day,
  Week,
  WeekDay,
  Hour,
  Minute,
  Second,
  Millisecond,
  Microsecond,
  Nanosecond,
  IsoWeek,
};

// One word by which T-SQL calls a part of a date; the full name of each part comes before its abbreviations.
struct DatePartName {
  std::string_view name;
  DatePart part;
};
[[nodiscard]] std::span<const DatePartName> datePartNames();
// Any letter case; nothing for a word that names no part.
[[nodiscard]] std::optional<DatePart> findDatePart(std::string_view name);
[[nodiscard]] std::string_view nameOf(DatePart part);
// Hour and smaller: parts that a `date` does not have.
[[nodiscard]] constexpr bool isTimePart(DatePart part) {
  return part >= DatePart::Hour && part <= DatePart::Nanosecond;
}

// English names, 1 January .. 12; 0 Monday .. 6.
[[nodiscard]] std::string_view monthName(int month);
[[nodiscard]] std::string_view weekDayName(int dayFromMonday);

// DATEPART; dateFirst (1 Monday .. 7 Sunday) decides about week and weekday.
[[nodiscard]] int datePart(DatePart part, DateTime value, int dateFirst);
// DATENAME: month and weekday by name, other parts as the digits of datePart.
[[nodiscard]] std::string dateName(DatePart part, DateTime value, int dateFirst);
// DATEADD; day 29 to 31 becomes the last one of a shorter month. Nothing where the result leaves the bounds, or the
// part cannot be added (microsecond, nanosecond, iso_week).
[[nodiscard]] std::optional<DateTime> dateAdd(DatePart part, std::int64_t number, DateTime value,
                                              const DateBounds& bounds);
// DATEDIFF: how many boundaries of the part lie between the two; weeks begin on Sunday. Nothing where the count does
// not fit in 64 bits (nanoseconds), or the part cannot be counted (iso_week).
[[nodiscard]] std::optional<std::int64_t> dateDiff(DatePart part, DateTime from, DateTime to);

}  // namespace tolvane::tsql
