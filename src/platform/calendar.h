// Calendar days and automation dates.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/value.h"

namespace tolvane {

/// A date of the proleptic Gregorian calendar with a time of day.
struct CalendarTime {
  std::int32_t year = 1899;
  std::int32_t month = 12;
  std::int32_t day = 30;
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  std::int32_t second = 0;
  std::int32_t millisecond = 0;
  friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

/// Rounded to milliseconds. Years 100 to 9999; error 6 outside.
[[nodiscard]] CalendarTime toCalendar(Date date);
/// Nothing when there is no such day or time.
[[nodiscard]] std::optional<Date> toDate(const CalendarTime& time);
/// Any day of the calendar as an automation date; the caller vouches for the day.
[[nodiscard]] Date dateOf(std::int32_t year, std::int32_t month, std::int32_t day);

/// "yyyymmdd", the one form of a day that a server reads back as the same day under every language setting; with
/// " hh:mm:ss.mmm" behind when there is a time of day.
[[nodiscard]] std::string compactText(Date date);
/// "yyyy-mm-ddThh:mm:ss" with ".mmm" when there are milliseconds.
[[nodiscard]] std::string isoText(Date date);
/// Reads "yyyy-mm-ddThh:mm:ss[.mmm]", "yyyy-mm-dd[ hh:mm[:ss[.mmm]]]", "yyyy/m/d ...", "yyyymmdd ...", or a time alone.
[[nodiscard]] std::optional<Date> parseDate(std::string_view text);

}  // namespace tolvane
