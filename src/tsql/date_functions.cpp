// Functions on dates. Parts come as one of the names of the table of date parts, dates as they are stored.
#include <array>
#include <limits>
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

Result now(Call& call) {
  return storedDateTime(call.session.now());
}

// part, date.
Result datepart(Call& call) {
  if (anyNull(call)) return {};
  return datePart(partOf(call.args[0], "datepart"), dateTimeOf(call.args[1]), call.session.dateFirst());
}

// part, date.
Result datename(Call& call) {
  if (anyNull(call)) return {};
  return dateName(partOf(call.args[0], "datename"), dateTimeOf(call.args[1]), call.session.dateFirst());
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

// part, from, to.
Result datediff(Call& call) {
  if (anyNull(call)) return {};
  const DatePart part = partOf(call.args[0], "datediff");
  if (part == DatePart::IsoWeek) throw SqlError(Message::UnsupportedDatePart, {nameOf(part), "datediff", "datetime"});
  const auto difference = dateDiff(part, dateTimeOf(call.args[1]), dateTimeOf(call.args[2]));
  if (!difference || *difference > std::numeric_limits<std::int32_t>::max() ||
      *difference < std::numeric_limits<std::int32_t>::min()) {
    throw SqlError(Message::DatediffOverflow);
  }
  return *difference;
}

template <DatePart part>
Result partCall(Call& call) {
  if (anyNull(call)) return {};
  return datePart(part, dateTimeOf(call.args[0]), call.session.dateFirst());
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
    Function{"ts_datepart", 2, 2, true, datepart},
    Function{"ts_datename", 2, 2, true, datename},
    Function{"ts_dateadd", 4, 4, true, dateadd},
    Function{"ts_datediff", 3, 3, true, datediff},
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
