#pragma once

#include <span>
#include <string>
#include <string_view>

#include "tsql/datetime.h"

namespace tolvane::tsql {

// The order of the numbers in a date whose order is not told by its form. YearOnlyFirst also refuses other orders.
enum class DateOrder { MonthDayYear, DayMonthYear, YearOnlyFirst };

// One style of CONVERT. The patterns are made of: Y y year with 4 and 2 digits, m month, N month's short name, d day
// with two digits, e day with a blank before one digit, h hour of 24, H hour of 12 with a blank before one digit, i
// minute, s second, f millisecond, F point and millisecond unless that is 0, p AM or PM; all else stands for itself.
struct DateStyle {
  int style;
  std::string_view date;  // empty: a time alone
  std::string_view time;  // with what separates it from the date
  DateOrder order;        // when text is converted with this style
};
[[nodiscard]] std::span<const DateStyle> dateStyles();
// Null for a number that is no style. Those of the Hijri calendar (130, 131) are refused by an SqlError.
[[nodiscard]] const DateStyle* findDateStyle(int style);

// The value in a style; of a `date`, the date's part alone (empty when the style has none).
[[nodiscard]] std::string formatted(DateTime value, const DateStyle& style, bool dateAlone = false);

enum class DateTextOutcome {
  Read,
  Syntax,  // not a date at all
  Range    // the form of a date, with a month, day, hour or year that does not exist
};
struct DateText {
  DateTextOutcome outcome = DateTextOutcome::Syntax;
  DateTime value;
  // The same moment without rounding: the whole second, and ten-millionths of one.
  DateTime second;
  std::int32_t fraction = 0;
};
// Text to a date as SQL Server reads it under us_english: yyyymmdd, yyyy-mm-ddThh:mm:ss[.mmm], numbers separated by
// '/', '-' or '.', English month names, times before or after, a time alone (of 1900-01-01), nothing (1900-01-01).
// Two-digit years below 50 are of this century. A `date` may have finer fractions of a second than a datetime.
[[nodiscard]] DateText parseDateText(std::string_view text, DateOrder order, const DateBounds& bounds);

}  // namespace tolvane::tsql
