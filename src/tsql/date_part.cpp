#include "tsql/date_part.h"

#include <algorithm>
#include <array>

namespace tolvane::tsql {
namespace {

constexpr std::array names{
    DatePartName{"year", DatePart::Year},       DatePartName{"yy", DatePart::Year},
    DatePartName{"yyyy", DatePart::Year},       DatePartName{"quarter", DatePart::Quarter},
    DatePartName{"qq", DatePart::Quarter},      DatePartName{"q", DatePart::Quarter},
    DatePartName{"month", DatePart::Month},     DatePartName{"mm", DatePart::Month},
    DatePartName{"m", DatePart::Month},         DatePartName{"dayofyear", DatePart::DayOfYear},
    DatePartName{"dy", DatePart::DayOfYear},    DatePartName{"y", DatePart::DayOfYear},
    DatePartName{"day", DatePart::Day},         DatePartName{"dd", DatePart::Day},
    DatePartName{"d", DatePart::Day},           DatePartName{"week", DatePart::Week},
    DatePartName{"wk", DatePart::Week},         DatePartName{"ww", DatePart::Week},
    DatePartName{"weekday", DatePart::WeekDay}, DatePartName{"dw", DatePart::WeekDay},
    DatePartName{"w", DatePart::WeekDay},       DatePartName{"hour", DatePart::Hour},
    DatePartName{"hh", DatePart::Hour},         DatePartName{"minute", DatePart::Minute},
    DatePartName{"mi", DatePart::Minute},       DatePartName{"n", DatePart::Minute},
    DatePartName{"second", DatePart::Second},   DatePartName{"ss", DatePart::Second},
    DatePartName{"s", DatePart::Second},        DatePartName{"millisecond", DatePart::Millisecond},
    DatePartName{"ms", DatePart::Millisecond},  DatePartName{"microsecond", DatePart::Microsecond},
    DatePartName{"mcs", DatePart::Microsecond}, DatePartName{"nanosecond", DatePart::Nanosecond},
    DatePartName{"ns", DatePart::Nanosecond},   DatePartName{"iso_week", DatePart::IsoWeek},
    DatePartName{"isowk", DatePart::IsoWeek},   DatePartName{"isoww", DatePart::IsoWeek},
};

constexpr std::int64_t largestCount = 1'000'000'000'000;  // beyond any distance of two dates in milliseconds / 300

std::int64_t floorDivide(std::int64_t value, std::int64_t divisor) {
  return value / divisor - (value % divisor < 0 ? 1 : 0);
}

int dayFromMonday(std::int32_t days) {
  return static_cast<int>(((days % 7) + 7) % 7);
}  // 1900-01-01 was a Monday

int dayOfYear(std::int32_t days) {
  return days - daysOf({calendarDate(days).year, 1, 1}) + 1;
}

int weekOfYear(std::int32_t days, int dateFirst) {
  const int firstWeekDay = (dayFromMonday(daysOf({calendarDate(days).year, 1, 1})) - (dateFirst - 1) + 7) % 7;
  return (dayOfYear(days) - 1 + firstWeekDay) / 7 + 1;
}

// The week belongs to the year that its Thursday is in.
int isoWeek(std::int32_t days) {
  return (dayOfYear(days - dayFromMonday(days) + 3) - 1) / 7 + 1;
}

std::optional<DateTime> addMonths(std::int64_t months, DateTime value) {
  constexpr std::int64_t monthsOfAllYears = 12 * 10000;
  if (months < -monthsOfAllYears || months > monthsOfAllYears) return std::nullopt;
  CalendarDate date = calendarDate(value.days);
  const std::int64_t count = date.year * 12LL + date.month - 1 + months;
  if (count < 12 || count >= monthsOfAllYears) return std::nullopt;
  date.year = static_cast<int>(count / 12);
  date.month = static_cast<int>(count % 12) + 1;
  date.day = std::min(date.day, daysInMonth(date.year, date.month));
  return DateTime{daysOf(date), value.ticks};
}

std::optional<DateTime> addTicks(std::int64_t number, std::int64_t ticksEach, DateTime value) {
  if (number < -largestCount || number > largestCount) return std::nullopt;
  return carried(value.days, value.ticks + number * ticksEach);
}

std::optional<DateTime> addMilliseconds(std::int64_t number, DateTime value) {
  constexpr std::int64_t limit = largestCount * 300;
  if (number < -limit || number > limit) return std::nullopt;
  const std::int64_t tenths = number * 3;
  return carried(value.days, value.ticks + (tenths >= 0 ? tenths + 5 : tenths - 5) / 10);
}

std::optional<DateTime> addUnbounded(DatePart part, std::int64_t number, DateTime value) {
  constexpr std::int64_t largestYears = 1'000'000;
  const bool fewYears = number > -largestYears && number < largestYears;
  switch (part) {
    case DatePart::Year:
      return fewYears ? addMonths(number * 12, value) : std::nullopt;
    case DatePart::Quarter:
      return fewYears ? addMonths(number * 3, value) : std::nullopt;
    case DatePart::Month:
      return addMonths(number, value);
    case DatePart::DayOfYear:
    case DatePart::Day:
    case DatePart::WeekDay:
      return addTicks(number, 0, value) ? carried(value.days + number, value.ticks) : std::nullopt;
    case DatePart::Week:
      return addTicks(number, 0, value) ? carried(value.days + number * 7, value.ticks) : std::nullopt;
    case DatePart::Hour:
      return addTicks(number, DateTime::ticksPerHour, value);
    case DatePart::Minute:
      return addTicks(number, DateTime::ticksPerMinute, value);
    case DatePart::Second:
      return addTicks(number, DateTime::ticksPerSecond, value);
    case DatePart::Millisecond:
      return addMilliseconds(number, value);
    case DatePart::Microsecond:
    case DatePart::Nanosecond:
    case DatePart::IsoWeek:
      return std::nullopt;
  }
  return std::nullopt;
}

std::int64_t unitsOfDay(DateTime value, std::int64_t perDay, std::int32_t ticksEach) {
  return value.days * perDay + value.ticks / ticksEach;
}

std::int64_t milliseconds(DateTime value) {
  const TimeOfDay time = timeOfDay(value.ticks);
  return unitsOfDay(value, 86400, DateTime::ticksPerSecond) * 1000 + time.millisecond;
}

}  // namespace

std::span<const DatePartName> datePartNames() {
  return names;
}

std::optional<DatePart> findDatePart(std::string_view name) {
  const auto equalWord = [name](const DatePartName& row) {
    return std::equal(row.name.begin(), row.name.end(), name.begin(), name.end(), [](char left, char right) {
      return left == (right >= 'A' && right <= 'Z' ? static_cast<char>(right - 'A' + 'a') : right);
    });
  };
  const auto* const found = std::find_if(names.begin(), names.end(), equalWord);
  return found == names.end() ? std::nullopt : std::optional(found->part);
}

std::string_view nameOf(DatePart part) {
  return std::find_if(names.begin(), names.end(), [part](const DatePartName& row) { return row.part == part; })->name;
}

std::string_view monthName(int month) {
  static constexpr std::array<std::string_view, 12> months{"January",   "February", "March",    "April",
                                                           "May",       "June",     "July",     "August",
                                                           "September", "October",  "November", "December"};
  return months.at(static_cast<std::size_t>(month - 1));
}

std::string_view weekDayName(int dayFromMonday) {
  static constexpr std::array<std::string_view, 7> days{"Monday", "Tuesday",  "Wednesday", "Thursday",
                                                        "Friday", "Saturday", "Sunday"};
  return days.at(static_cast<std::size_t>(dayFromMonday));
}

int datePart(DatePart part, DateTime value, int dateFirst) {
  const CalendarDate date = calendarDate(value.days);
  const TimeOfDay time = timeOfDay(value.ticks);
  switch (part) {
    case DatePart::Year:
      return date.year;
    case DatePart::Quarter:
      return (date.month - 1) / 3 + 1;
    case DatePart::Month:
      return date.month;
    case DatePart::DayOfYear:
      return dayOfYear(value.days);
    case DatePart::Day:
      return date.day;
    case DatePart::Week:
      return weekOfYear(value.days, dateFirst);
    case DatePart::WeekDay:
      return (dayFromMonday(value.days) - (dateFirst - 1) + 7) % 7 + 1;
    case DatePart::Hour:
      return time.hour;
    case DatePart::Minute:
      return time.minute;
    case DatePart::Second:
      return time.second;
    case DatePart::Millisecond:
      return time.millisecond;
    case DatePart::Microsecond:
      return time.millisecond * 1000;
    case DatePart::Nanosecond:
      return time.millisecond * 1'000'000;
    case DatePart::IsoWeek:
      return isoWeek(value.days);
  }
  return 0;
}

std::string dateName(DatePart part, DateTime value, int dateFirst) {
  if (part == DatePart::Month) return std::string(monthName(calendarDate(value.days).month));
  if (part == DatePart::WeekDay) return std::string(weekDayName(dayFromMonday(value.days)));
  return std::to_string(datePart(part, value, dateFirst));
}

std::optional<DateTime> dateAdd(DatePart part, std::int64_t number, DateTime value, const DateBounds& bounds) {
  const auto sum = addUnbounded(part, number, value);
  return sum && bounds.hold(sum->days) ? sum : std::nullopt;
}

std::optional<std::int64_t> dateDiff(DatePart part, DateTime from, DateTime to) {
  const CalendarDate first = calendarDate(from.days);
  const CalendarDate last = calendarDate(to.days);
  const int months = (last.year - first.year) * 12 + last.month - first.month;
  constexpr std::int64_t nanosecondsEach = 1'000'000;
  constexpr std::int64_t mostMilliseconds = INT64_MAX / nanosecondsEach;
  const std::int64_t distance = milliseconds(to) - milliseconds(from);
  switch (part) {
    case DatePart::Year:
      return last.year - first.year;
    case DatePart::Quarter:
      return last.year * 4 + (last.month - 1) / 3 - first.year * 4 - (first.month - 1) / 3;
    case DatePart::Month:
      return months;
    case DatePart::DayOfYear:
    case DatePart::Day:
    case DatePart::WeekDay:
      return to.days - from.days;
    case DatePart::Week:
      return floorDivide(to.days + 1, 7) - floorDivide(from.days + 1, 7);
    case DatePart::Hour:
      return unitsOfDay(to, 24, DateTime::ticksPerHour) - unitsOfDay(from, 24, DateTime::ticksPerHour);
    case DatePart::Minute:
      return unitsOfDay(to, 1440, DateTime::ticksPerMinute) - unitsOfDay(from, 1440, DateTime::ticksPerMinute);
    case DatePart::Second:
      return unitsOfDay(to, 86400, DateTime::ticksPerSecond) - unitsOfDay(from, 86400, DateTime::ticksPerSecond);
    case DatePart::Millisecond:
      return distance;
    case DatePart::Microsecond:
      return distance * 1000;
    case DatePart::Nanosecond:
      if (distance > mostMilliseconds || distance < -mostMilliseconds) return std::nullopt;
      return distance * nanosecondsEach;
    case DatePart::IsoWeek:
      return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace tolvane::tsql
