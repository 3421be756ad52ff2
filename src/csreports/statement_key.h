// What tells one statement of a company from another, and how that is said in SQL.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/value.h"

namespace tolvane {

namespace statement_type {
/// An ordinary periodic statement: the only type that is ever written.
inline constexpr std::int32_t ordinary = 1;
/// A statement that is matched by its day within the group's cycle.
inline constexpr std::int32_t byDay = 5;
}  // namespace statement_type

/// What FYear and FPeriod of a statement of type 5 hold.
inline constexpr std::int32_t noPeriod = -100;

/// A day as it stands in SQL text, without the apostrophes: "yyyymmdd", a time of day behind it when there is one.
/// Error 6 outside the years 100 to 9999.
[[nodiscard]] std::string dayText(Date day);

/// The rule by which a statement is found: by year and period unless both are negative, else by day. Stands behind
/// other conditions and begins with " AND ".
[[nodiscard]] std::string periodOrDay(std::int32_t year, std::int32_t period, Date day);

/// The condition under which t_CsRptContent holds one statement of a group, from the type on; the group's identifier
/// goes before it. The company's number stands as it came: an apostrophe in it breaks the statement.
[[nodiscard]] std::string statementOf(std::int32_t type, std::int32_t currencyID, std::string_view companyNum,
                                      std::int32_t year, std::int32_t period, Date day);

}  // namespace tolvane
