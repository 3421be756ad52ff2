#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tolvane::tsql {

// A moment as SQL Server's datetime holds it: whole days since 1900-01-01 and ticks of 1/300 second since midnight.
struct DateTime {
  static constexpr std::int32_t ticksPerSecond = 300;
  static constexpr std::int32_t ticksPerMinute = 60 * ticksPerSecond;
  static constexpr std::int32_t ticksPerHour = 60 * ticksPerMinute;
  static constexpr std::int32_t ticksPerDay = 24 * ticksPerHour;

  std::int32_t days = 0;
  std::int32_t ticks = 0;  // 0 .. ticksPerDay - 1

  auto operator<=>(const DateTime&) const = default;
};

// A day of the Gregorian calendar, also before its introduction.
struct CalendarDate {
  int year = 1900;
  int month = 1;  // 1 .. 12
  int day = 1;    // 1 .. 31

  bool operator==(const CalendarDate&) const = default;
};

// A time of day, to the millisecond.
struct TimeOfDay {
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;

  bool operator==(const TimeOfDay&) const = default;
};

// The types that hold a date, with the days they reach from and to (since 1900-01-01).
struct DateBounds {
  std::int32_t first;
  std::int32_t last;
  [[nodiscard]] bool hold(std::int64_t days) const { return days >= first && days <= last; }
};
inline constexpr DateBounds dateBounds{-693595, 2958463};     // 0001-01-01 .. 9999-12-31
inline constexpr DateBounds dateTimeBounds{-53690, 2958463};  // 1753-01-01 .. 9999-12-31
inline constexpr DateBounds smallDateTimeBounds{0, 65535};    // 1900-01-01 .. 2079-06-06

[[nodiscard]] bool isLeapYear(int year);
[[nodiscard]] int daysInMonth(int year, int month);
[[nodiscard]] std::int32_t daysOf(const CalendarDate& date);
[[nodiscard]] CalendarDate calendarDate(std::int32_t days);

// Ticks are rounded to .000, .003 and .007 when they are shown as milliseconds.
[[nodiscard]] TimeOfDay timeOfDay(std::int32_t ticks);
// The nearest tick; 24:00 (23:59:59.999 comes to it) is ticksPerDay, which the caller carries over.
[[nodiscard]] std::int32_t ticksOf(const TimeOfDay& time);
// With ticks beyond a day (or below 0) carried into the days; nothing when the days leave a 32-bit number.
[[nodiscard]] std::optional<DateTime> carried(std::int64_t days, std::int64_t ticks);
// To the minute, half a minute up, as smalldatetime holds it.
[[nodiscard]] DateTime roundedToMinute(DateTime value);

// The stored forms: 'yyyy-mm-dd hh:mm:ss.mmm' and 'yyyy-mm-dd'. Only exactly these are read; time is midnight where it
// is not written.
[[nodiscard]] std::string storedDateTime(DateTime value);
[[nodiscard]] std::string storedDate(std::int32_t days);
[[nodiscard]] std::optional<DateTime> parseStored(std::string_view text);
[[nodiscard]] constexpr bool isStoredDate(std::string_view text) {
  return text.size() == 10;
}

// Days and their fraction since 1900-01-01 00:00, the number of a datetime.
[[nodiscard]] double toNumber(DateTime value);
// The nearest tick; nothing outside dateTimeBounds.
[[nodiscard]] std::optional<DateTime> fromNumber(double days);

}  // namespace tolvane::tsql
