#include "platform/calendar.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

#include "platform/conversions.h"
#include "platform/error.h"

namespace tolvane {
namespace {

constexpr double millisecondsPerDay = 86400000.0;
constexpr double firstDay = -657434;  // 0100-01-01
constexpr double lastDay = 2958465;   // 9999-12-31

std::chrono::sys_days epoch() {
  using namespace std::chrono;
  return sys_days{year{1899} / December / 30};
}

bool hasTime(const CalendarTime& time) {
  return time.hour != 0 || time.minute != 0 || time.second != 0 || time.millisecond != 0;
}

std::string padded(std::int32_t value, std::size_t width) {
  std::string digits = std::to_string(value);
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return digits;
}

std::string clockText(const CalendarTime& time) {
  return padded(time.hour, 2) + ":" + padded(time.minute, 2) + ":" + padded(time.second, 2);
}

/// Reads the parts of a date's text one after another.
class DateReader {
 public:
  explicit DateReader(std::string_view text) : rest_(trim(text)) {}

  std::optional<CalendarTime> read() {
    if (rest_.empty()) return std::nullopt;
    CalendarTime time;
    if (!readDay(time)) {
      // A time alone lies on day zero.
      time = CalendarTime{};
      return readClock(time) && rest_.empty() ? std::optional(time) : std::nullopt;
    }
    if (rest_.empty()) return time;
    if (!takeGap() || !readClock(time) || !rest_.empty()) return std::nullopt;
    return time;
  }

 private:
  std::size_t digitsAhead() const {
    std::size_t count = 0;
    while (count < rest_.size() && rest_[count] >= '0' && rest_[count] <= '9') ++count;
    return count;
  }

  std::int32_t take(std::size_t digits) {
    std::int32_t value = 0;
    for (std::size_t i = 0; i < digits; ++i) value = value * 10 + (rest_[i] - '0');
    rest_.remove_prefix(digits);
    return value;
  }

  bool takeMark(char mark) {
    if (!rest_.starts_with(mark)) return false;
    rest_.remove_prefix(1);
    return true;
  }

  bool takeNumber(std::size_t most, std::int32_t& value) {
    const std::size_t count = digitsAhead();
    if (count == 0 || count > most) return false;
    value = take(count);
    return true;
  }

  bool takeGap() {
    if (takeMark('T')) return true;
    const std::size_t blanks = std::min(rest_.find_first_not_of(' '), rest_.size());
    rest_.remove_prefix(blanks);
    return blanks > 0;
  }

  bool readDay(CalendarTime& time) {
    const std::size_t count = digitsAhead();
    if (count == 8) {
      time.year = take(4);
      time.month = take(2);
      time.day = take(2);
      return true;
    }
    if (count != 4) return false;
    time.year = take(4);
    const char mark = rest_.empty() ? '\0' : rest_.front();
    if (mark != '-' && mark != '/') return false;
    return takeMark(mark) && takeNumber(2, time.month) && takeMark(mark) && takeNumber(2, time.day);
  }

  bool readClock(CalendarTime& time) {
    if (!takeNumber(2, time.hour) || !takeMark(':') || !takeNumber(2, time.minute)) return false;
    if (!takeMark(':')) return true;
    if (!takeNumber(2, time.second)) return false;
    if (!takeMark('.')) return true;
    const std::size_t count = digitsAhead();
    if (count == 0 || count > 9) return false;
    time.millisecond = take(std::min<std::size_t>(count, 3));
    for (std::size_t i = count; i < 3; ++i) time.millisecond *= 10;
    // What is below a millisecond is dropped.
    rest_.remove_prefix(count > 3 ? count - 3 : 0);
    return true;
  }

  std::string_view rest_;
};

}  // namespace

CalendarTime toCalendar(Date date) {
  if (!(date.days > firstDay - 1 && date.days < lastDay + 1)) raise(RuntimeError::overflow);
  double day = std::trunc(date.days);
  auto milliseconds = static_cast<std::int64_t>(std::llround(std::abs(date.days - day) * millisecondsPerDay));
  if (milliseconds == static_cast<std::int64_t>(millisecondsPerDay)) {
    milliseconds = 0;
    day += 1;
  }
  if (day > lastDay) raise(RuntimeError::overflow);
  const std::chrono::year_month_day ymd{epoch() + std::chrono::days{static_cast<std::int64_t>(day)}};
  CalendarTime time;
  time.year = static_cast<int>(ymd.year());
  time.month = static_cast<std::int32_t>(static_cast<unsigned>(ymd.month()));
  time.day = static_cast<std::int32_t>(static_cast<unsigned>(ymd.day()));
  time.millisecond = static_cast<std::int32_t>(milliseconds % 1000);
  time.second = static_cast<std::int32_t>(milliseconds / 1000 % 60);
  time.minute = static_cast<std::int32_t>(milliseconds / 60000 % 60);
  time.hour = static_cast<std::int32_t>(milliseconds / 3600000);
  return time;
}

std::optional<Date> toDate(const CalendarTime& time) {
  if (time.year < 100 || time.year > 9999 || time.month < 1 || time.day < 1) return std::nullopt;
  const std::chrono::year_month_day ymd{std::chrono::year{time.year},
                                        std::chrono::month{static_cast<unsigned>(time.month)},
                                        std::chrono::day{static_cast<unsigned>(time.day)}};
  if (!ymd.ok()) return std::nullopt;
  if (time.hour < 0 || time.hour > 23 || time.minute < 0 || time.minute > 59 || time.second < 0 || time.second > 59 ||
      time.millisecond < 0 || time.millisecond > 999) {
    return std::nullopt;
  }
  const double day = dateOf(time.year, time.month, time.day).days;
  const double fraction =
      (((time.hour * 60.0 + time.minute) * 60.0 + time.second) * 1000.0 + time.millisecond) / millisecondsPerDay;
  return Date{day < 0 ? day - fraction : day + fraction};
}

Date dateOf(std::int32_t year, std::int32_t month, std::int32_t day) {
  const std::chrono::year_month_day ymd{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                                        std::chrono::day{static_cast<unsigned>(day)}};
  return Date{static_cast<double>((std::chrono::sys_days{ymd} - epoch()).count())};
}

std::string compactText(Date date) {
  const CalendarTime time = toCalendar(date);
  const std::string day = padded(time.year, 4) + padded(time.month, 2) + padded(time.day, 2);
  if (!hasTime(time)) return day;
  return day + " " + clockText(time) + "." + padded(time.millisecond, 3);
}

std::string isoText(Date date) {
  const CalendarTime time = toCalendar(date);
  const std::string text =
      padded(time.year, 4) + "-" + padded(time.month, 2) + "-" + padded(time.day, 2) + "T" + clockText(time);
  return time.millisecond == 0 ? text : text + "." + padded(time.millisecond, 3);
}

std::optional<Date> parseDate(std::string_view text) {
  const auto time = DateReader(text).read();
  return time ? toDate(*time) : std::nullopt;
}

}  // namespace tolvane
