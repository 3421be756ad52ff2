// Functions on dates. Parts come as one of the names of the table of date parts, dates as they are stored.
#include <array>
#include <limits>
#include <optional>
#include <string>

#include "tsql/convert.h"
#include "tsql/date_part.h"
#include "tsql/date_text.h"
#include "tsql/function_groups.h"
#include "tsql/sql_error.h"

namespace tolvane::tsql {
namespace {

DatePart partOf(const Datum& word, std::string_view function) {
  const auto part = findDatePart(word.text());
  if (!part) throw SqlError(Message::NotDatepart, {word.text(), function});
  return *part;
}

// A moment of which a part is asked for. That of a text is finer than a datetime.
struct Moment {
  DateTime value;
  std::optional<std::int32_t> fraction;  // ten-millionths of the second, beside a value without a fraction
  bool dateAlone = false;
};

constexpr std::size_t storedSecondLength = 19;
constexpr std::size_t fineLength = storedSecondLength + 8;

Moment momentOf(const Datum& value) {
  const std::string_view text = value.kind() == Kind::Text ? value.text() : std::string_view();
  if (text.size() != fineLength) return {dateTimeOf(value), {}, isStoredDate(text)};
  const auto second = parseStored(std::string(text.substr(0, storedSecondLength)) + ".000");
  if (!second) throw SqlError(Message::DateSyntax);
  std::int32_t fraction = 0;
  for (const char c : text.substr(storedSecondLength + 1)) fraction = fraction * 10 + (c - '0');
  return {*second, fraction, false};
}

// A text as `momentOf` reads it.
Result moment(Call& call) {
  if (anyNull(call)) return {};
  const DateText read = parseDateText(call.args[0].text(), DateOrder::MonthDayYear, dateBounds);
  if (read.outcome != DateTextOutcome::Read) throw SqlError(Message::DateSyntax);
  const std::string digits = std::to_string(10'000'000 + read.fraction);
  return storedDateTime(read.second).substr(0, storedSecondLength) + "." + digits.substr(1);
}

constexpr bool isFinerThanSecond(DatePart part) {
  return part >= DatePart::Millisecond && part <= DatePart::Nanosecond;
}

// How many ten-millionths of a second a unit has, for the units below a second.
constexpr std::int64_t perUnit(DatePart part) {
  return part == DatePart::Millisecond ? 10'000 : part == DatePart::Microsecond ? 10 : 1;
}

int partOfMoment(DatePart part, const Moment& moment, std::string_view function, int dateFirst) {
  if (moment.dateAlone && isTimePart(part)) {
    throw SqlError(Message::UnsupportedDatePart, {nameOf(part), function, "date"});
  }
  if (!moment.fraction || !isFinerThanSecond(part)) return datePart(part, moment.value, dateFirst);
  const auto count = static_cast<int>(*moment.fraction / perUnit(part));
  return part == DatePart::Nanosecond ? count * 100 : count;
}

// Ten-millionths of a second since 1900-01-01.
std::int64_t fineCount(const Moment& moment) {
  const std::int64_t seconds = std::int64_t{moment.value.days} * 86400 + moment.value.ticks / DateTime::ticksPerSecond;
  const int milliseconds = timeOfDay(moment.value.ticks).millisecond;
  return seconds * 10'000'000 + moment.fraction.value_or(milliseconds * 10'000);
}

std::optional<std::int64_t> fineDifference(DatePart part, const Moment& from, const Moment& to) {
  const auto count = [part](const Moment& moment) {
    const std::int64_t fine = fineCount(moment);
    const std::int64_t unit = perUnit(part);
    return fine / unit - (fine % unit < 0 ? 1 : 0);
  };
  std::int64_t difference = count(to) - count(from);
  if (part == DatePart::Nanosecond && __builtin_mul_overflow(difference, 100, &difference)) return std::nullopt;
  return difference;
}

Result now(Call& call) {
  return storedDateTime(call.session.now());
}

Result utcNow(Call& call) {
  return storedDateTime(call.session.utcNow());
}

// date[, months to add, none when they are null].
Result endOfMonth(Call& call) {
  if (call.args[0].isNull()) return {};
  const bool adds = call.args.size() > 1 && !call.args[1].isNull();
  CalendarDate date = calendarDate(dateTimeOf(call.args[0]).days);
  date.day = 1;
  const auto month = dateAdd(DatePart::Month, adds ? wholeNumber(call.args[1]) : 0, {daysOf(date), 0}, dateBounds);
  if (!month) throw SqlError(Message::DateOverflow, {"date"});
  date = calendarDate(month->days);
  date.day = daysInMonth(date.year, date.month);
  return storedDate(daysOf(date));
}

// Arguments from a number on as a part of a date or time; nothing for one that is out of its range.
class Parts {
 public:
  explicit Parts(const Call& call) : call_(call) {}
  int take(std::int64_t least, std::int64_t most) {
    const std::int64_t value = wholeNumber(call_.args[next_++]);
    valid_ = valid_ && value >= least && value <= most;
    return valid_ ? static_cast<int>(value) : static_cast<int>(least);
  }
  CalendarDate date(const DateBounds& bounds) {
    const int year = take(1, 9999);
    const int month = take(1, 12);
    const CalendarDate date{year, month, take(1, daysInMonth(year, month))};
    valid_ = valid_ && bounds.hold(daysOf(date));
    return date;
  }
  void check(std::string_view type) const {
    if (valid_) return;
    throw SqlError(
        289, 16,
        "Cannot construct data type " + std::string(type) + ", some of the arguments have values which are not valid.");
  }

 private:
  const Call& call_;
  std::size_t next_ = 0;
  bool valid_ = true;
};

// year, month, day.
Result dateFromParts(Call& call) {
  if (anyNull(call)) return {};
  Parts parts(call);
  const CalendarDate date = parts.date(dateBounds);
  parts.check("date");
  return storedDate(daysOf(date));
}

// year, month, day, hour, minute, second, millisecond.
Result datetimeFromParts(Call& call) {
  if (anyNull(call)) return {};
  Parts parts(call);
  const CalendarDate date = parts.date(dateTimeBounds);
  const int hour = parts.take(0, 23);
  const int minute = parts.take(0, 59);
  const int second = parts.take(0, 59);
  const TimeOfDay time{hour, minute, second, parts.take(0, 999)};
  parts.check("datetime");
  const auto value = carried(daysOf(date), ticksOf(time));
  if (!value || !dateTimeBounds.hold(value->days)) throw SqlError(Message::DateOverflow, {"datetime"});
  return storedDateTime(*value);
}

// year, month, day, hour, minute.
Result smalldatetimeFromParts(Call& call) {
  if (anyNull(call)) return {};
  Parts parts(call);
  const CalendarDate date = parts.date(smallDateTimeBounds);
  const int hour = parts.take(0, 23);
  const TimeOfDay time{hour, parts.take(0, 59), 0, 0};
  parts.check("smalldatetime");
  return storedDateTime({daysOf(date), ticksOf(time)});
}

// part, date.
Result datepart(Call& call) {
  if (anyNull(call)) return {};
  return partOfMoment(partOf(call.args[0], "datepart"), momentOf(call.args[1]), "datepart", call.session.dateFirst());
}

// part, date.
Result datename(Call& call) {
  if (anyNull(call)) return {};
  const DatePart part = partOf(call.args[0], "datename");
  const Moment moment = momentOf(call.args[1]);
  const int number = partOfMoment(part, moment, "datename", call.session.dateFirst());
  if (moment.fraction && isFinerThanSecond(part)) return std::to_string(number);
  return dateName(part, moment.value, call.session.dateFirst());
}

// part, number, date, packed type of the result.
Result dateadd(Call& call) {
  if (anyNull(call)) return {};
  const DatePart part = partOf(call.args[0], "dateadd");
  const Type type = Type::unpack(call.args[3].integer());
  const bool dateAlone = type.kind == TypeKind::Date;
  const bool small = type.kind == TypeKind::SmallDateTime;
  if (part >= DatePart::Microsecond || (dateAlone && isTimePart(part))) {
    throw SqlError(Message::UnsupportedDatePart, {nameOf(part), "dateadd", messageName(type)});
  }
  const DateBounds& bounds = dateAlone ? dateBounds : small ? smallDateTimeBounds : dateTimeBounds;
  auto sum = dateAdd(part, wholeNumber(call.args[1]), dateTimeOf(call.args[2]), bounds);
  if (sum && small) sum = roundedToMinute(*sum);
  if (!sum || !bounds.hold(sum->days)) throw SqlError(Message::DateOverflow, {messageName(type)});
  return dateAlone ? storedDate(sum->days) : storedDateTime(*sum);
}

// part, from, to: the distance as an int, or as a bigint.
template <typename Integer>
Result datediff(Call& call) {
  constexpr std::string_view function = sizeof(Integer) > 4 ? "datediff_big" : "datediff";
  if (anyNull(call)) return {};
  const DatePart part = partOf(call.args[0], function);
  if (part == DatePart::IsoWeek) {
    throw SqlError(9806, 16, "The datepart iso_week is not supported by date function " + std::string(function) + ".");
  }
  const Moment from = momentOf(call.args[1]);
  const Moment to = momentOf(call.args[2]);
  const bool fine = isFinerThanSecond(part) && (from.fraction || to.fraction);
  const auto difference = fine ? fineDifference(part, from, to) : dateDiff(part, from.value, to.value);
  if (!difference || *difference > std::numeric_limits<Integer>::max() ||
      *difference < std::numeric_limits<Integer>::min()) {
    throw SqlError(Message::DatediffOverflow, {function});
  }
  return *difference;
}

template <DatePart part>
Result partCall(Call& call) {
  if (anyNull(call)) return {};
  return datePart(part, momentOf(call.args[0]).value, call.session.dateFirst());
}

// Whether a text converts to datetime; no text does not count as a date here.
Result isdate(Call& call) {
  const Datum& value = call.args[0];
  if (value.kind() != Kind::Text && value.kind() != Kind::Integer) return 0;
  const std::string text = value.kind() == Kind::Text ? std::string(value.text()) : std::to_string(value.integer());
  if (text.find_first_not_of(' ') == std::string::npos) return 0;
  const DateText read = parseDateText(text, DateOrder::MonthDayYear, dateTimeBounds);
  return read.outcome == DateTextOutcome::Read ? 1 : 0;
}

constexpr std::array functions{
    Function{"ts_now", 0, 0, true, now},
    Function{"ts_utc_now", 0, 0, true, utcNow},
    Function{"ts_eomonth", 1, 2, true, endOfMonth},
    Function{"ts_date_from_parts", 3, 3, true, dateFromParts},
    Function{"ts_datetime_from_parts", 7, 7, true, datetimeFromParts},
    Function{"ts_smalldatetime_from_parts", 5, 5, true, smalldatetimeFromParts},
    Function{"ts_moment", 1, 1, true, moment},
    Function{"ts_datepart", 2, 2, true, datepart},
    Function{"ts_datename", 2, 2, true, datename},
    Function{"ts_dateadd", 4, 4, true, dateadd},
    Function{"ts_datediff", 3, 3, true, datediff<std::int32_t>},
    Function{"ts_datediff_big", 3, 3, true, datediff<std::int64_t>},
    Function{"ts_year", 1, 1, true, partCall<DatePart::Year>},
    Function{"ts_month", 1, 1, true, partCall<DatePart::Month>},
    Function{"ts_day", 1, 1, true, partCall<DatePart::Day>},
    Function{"ts_isdate", 1, 1, true, isdate},
};

}  // namespace

std::span<const Function> dateFunctions() {
  return functions;
}

}  // namespace tolvane::tsql
