#include "tsql/datetime.h"

#include <array>
#include <cmath>
#include <limits>

namespace tolvane::tsql {
namespace {

constexpr int daysPerEra = 146097;         // 400 years
constexpr int daysFromEraTo1900 = 693901;  // 0000-03-01 .. 1900-01-01

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

// The number that fills the whole of the text; -1 where something else stands there.
int digitsAt(std::string_view text, std::size_t at, std::size_t count) {
  int value = 0;
  for (std::size_t i = at; i < at + count; ++i) {
    if (!isDigit(text[i])) return -1;
    value = value * 10 + (text[i] - '0');
  }
  return value;
}

void putDigits(std::string& text, std::size_t at, std::size_t count, int value) {
  for (std::size_t i = count; i-- > 0; value /= 10) text[at + i] = static_cast<char>('0' + value % 10);
}

}  // namespace

bool isLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int daysInMonth(int year, int month) {
  static constexpr std::array<int, 12> lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && isLeapYear(year) ? 29 : lengths.at(static_cast<std::size_t>(month - 1));
}

// Years are counted from March, so that the leap day is the last of its year.
std::int32_t daysOf(const CalendarDate& date) {
  const int year = date.month <= 2 ? date.year - 1 : date.year;
  const int era = (year >= 0 ? year : year - 399) / 400;
  const int yearOfEra = year - era * 400;
  const int dayOfYear = (153 * (date.month + (date.month > 2 ? -3 : 9)) + 2) / 5 + date.day - 1;
  const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * daysPerEra + dayOfEra - daysFromEraTo1900;
}

CalendarDate calendarDate(std::int32_t days) {
  const int shifted = days + daysFromEraTo1900;
  const int era = (shifted >= 0 ? shifted : shifted - (daysPerEra - 1)) / daysPerEra;
  const int dayOfEra = shifted - era * daysPerEra;
  const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int monthFromMarch = (5 * dayOfYear + 2) / 153;
  const int day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
  const int month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  return {yearOfEra + era * 400 + (month <= 2 ? 1 : 0), month, day};
}

TimeOfDay timeOfDay(std::int32_t ticks) {
  const int seconds = ticks / DateTime::ticksPerSecond;
  const int rest = ticks % DateTime::ticksPerSecond;
  return {seconds / 3600, seconds / 60 % 60, seconds % 60, (rest * 10 + 1) / 3};
}

std::int32_t ticksOf(const TimeOfDay& time) {
  const int seconds = (time.hour * 60 + time.minute) * 60 + time.second;
  return seconds * DateTime::ticksPerSecond + (time.millisecond * 3 + 5) / 10;
}

std::optional<DateTime> carried(std::int64_t days, std::int64_t ticks) {
  std::int64_t whole = ticks / DateTime::ticksPerDay;
  if (ticks % DateTime::ticksPerDay < 0) --whole;
  const std::int64_t sum = days + whole;
  if (sum < std::numeric_limits<std::int32_t>::min() || sum > std::numeric_limits<std::int32_t>::max()) {
    return std::nullopt;
  }
  return DateTime{static_cast<std::int32_t>(sum), static_cast<std::int32_t>(ticks - whole * DateTime::ticksPerDay)};
}

DateTime roundedToMinute(DateTime value) {
  const std::int32_t minutes = (value.ticks + DateTime::ticksPerMinute / 2) / DateTime::ticksPerMinute;
  return carried(value.days, std::int64_t{minutes} * DateTime::ticksPerMinute).value_or(value);
}

std::string storedDate(std::int32_t days) {
  const CalendarDate date = calendarDate(days);
  std::string text = "0000-00-00";
  putDigits(text, 0, 4, date.year);
  putDigits(text, 5, 2, date.month);
  putDigits(text, 8, 2, date.day);
  return text;
}

std::string storedDateTime(DateTime value) {
  const TimeOfDay time = timeOfDay(value.ticks);
  std::string text = storedDate(value.days) + " 00:00:00.000";
  putDigits(text, 11, 2, time.hour);
  putDigits(text, 14, 2, time.minute);
  putDigits(text, 17, 2, time.second);
  putDigits(text, 20, 3, time.millisecond);
  return text;
}

std::optional<DateTime> parseStored(std::string_view text) {
  if (text.size() != 10 && text.size() != 23) return std::nullopt;
  const CalendarDate date{digitsAt(text, 0, 4), digitsAt(text, 5, 2), digitsAt(text, 8, 2)};
  if (text[4] != '-' || text[7] != '-' || date.year < 1 || date.month < 1 || date.month > 12 || date.day < 1 ||
      date.day > daysInMonth(date.year, date.month)) {
    return std::nullopt;
  }
  DateTime value{daysOf(date), 0};
  if (text.size() == 10) return value;
  const TimeOfDay time{digitsAt(text, 11, 2), digitsAt(text, 14, 2), digitsAt(text, 17, 2), digitsAt(text, 20, 3)};
  if (text[10] != ' ' || text[13] != ':' || text[16] != ':' || text[19] != '.' || time.hour < 0 || time.hour > 23 ||
      time.minute < 0 || time.minute > 59 || time.second < 0 || time.second > 59 || time.millisecond < 0) {
    return std::nullopt;
  }
  return carried(value.days, ticksOf(time));
}

double toNumber(DateTime value) {
  return value.days + static_cast<double>(value.ticks) / DateTime::ticksPerDay;
}

std::optional<DateTime> fromNumber(double days) {
  if (!(days >= dateTimeBounds.first && days < dateTimeBounds.last + 1.0)) return std::nullopt;
  const double whole = std::floor(days);
  const auto ticks = static_cast<std::int64_t>(std::llround((days - whole) * DateTime::ticksPerDay));
  const auto value = carried(static_cast<std::int64_t>(whole), ticks);
  return value && dateTimeBounds.hold(value->days) ? value : std::nullopt;
}

}  // namespace tolvane::tsql
